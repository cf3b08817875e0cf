#pragma once

#include "engine/EVCommandResult.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

class EVCoreDataDelegate;
class EVWidgetEntry;
class EVWidgetsManager;
struct EVImportReport;

// The operations the command line offers on widgets: list, add, remove, and backups and
// calendar files out and in. Applied to the running application's widgets manager, its windows
// follow at once; applied to the store alone (no instance runs), the next start shows the
// result. Every change is saved before the command returns; bad input changes nothing.
//
// Requests in JSON, one object, as a second launch sends them to the running instance:
//   {"command": "list", "json": false}
//   {"command": "add", "title": "...", "date": "2025-12-24" | "2025-12-24 18:30[:00]",
//    "unit": "time" | "day" | "week" | "month" | "year", "style": "0".."11",
//    "remind": "30s" | "15m" | "2h" | "3d" | "1w", "note": "..."}     (every option optional)
//   {"command": "remove", "uuid": "..."}
//   {"command": "export"}  {"command": "export-ics"}    (the result's fileContent is the file)
//   {"command": "import", "fileName": "...", "content": "..."}
//   {"command": "import-ics", "fileName": "...", "content": "..."}
// Every value is a string but "json" (a boolean). Results: see EVCommandResult.
class EVWidgetCommands
{
public:
    explicit EVWidgetCommands(EVWidgetsManager *manager);
    explicit EVWidgetCommands(EVCoreDataDelegate *store);

    struct AddOptions
    {
        // Null: what a new widget has.
        QString title;
        QString date;
        QString unit;
        QString style;
        QString remind;
        QString note;
    };

    // Every widget, one a line: uuid, title, date text and the two countdown lines as the
    // widget shows them now, separated by tabs; or the same as JSON:
    //   {"widgets": [{"uuid", "title", "date", "majorDesc", "secondDesc"}]}
    EVCommandResult list(bool json);
    // The new widget's uuid on a line.
    EVCommandResult add(const AddOptions &options);
    EVCommandResult remove(const QString &uuid);
    EVCommandResult exportBackup();
    EVCommandResult importBackup(const QString &fileName, const QByteArray &content);
    EVCommandResult exportCalendar();
    EVCommandResult importCalendar(const QString &fileName, const QByteArray &content);

    // A request in its JSON form, and its result in JSON form.
    QJsonObject run(const QJsonObject &request);
    EVCommandResult runRequest(const QJsonObject &request);

    // For the process that parses the command line. The request for "import" or "import-ics"
    // with the named file's contents; none, with the failure naming the file, when it cannot
    // be read or is no UTF-8 text.
    static std::optional<QJsonObject> importRequest(const QString &command, const QString &path,
                                                    EVCommandResult *failure);
    // Writes an export's file content to the named file; the result to report, the file's
    // content taken out of it, or a failure naming the file.
    static EVCommandResult writeExportFile(const EVCommandResult &result, const QString &path);

private:
    QList<EVWidgetEntry *> entries();
    // The store's own failure, when it cannot be opened; a null string when it can.
    QString openStore();
    // Saves through the manager (frames first) or the store; the failure's text, or null.
    QString save();
    EVCommandResult finishImport(const QString &fileName, const EVImportReport &report);

    EVWidgetsManager *m_manager = nullptr;
    EVCoreDataDelegate *m_store = nullptr;
};
