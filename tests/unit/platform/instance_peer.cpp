// The other process of the single-instance tests: a running instance that answers, a later
// launch that asks, or a process that holds the lock without ever answering.
#include "platform/EVSingleInstance.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QLockFile>
#include <QThread>
#include <QTimer>

#include <cstdio>

namespace {

void say(const QByteArray &line)
{
    std::fputs(line.constData(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

QByteArray compact(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

int serve(QCoreApplication &app, EVSingleInstance &instance)
{
    if (instance.claim() != EVSingleInstance::Claim::Primary) {
        say("not primary");
        return 3;
    }
    QObject::connect(&instance, &EVSingleInstance::requestReceived, &app,
                     [&app](const QJsonObject &request, const EVInstanceReplier &replier) {
                         say("request " + compact(request));
                         if (request.value(QStringLiteral("command")) == QStringLiteral("quit")) {
                             replier.reply({{QStringLiteral("bye"), true}});
                             // Time for the reply to leave before the process ends.
                             QTimer::singleShot(200, &app, &QCoreApplication::quit);
                             return;
                         }
                         replier.reply(
                             {{QStringLiteral("echo"), request},
                              {QStringLiteral("pid"), QCoreApplication::applicationPid()}});
                     });
    say("primary");
    return app.exec();
}

int send(EVSingleInstance &instance, const QByteArray &json, bool wantReply)
{
    const EVSingleInstance::Claim claim = instance.claim();
    if (claim == EVSingleInstance::Claim::Primary) {
        say("primary");
        return 3;
    }
    if (claim == EVSingleInstance::Claim::Failed) {
        say("failed " + instance.errorString().toUtf8());
        return 4;
    }
    const EVSingleInstance::Answer answer = instance.sendRequest(
        QJsonDocument::fromJson(json).object(),
        wantReply ? EVSingleInstance::ReplyWanted::Yes : EVSingleInstance::ReplyWanted::No);
    if (!answer.delivered) {
        say("error " + answer.errorString.toUtf8());
        return 1;
    }
    say(wantReply ? "reply " + compact(answer.reply) : QByteArray("sent"));
    return 0;
}

// Holds the lock as a live process would, with nobody listening, until killed.
int holdLock(const QString &lockFilePath)
{
    QLockFile lock(lockFilePath);
    if (!lock.tryLock(0))
        return 3;
    say("locked");
    for (;;)
        QThread::sleep(1);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    // Named unlike its executable, as the application is.
    QCoreApplication::setApplicationName(QStringLiteral("Tallyvane"));
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 3)
        return 2;
    const QString mode = arguments.at(1);
    EVSingleInstance instance(arguments.at(2));
    if (mode == QStringLiteral("serve"))
        return serve(app, instance);
    if (mode == QStringLiteral("send") && arguments.size() >= 4)
        return send(instance, arguments.at(3).toUtf8(),
                    !(arguments.size() >= 5 && arguments.at(4) == QStringLiteral("nowait")));
    if (mode == QStringLiteral("hold"))
        return holdLock(instance.lockFilePath());
    return 2;
}
