#include "app/EVCommandLine.h"

#include "core/EVAppInfo.h"

#include <QCommandLineParser>

EVCommandLine::EVCommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Countdown widgets for your desktop. Without options, starts %1 or brings "
                       "the running one's preferences window forward.")
            .arg(EVAppInfo::name()));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Show this help and exit."));
    const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")},
                                     QStringLiteral("Show the version and exit."));
    const QCommandLineOption snapshot(
        QStringLiteral("snapshot"),
        QStringLiteral("Draw every stored widget as it looks now into the PNG file FILE, without "
                       "showing a window, and exit."),
        QStringLiteral("FILE"));
    const QCommandLineOption importLegacy(
        QStringLiteral("import-legacy"),
        QStringLiteral("Take the widgets of the earlier generation's preferences file FILE (a "
                       "binary or XML property list) into the settings, so that the next start "
                       "brings them over, and exit."),
        QStringLiteral("FILE"));
    parser.addOptions({help, version, snapshot, importLegacy});
    // The parser names the program after the running file, or not at all before the application
    // object exists; the help always names the command.
    m_helpText = parser.helpText();
    const qsizetype usageEnd = m_helpText.indexOf(QLatin1String(" [options]"));
    if (m_helpText.startsWith(QLatin1String("Usage: ")) && usageEnd > 0)
        m_helpText.replace(0, usageEnd, QStringLiteral("Usage: tallyvane"));

    if (!parser.parse(arguments)) {
        m_action = Action::UsageError;
        m_errorText = parser.errorText();
        return;
    }
    if (!parser.positionalArguments().isEmpty()) {
        m_action = Action::UsageError;
        m_errorText =
            QStringLiteral("Unknown argument '%1'.").arg(parser.positionalArguments().first());
        return;
    }
    const int chosen = int(parser.isSet(help)) + int(parser.isSet(version)) +
                       int(parser.isSet(snapshot)) + int(parser.isSet(importLegacy));
    if (chosen > 1) {
        m_action = Action::UsageError;
        m_errorText =
            QStringLiteral("Give one of --help, --version, --snapshot and --import-legacy.");
    } else if (parser.isSet(help)) {
        m_action = Action::Help;
    } else if (parser.isSet(version)) {
        m_action = Action::Version;
    } else if (parser.isSet(snapshot)) {
        m_action = Action::Snapshot;
        m_file = parser.value(snapshot);
    } else if (parser.isSet(importLegacy)) {
        m_action = Action::ImportLegacy;
        m_file = parser.value(importLegacy);
    }
}

QString EVCommandLine::versionText()
{
    return QStringLiteral("%1 %2").arg(EVAppInfo::name(), EVAppInfo::version());
}
