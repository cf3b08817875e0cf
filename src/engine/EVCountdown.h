#pragma once

#include <QDateTime>
#include <QMap>
#include <QString>

class EVWidgetEntry;

// Keys of the dictionary form of the two countdown lines.
inline const QString EVCountdownMajorDescKey = QStringLiteral("MajorDesc");
inline const QString EVCountdownSecondDescKey = QStringLiteral("SecondDesc");

// The texts a widget computes from its entry every second: the event date in the chosen
// format and the two countdown lines. Stateless as far as callers can tell: every call reads
// the entry, the process's time zone (TZ) and its LC_TIME locale afresh. Main thread only.
class EVCountdown
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

    struct Lines
    {
        QString majorDesc;  // drawn large: "12", "03:15:42"
        QString secondDesc; // under it: "Days Left", "Seconds Passed", "02:05:09"

        bool operator==(const Lines &other) const = default;
    };

    // The date text shown on the widget itself.
    static QString widgetDateText(const EVWidgetEntry &entry);
    // The date text used as a reminder's subtitle; date-only tags 3, 4 and 5 read "yyyy-MM-dd".
    static QString reminderDateText(const EVWidgetEntry &entry);

    // The two countdown lines from now to the entry's event date, counted in the entry's unit.
    static Lines countdownLines(const EVWidgetEntry &entry, const QDateTime &now);
    // The same at the program's clock, keyed by EVCountdownMajorDescKey and
    // EVCountdownSecondDescKey.
    static QMap<QString, QString> countdownDesc(const EVWidgetEntry &entry);

    // The format tables by dateformat tag; a tag outside 0 to 5 takes the last row.
    static DateFormat widgetDateFormat(int dateformat, bool timeElement);
    static DateFormat reminderDateFormat(int dateformat, bool timeElement);

    // Renders an instant in the local time zone and the user's locale. An invalid instant, or
    // one the calendar cannot represent, gives a null string.
    static QString renderDate(const QDateTime &instant, const DateFormat &format);

    // Formatters and the calendar are kept between calls (per locale and time zone) because
    // making them costs more than the rest of a widget's update. Turning this off makes them
    // anew on every call; results are the same, which the benchmark uses to compare speeds.
    static void setCachingEnabled(bool enabled);
    static bool isCachingEnabled();
};
