#include "app/EVCommandRunner.h"

#include "app/EVCommandLine.h"
#include "engine/EVWidgetCommands.h"
#include "platform/EVInstanceReplier.h"
#include "platform/EVSingleInstance.h"
#include "store/EVCoreDataDelegate.h"

#include <cstdio>
#include <optional>

namespace EVCommandRunner {
namespace {

EVCommandResult runHere(const QJsonObject &request, EVSingleInstance &instance)
{
    // Another start while this command holds the store is told to try again.
    QObject::connect(&instance, &EVSingleInstance::requestReceived, &instance,
                     [](const QJsonObject &, const EVInstanceReplier &replier) {
                         replier.reply(EVCommandResult::badInput(
                                           QStringLiteral("A Tallyvane command is changing the "
                                                          "widgets; try again in a moment."))
                                           .toJson());
                     });
    EVCoreDataDelegate store;
    return EVWidgetCommands(&store).runRequest(request);
}

} // namespace

int run(const EVCommandLine &commandLine)
{
    QJsonObject request = commandLine.request();
    if (commandLine.isImport()) {
        EVCommandResult failure;
        const std::optional<QJsonObject> withContent =
            EVWidgetCommands::importRequest(commandLine.command(), commandLine.file(), &failure);
        if (!withContent)
            return report(failure);
        request = *withContent;
    }

    EVSingleInstance instance(QStringLiteral("tallyvane"));
    EVCommandResult result;
    switch (instance.claim()) {
    case EVSingleInstance::Claim::AnotherInstanceRuns:
        result = sendToRunningInstance(instance, request);
        break;
    case EVSingleInstance::Claim::Failed:
        result = EVCommandResult::badInput(
            QStringLiteral("The widgets cannot be reached safely: %1").arg(instance.errorString()));
        break;
    case EVSingleInstance::Claim::Primary:
        result = runHere(request, instance);
        break;
    }
    if (commandLine.isExport() && result.ok())
        result = EVWidgetCommands::writeExportFile(result, commandLine.file());
    return report(result);
}

EVCommandResult sendToRunningInstance(const EVSingleInstance &instance, const QJsonObject &request)
{
    const EVSingleInstance::Answer answer =
        instance.sendRequest(request, EVSingleInstance::ReplyWanted::Yes);
    if (!answer.delivered)
        return EVCommandResult::badInput(
            QStringLiteral("Tallyvane is running but does not answer: %1").arg(answer.errorString));
    return EVCommandResult::fromJson(answer.reply);
}

int report(const EVCommandResult &result)
{
    print(stdout, result.output);
    print(stderr, result.message);
    return result.exitCode();
}

void print(FILE *stream, const QString &text)
{
    if (text.isEmpty())
        return;
    std::fputs(qPrintable(text.endsWith(QLatin1Char('\n')) ? text : text + QLatin1Char('\n')),
               stream);
}

} // namespace EVCommandRunner
