#include "store/EVCalendarLines.h"

#include <QStringDecoder>

namespace {

struct LogicalLine
{
    int line = 0;
    QByteArray bytes;
};

// Folded lines joined again: a line that starts with a blank or a tab continues the one before.
QList<LogicalLine> unfold(const QByteArray &text)
{
    QList<LogicalLine> lines;
    int number = 0;
    for (QByteArray physical : text.split('\n')) {
        ++number;
        if (physical.endsWith('\r'))
            physical.chop(1);
        if (!lines.isEmpty() && (physical.startsWith(' ') || physical.startsWith('\t'))) {
            lines.last().bytes += physical.mid(1);
            continue;
        }
        lines.append({number, physical});
    }
    return lines;
}

bool isNameCharacter(QChar c)
{
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9') ||
           c == u'-';
}

} // namespace

EVCalendarLines::EVCalendarLines(const QByteArray &text)
{
    read(text);
}

void EVCalendarLines::fail(int line, const QString &text)
{
    if (m_error.isNull()) {
        m_error = text;
        m_errorLine = line;
    }
}

void EVCalendarLines::read(const QByteArray &text)
{
    struct Open
    {
        QString kind;
        int beginLine = 0;
    };
    QList<Open> open;
    bool sawCalendar = false;
    Event *event = nullptr;
    Component *alarm = nullptr;

    for (const LogicalLine &logical : unfold(text)) {
        if (logical.bytes.contains('\0'))
            return fail(logical.line,
                        QStringLiteral("not an iCalendar file: it holds binary data"));
        if (logical.bytes.trimmed().isEmpty())
            continue;
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString content = decoder(logical.bytes);
        if (decoder.hasError())
            return fail(logical.line, QStringLiteral("not UTF-8 text"));

        qsizetype nameEnd = 0;
        while (nameEnd < content.size() && isNameCharacter(content.at(nameEnd)))
            ++nameEnd;
        const qsizetype colon = content.indexOf(QLatin1Char(':'), nameEnd);
        if (nameEnd == 0 || nameEnd == content.size() ||
            (content.at(nameEnd) != u':' && content.at(nameEnd) != u';') || colon < 0)
            return fail(logical.line,
                        QStringLiteral("not an iCalendar content line: \"%1\"").arg(content));
        const ContentLine line{logical.line, content.first(nameEnd).toUpper(),
                               content.mid(colon + 1)};

        if (!sawCalendar && !(line.name == QLatin1String("BEGIN") &&
                              line.value.trimmed().toUpper() == QLatin1String("VCALENDAR")))
            return fail(logical.line, QStringLiteral("not an iCalendar file: it does not begin "
                                                     "with BEGIN:VCALENDAR"));
        sawCalendar = true;

        if (line.name == QLatin1String("BEGIN")) {
            const QString kind = line.value.trimmed().toUpper();
            if (open.isEmpty() && kind != QLatin1String("VCALENDAR"))
                return fail(logical.line, QStringLiteral("BEGIN:%1 outside a calendar").arg(kind));
            open.append({kind, logical.line});
            if (kind == QLatin1String("VEVENT") && open.size() == 2) {
                m_events.append(Event{{logical.line, {}}, {}});
                event = &m_events.last();
            } else if (kind == QLatin1String("VALARM") && event && open.size() == 3) {
                event->alarms.append(Component{logical.line, {}});
                alarm = &event->alarms.last();
            }
            continue;
        }
        if (line.name == QLatin1String("END")) {
            const QString kind = line.value.trimmed().toUpper();
            if (open.isEmpty())
                return fail(logical.line, QStringLiteral("END:%1 with nothing to end").arg(kind));
            if (open.last().kind != kind)
                return fail(logical.line, QStringLiteral("END:%1 where BEGIN:%2 of line %3 "
                                                         "is still open")
                                              .arg(kind, open.last().kind)
                                              .arg(open.last().beginLine));
            open.removeLast();
            if (open.size() == 2)
                alarm = nullptr;
            else if (open.size() == 1)
                event = nullptr;
            continue;
        }
        if (open.isEmpty())
            return fail(logical.line, QStringLiteral("%1 outside a calendar").arg(line.name));
        if (alarm && open.size() == 3)
            alarm->properties.append(line);
        else if (event && open.size() == 2)
            event->properties.append(line);
    }
    if (!sawCalendar)
        return fail(0, QStringLiteral("not an iCalendar file: it is empty"));
    if (!open.isEmpty())
        return fail(open.last().beginLine,
                    QStringLiteral("BEGIN:%1 is never ended").arg(open.last().kind));
}

int EVCalendarLines::lineOf(const Component &component, const QString &name)
{
    for (const ContentLine &line : component.properties) {
        if (line.name == name)
            return line.line;
    }
    return component.beginLine;
}

int EVCalendarLines::lineOfMessage(const Event &event, const QString &message)
{
    QList<const Component *> components{&event};
    for (const Component &alarm : event.alarms)
        components.append(&alarm);
    int byName = 0;
    qsizetype longestName = 0;
    for (const Component *component : std::as_const(components)) {
        for (const ContentLine &line : component->properties) {
            if (!message.contains(line.name))
                continue;
            const QString value = line.value.trimmed();
            if (!value.isEmpty() && message.contains(value))
                return line.line;
            if (line.name.size() > longestName) {
                longestName = line.name.size();
                byName = line.line;
            }
        }
    }
    return byName > 0 ? byName : event.beginLine;
}
