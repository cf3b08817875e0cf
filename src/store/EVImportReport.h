#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

class EVWidgetEntry;

// What an import of widgets from a file did: either nothing, with one message that names the
// file (and the line, where there is one), or the widgets it added and those it left out.
struct EVImportReport
{
    // Null when the import was done.
    QString error;
    // The new entries, in the file's order; not saved yet.
    QList<EVWidgetEntry *> added;
    // One line for each widget left out: its identifier and why.
    QStringList skipped;

    bool ok() const { return error.isNull(); }

    // "file:line: text", or "file: text" for line 0.
    static QString located(const QString &fileName, int line, const QString &text)
    {
        if (line > 0)
            return QStringLiteral("%1:%2: %3").arg(fileName).arg(line).arg(text);
        return QStringLiteral("%1: %2").arg(fileName, text);
    }
    // Files made on Windows may begin with a byte order mark, which is no part of their text.
    static QByteArray withoutByteOrderMark(const QByteArray &content)
    {
        return content.startsWith("\xEF\xBB\xBF") ? content.mid(3) : content;
    }
    static EVImportReport failure(const QString &fileName, int line, const QString &text)
    {
        EVImportReport report;
        report.error = located(fileName, line, text);
        return report;
    }
    // What every import says when there is no store to import into.
    static EVImportReport storeUnavailable(const QString &fileName)
    {
        return failure(fileName, 0, QStringLiteral("the widget store cannot be opened"));
    }
};
