#pragma once

#include <QString>
#include <QStringList>

// What the user asked for on the command line. Parsed before the application object exists,
// so that printing help or the version needs no display.
class EVCommandLine
{
public:
    enum class Action {
        Run,          // start Tallyvane, or bring the running one forward
        Help,         // print helpText()
        Version,      // print versionText()
        Snapshot,     // --snapshot FILE
        ImportLegacy, // --import-legacy FILE
        UsageError,   // print errorText() and helpText(), exit with usageExitCode
    };

    // Exit codes of the command line: done, bad input, wrong use.
    static constexpr int doneExitCode = 0;
    static constexpr int badInputExitCode = 1;
    static constexpr int usageExitCode = 2;

    explicit EVCommandLine(const QStringList &arguments);

    Action action() const { return m_action; }
    // The file of --snapshot or --import-legacy.
    QString file() const { return m_file; }
    QString errorText() const { return m_errorText; }
    QString helpText() const { return m_helpText; }
    static QString versionText();

    // Snapshots are drawn without a window, so they need no display.
    bool needsDisplay() const { return m_action == Action::Run; }

private:
    Action m_action = Action::Run;
    QString m_file;
    QString m_errorText;
    QString m_helpText;
};
