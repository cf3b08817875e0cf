#include "engine/EVDateText.h"

#include "engine/EVLocalCalendar.h"
#include "store/EVWidgetEntry.h"

QString EVDateText::widgetDateText(const EVWidgetEntry &entry)
{
    return renderDate(entry.eventDate(), widgetDateFormat(entry.dateformat(), entry.timeElement()));
}

QString EVDateText::reminderDateText(const EVWidgetEntry &entry)
{
    return renderDate(entry.eventDate(),
                      reminderDateFormat(entry.dateformat(), entry.timeElement()));
}

EVDateText::DateFormat EVDateText::widgetDateFormat(int dateformat, bool timeElement)
{
    using enum DateFormatKind;
    switch (dateformat) {
    case 1:
        return timeElement ? DateFormat{QStringLiteral("%b %d, %Y, %H:%M:%S"), Strftime}
                           : DateFormat{QStringLiteral("%b %d, %Y"), Strftime};
    case 2:
        return timeElement ? DateFormat{QStringLiteral("%d %b %Y, %H:%M:%S"), Strftime}
                           : DateFormat{QStringLiteral("%d %b %Y"), Strftime};
    case 3:
        // A 24-hour clock with an AM/PM marker: odd, but it is what the widget has always shown.
        return timeElement ? DateFormat{QStringLiteral("yyyy-MM-dd HH:mm:ss a"), UnicodePattern}
                           : DateFormat{QStringLiteral("yyyy-MM-dd"), UnicodePattern};
    case 4:
        return timeElement ? DateFormat{QStringLiteral("%b %d, %Y, %H:%M:%S %p"), Strftime}
                           : DateFormat{QStringLiteral("%b %d, %Y"), Strftime};
    case 5:
        return timeElement ? DateFormat{QStringLiteral("%d %b %Y, %H:%M:%S %p"), Strftime}
                           : DateFormat{QStringLiteral("%d %b %Y"), Strftime};
    default: // 0, and every tag the table does not know
        return timeElement ? DateFormat{QStringLiteral("yyyy-MM-dd HH:mm:ss"), UnicodePattern}
                           : DateFormat{QStringLiteral("yyyy-MM-dd"), UnicodePattern};
    }
}

EVDateText::DateFormat EVDateText::reminderDateFormat(int dateformat, bool timeElement)
{
    if (timeElement)
        return widgetDateFormat(dateformat, timeElement);
    // Unlike the widget, a date-only reminder keeps month names for tags 1 and 2 alone.
    if (dateformat == 1 || dateformat == 2)
        return widgetDateFormat(dateformat, timeElement);
    return DateFormat{QStringLiteral("yyyy-MM-dd"), DateFormatKind::UnicodePattern};
}

QString EVDateText::renderDate(const QDateTime &instant, const DateFormat &format)
{
    if (!EVLocalCalendar::isWithinCalendar(instant))
        return QString();
    return format.kind == DateFormatKind::Strftime
               ? EVLocalCalendar::renderStrftime(instant, format.format)
               : EVLocalCalendar::renderPattern(instant, format.format);
}
