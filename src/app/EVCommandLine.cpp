#include "app/EVCommandLine.h"

#include "core/EVAppInfo.h"

#include <QCommandLineParser>

namespace {

const QString jsonOption = QStringLiteral("json");
// The options of "add", each the request key of the same name.
const QStringList addOptionNames{QStringLiteral("title"),  QStringLiteral("date"),
                                 QStringLiteral("unit"),   QStringLiteral("style"),
                                 QStringLiteral("remind"), QStringLiteral("note")};
const QStringList fileCommands{QStringLiteral("export"), QStringLiteral("import"),
                               QStringLiteral("export-ics"), QStringLiteral("import-ics")};

} // namespace

EVCommandLine::EVCommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral(
            "Countdown widgets for your desktop. Without a command, starts %1 or brings the "
            "running one's preferences window forward.\n\n"
            "Commands (sent to the running %1, whose widgets follow at once, or applied to the "
            "store when it does not run):\n"
            "  list [--json]          every widget: identifier, title, date, countdown lines\n"
            "  add [options]          a new widget; prints its identifier\n"
            "  remove ID              removes the widget with that identifier\n"
            "  export FILE.json       a complete backup of every widget and custom style\n"
            "  import FILE.json       adds the widgets of a backup; never deletes\n"
            "  export-ics FILE.ics    every widget as a calendar event\n"
            "  import-ics FILE.ics    a widget for every event of a calendar file\n"
            "Exit status: 0 done, 1 bad input, 2 wrong use.")
            .arg(EVAppInfo::name()));
    parser.addPositionalArgument(QStringLiteral("command"),
                                 QStringLiteral("One of the commands above."),
                                 QStringLiteral("[command [argument]]"));
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
    parser.addOption({jsonOption, QStringLiteral("list: the same as JSON.")});
    const QStringList addHelp{
        QStringLiteral("add: the title."),
        QStringLiteral("add: the date, YYYY-MM-DD for a whole day or YYYY-MM-DD HH:MM[:SS]."),
        QStringLiteral("add: counted in time, day, week, month or year."),
        QStringLiteral("add: the built-in style, 0 to 11."),
        QStringLiteral("add: a reminder this long before the event: 30s, 15m, 2h, 3d, 1w."),
        QStringLiteral("add: a note.")};
    const QStringList addValues{QStringLiteral("TITLE"), QStringLiteral("DATE"),
                                QStringLiteral("UNIT"),  QStringLiteral("STYLE"),
                                QStringLiteral("LEAD"),  QStringLiteral("NOTE")};
    for (qsizetype i = 0; i < addOptionNames.size(); ++i)
        parser.addOption({addOptionNames.at(i), addHelp.at(i), addValues.at(i)});

    // The parser names the program after the running file, or not at all before the application
    // object exists; the help always names the command.
    m_helpText = parser.helpText();
    const qsizetype usageEnd = m_helpText.indexOf(QLatin1String(" [options]"));
    if (m_helpText.startsWith(QLatin1String("Usage: ")) && usageEnd > 0)
        m_helpText.replace(0, usageEnd, QStringLiteral("Usage: tallyvane"));

    if (!parser.parse(arguments)) {
        fail(parser.errorText());
        return;
    }
    const int chosen = int(parser.isSet(help)) + int(parser.isSet(version)) +
                       int(parser.isSet(snapshot)) + int(parser.isSet(importLegacy));
    if (chosen > 1 || (chosen == 1 && !parser.positionalArguments().isEmpty())) {
        fail(QStringLiteral("Give one of --help, --version, --snapshot, --import-legacy and the "
                            "commands."));
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
    } else if (!parser.positionalArguments().isEmpty()) {
        parseCommand(parser.positionalArguments(), parser);
    }
    if (m_action != Action::Command && m_action != Action::UsageError) {
        bool commandOptions = parser.isSet(jsonOption);
        for (const QString &name : addOptionNames)
            commandOptions = commandOptions || parser.isSet(name);
        if (commandOptions)
            fail(QStringLiteral("--json goes with list, and the widget options with add."));
    }
}

void EVCommandLine::parseCommand(const QStringList &positional, const QCommandLineParser &parser)
{
    const QString command = positional.first();
    const QStringList rest = positional.mid(1);
    m_request.insert(QStringLiteral("command"), command);
    const auto wants = [&](qsizetype count, const QString &argumentName) {
        if (rest.size() == count)
            return true;
        fail(count == 0
                 ? QStringLiteral("'%1' takes no argument.").arg(command)
                 : QStringLiteral("'%1' takes one argument, %2.").arg(command, argumentName));
        return false;
    };
    bool usedJson = false;
    bool usedAddOptions = false;
    for (const QString &name : addOptionNames)
        usedAddOptions = usedAddOptions || parser.isSet(name);

    if (command == QLatin1String("list")) {
        if (!wants(0, QString()))
            return;
        m_request.insert(jsonOption, parser.isSet(jsonOption));
        usedJson = true;
    } else if (command == QLatin1String("add")) {
        if (!wants(0, QString()))
            return;
        for (const QString &name : addOptionNames) {
            if (parser.isSet(name))
                m_request.insert(name, parser.value(name));
        }
        usedAddOptions = false;
    } else if (command == QLatin1String("remove")) {
        if (!wants(1, QStringLiteral("the widget's identifier")))
            return;
        m_request.insert(QStringLiteral("uuid"), rest.first());
    } else if (fileCommands.contains(command)) {
        if (!wants(1, QStringLiteral("a file")))
            return;
        m_file = rest.first();
    } else {
        fail(QStringLiteral("Unknown command '%1'.").arg(command));
        return;
    }
    if ((parser.isSet(jsonOption) && !usedJson) || usedAddOptions) {
        fail(QStringLiteral("--json goes with list, and the widget options with add."));
        return;
    }
    m_action = Action::Command;
}

void EVCommandLine::fail(const QString &errorText)
{
    m_action = Action::UsageError;
    m_errorText = errorText;
    m_request = QJsonObject();
}

bool EVCommandLine::isImport() const
{
    return m_action == Action::Command && command().startsWith(QLatin1String("import"));
}

bool EVCommandLine::isExport() const
{
    return m_action == Action::Command && command().startsWith(QLatin1String("export"));
}

QString EVCommandLine::versionText()
{
    return QStringLiteral("%1 %2").arg(EVAppInfo::name(), EVAppInfo::version());
}
