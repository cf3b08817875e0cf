#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

// What the user asked for on the command line. Parsed before the application object exists,
// so that printing help or the version needs no display.
//
//   tallyvane [--snapshot FILE | --import-legacy FILE | --help | --version]
//   tallyvane list [--json]
//   tallyvane add [--title T] [--date D] [--unit U] [--style N] [--remind LEAD] [--note N]
//   tallyvane remove ID
//   tallyvane export FILE.json | import FILE.json | export-ics FILE.ics | import-ics FILE.ics
class EVCommandLine
{
public:
    enum class Action {
        Run,          // start Tallyvane, or bring the running one forward
        Help,         // print helpText()
        Version,      // print versionText()
        Snapshot,     // --snapshot FILE
        ImportLegacy, // --import-legacy FILE
        Command,      // a widget command: request(), and file() for imports and exports
        UsageError,   // print errorText() and helpText(), exit with usageExitCode
    };

    // Exit codes of the command line: done, bad input, wrong use.
    static constexpr int doneExitCode = 0;
    static constexpr int badInputExitCode = 1;
    static constexpr int usageExitCode = 2;

    explicit EVCommandLine(const QStringList &arguments);

    Action action() const { return m_action; }
    // The file of --snapshot, --import-legacy, or of a command that imports or exports.
    QString file() const { return m_file; }
    // A widget command in the form EVWidgetCommands runs; an import's file content is read by
    // the caller (EVWidgetCommands::importRequest).
    QJsonObject request() const { return m_request; }
    QString command() const { return m_request.value(QStringLiteral("command")).toString(); }
    bool isImport() const;
    bool isExport() const;

    QString errorText() const { return m_errorText; }
    QString helpText() const { return m_helpText; }
    static QString versionText();

    // Snapshots and commands are done without a window, so they need no display.
    bool needsDisplay() const { return m_action == Action::Run; }

private:
    void parseCommand(const QStringList &positional, const class QCommandLineParser &parser);
    void fail(const QString &errorText);

    Action m_action = Action::Run;
    QString m_file;
    QJsonObject m_request;
    QString m_errorText;
    QString m_helpText;
};
