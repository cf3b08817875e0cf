#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

// The content lines of an iCalendar text, unfolded, each with the line of the file where it
// starts, grouped by the events and alarms they belong to. The calendar library keeps no
// positions, so this is how a message about an event or a property can name its line. Finds
// the defects of structure too: lines that are no content lines, text that is not UTF-8,
// components that are not closed or closed by the wrong END.
class EVCalendarLines
{
public:
    struct ContentLine
    {
        int line = 0;
        QString name;  // upper case
        QString value; // what follows the first colon after the name and its parameters
    };
    struct Component
    {
        int beginLine = 0;
        QList<ContentLine> properties; // its own, not those of the components inside it
    };
    struct Event : Component
    {
        QList<Component> alarms;
    };

    explicit EVCalendarLines(const QByteArray &text);

    // The first defect of structure and its line (0 when the file as a whole is meant); a null
    // text when there is none.
    QString error() const { return m_error; }
    int errorLine() const { return m_errorLine; }

    // Every VEVENT, in the order of the file.
    const QList<Event> &events() const { return m_events; }

    // The line of the component's first property of that name; its BEGIN line when it has
    // none.
    static int lineOf(const Component &component, const QString &name);
    // The line of the event or alarm property that a message of the calendar library is about:
    // the property it names (and whose value it quotes, where it does); the event's BEGIN line
    // when none fits.
    static int lineOfMessage(const Event &event, const QString &message);

private:
    void read(const QByteArray &text);
    void fail(int line, const QString &text);

    QList<Event> m_events;
    QString m_error;
    int m_errorLine = 0;
};
