#pragma once

#include <QJsonObject>
#include <QString>

// What a widget command did, as the command line reports it: the exit status, a message for
// standard error when it failed, text for standard output, and for an export the contents of
// the file the user named (written by the process that parsed the command line, so that a
// running instance never opens a user's paths).
//
// JSON form, one object:
//   {"status": "done" | "bad-input" | "usage", "exitCode": 0 | 1 | 2,
//    "message": "...", "output": "...", "fileContent": "..." (exports only)}
struct EVCommandResult
{
    // The exit codes: done, bad input (a file, a date, an identifier), wrong use.
    enum class Status { Done = 0, BadInput = 1, Usage = 2 };

    Status status = Status::Done;
    QString message;
    QString output;
    // Null unless the command exports.
    QString fileContent;

    bool ok() const { return status == Status::Done; }
    int exitCode() const { return int(status); }

    static EVCommandResult done(const QString &output = QString())
    {
        return EVCommandResult{Status::Done, QString(), output, QString()};
    }
    static EVCommandResult badInput(const QString &message)
    {
        return EVCommandResult{Status::BadInput, message, QString(), QString()};
    }
    static EVCommandResult usage(const QString &message)
    {
        return EVCommandResult{Status::Usage, message, QString(), QString()};
    }

    QJsonObject toJson() const;
    // A reply that is no result reads as bad input, with a message saying so.
    static EVCommandResult fromJson(const QJsonObject &json);

    bool operator==(const EVCommandResult &other) const = default;
};
