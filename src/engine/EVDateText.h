#pragma once

#include <QDateTime>
#include <QString>

class EVWidgetEntry;

// The event date of a widget as text, by the table of date formats that the entry's
// dateformat tag and timeElement choose: on the widget itself and in its reminder.
class EVDateText
{
public:
    enum class DateFormatKind {
        UnicodePattern, // "yyyy-MM-dd HH:mm:ss", rendered by ICU in the user's locale
        Strftime,       // "%b %d, %Y", rendered by the C library under LC_TIME
    };

    struct DateFormat
    {
        QString format;
        DateFormatKind kind = DateFormatKind::UnicodePattern;

        bool operator==(const DateFormat &other) const = default;
    };

    // The date text shown on the widget itself.
    static QString widgetDateText(const EVWidgetEntry &entry);
    // The date text used as a reminder's subtitle; date-only tags 3, 4 and 5 read "yyyy-MM-dd".
    static QString reminderDateText(const EVWidgetEntry &entry);

    // The format tables by dateformat tag; a tag outside 0 to 5 takes the last row.
    static DateFormat widgetDateFormat(int dateformat, bool timeElement);
    static DateFormat reminderDateFormat(int dateformat, bool timeElement);

    // Renders an instant in the local time zone and the user's locale. An invalid instant, or
    // one the calendar cannot represent, gives a null string.
    static QString renderDate(const QDateTime &instant, const DateFormat &format);
};
