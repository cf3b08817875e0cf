// The composition root: the command line first, then the application object, then the shell
// and the process-wide objects it uses, all ended in order before the application object goes.
#include "app/AppController.h"
#include "app/AppDelegate.h"
#include "app/EVCommandLine.h"
#include "app/EVCommandRunner.h"
#include "app/EVSnapshot.h"
#include "core/EVAppImage.h"
#include "core/EVAppInfo.h"
#include "core/EVProcessObjects.h"
#include "platform/EVDisplayServer.h"
#include "platform/EVSingleInstance.h"
#include "platform/EVTerminationSignals.h"
#include "store/EVLegacyPreferencesFile.h"

#include <QApplication>
#include <QJsonObject>
#include <QLoggingCategory>

#include <cstdio>

namespace {

Q_LOGGING_CATEGORY(lcMain, "tallyvane.main")

int runApplication()
{
    EVSingleInstance instance(QStringLiteral("tallyvane"));
    switch (instance.claim()) {
    case EVSingleInstance::Claim::AnotherInstanceRuns:
        // The user looks for the running one: it brings its preferences window forward.
        return EVCommandRunner::report(EVCommandRunner::sendToRunningInstance(
            instance, {{QStringLiteral("command"), QStringLiteral("activate")}}));
    case EVSingleInstance::Claim::Failed:
        // Better a second instance than none: the widgets are what the user wants to see.
        qCWarning(lcMain).noquote()
            << QStringLiteral("Running without the single-instance guard: %1")
                   .arg(instance.errorString());
        break;
    case EVSingleInstance::Claim::Primary:
        break;
    }

    EVTerminationSignals terminationSignals;
    if (!terminationSignals.install())
        qCWarning(lcMain) << "SIGTERM, SIGINT and SIGHUP will end Tallyvane without saving";
    AppController appController;
    AppDelegate appDelegate(&appController);
    appDelegate.applicationDidFinishLaunching(&terminationSignals, &instance);
    // The end (aboutToQuit) saves everything; the shell goes before the application object.
    return QApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    const EVCommandLine commandLine(arguments);
    switch (commandLine.action()) {
    case EVCommandLine::Action::Help:
        EVCommandRunner::print(stdout, commandLine.helpText());
        return EVCommandLine::doneExitCode;
    case EVCommandLine::Action::Version:
        EVCommandRunner::print(stdout, EVCommandLine::versionText());
        return EVCommandLine::doneExitCode;
    case EVCommandLine::Action::UsageError:
        EVCommandRunner::print(stderr, commandLine.errorText());
        EVCommandRunner::print(stderr, commandLine.helpText());
        return EVCommandLine::usageExitCode;
    default:
        break;
    }

    if (commandLine.needsDisplay()) {
        EVDisplayServer::choosePlatform();
        QString why;
        if (!EVDisplayServer::canShowWindows(&why)) {
            EVCommandRunner::print(
                stderr, QStringLiteral("tallyvane: the widgets cannot be shown: %1. Start "
                                       "Tallyvane in a desktop session; commands such as "
                                       "\"tallyvane list\" need no display.")
                            .arg(why));
            return EVCommandLine::badInputExitCode;
        }
    } else if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        // Widget frames are kept as fractions of the main screen: the real one gives them their
        // real size; without a display, the offscreen platform's screen stands in.
        qputenv("QT_QPA_PLATFORM",
                qEnvironmentVariableIsEmpty("DISPLAY") ? "offscreen" : "xcb;offscreen");

    int status = EVCommandLine::doneExitCode;
    {
        QApplication application(argc, argv);
        QApplication::setApplicationName(EVAppInfo::name());
        QApplication::setOrganizationName(QStringLiteral("velto"));
        QApplication::setApplicationVersion(EVAppInfo::version());
        QApplication::setDesktopFileName(QStringLiteral("com.velto.tallyvane"));
        QApplication::setWindowIcon(EVAppImage::applicationIcon());
        // Widgets live on the desktop; closing the preferences window does not end them.
        QApplication::setQuitOnLastWindowClosed(false);

        QString message;
        switch (commandLine.action()) {
        case EVCommandLine::Action::Snapshot:
            status = EVSnapshot::write(commandLine.file(), &message)
                         ? EVCommandLine::doneExitCode
                         : EVCommandLine::badInputExitCode;
            EVCommandRunner::print(status == 0 ? stdout : stderr, message);
            break;
        case EVCommandLine::Action::Command:
            status = EVCommandRunner::run(commandLine);
            break;
        case EVCommandLine::Action::ImportLegacy:
            status = EVLegacyPreferencesFile::importIntoSettings(commandLine.file(), &message) ==
                             EVLegacyPreferencesFile::Result::Imported
                         ? EVCommandLine::doneExitCode
                         : EVCommandLine::badInputExitCode;
            EVCommandRunner::print(status == 0 ? stdout : stderr, message);
            break;
        default:
            status = runApplication();
            break;
        }
        EVProcessObjects::teardown();
    }
    return status;
}
