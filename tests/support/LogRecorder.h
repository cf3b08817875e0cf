#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QtMessageHandler>

// Keeps the log lines of one logging category while it lives, instead of printing them; lines
// of other categories pass on as before.
class LogRecorder
{
public:
    struct Line
    {
        QtMsgType type;
        QString text;
    };

    explicit LogRecorder(const char *category);
    ~LogRecorder();
    LogRecorder(const LogRecorder &) = delete;
    LogRecorder &operator=(const LogRecorder &) = delete;

    const QList<Line> &lines() const { return m_lines; }

private:
    static void record(QtMsgType type, const QMessageLogContext &context, const QString &text);

    QByteArray m_category;
    QList<Line> m_lines;
    QtMessageHandler m_previous;
    LogRecorder *m_outer;
};
