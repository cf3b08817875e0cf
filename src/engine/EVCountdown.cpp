#include "engine/EVCountdown.h"

#include "core/EVClock.h"
#include "store/EVWidgetEntry.h"

#include <QtNumeric>

#include <unicode/gregocal.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <cwchar>
#include <iterator>
#include <map>
#include <memory>
#include <string>

namespace {

// Instants further than this from 1970 (about three million years) are treated as none: ICU
// would silently clamp them to the end of its calendar and print or count a wrong date.
constexpr qint64 calendarLimitMsecs = 100'000'000'000'000'000;

constexpr qint64 msecsPerSecond = 1000;
constexpr qint64 secondsPerMinute = 60;
constexpr qint64 secondsPerHour = 3600;

// What the calendar and the formatters are made from: the user's time zone and locale.
// Rebuilt whenever TZ or the LC_TIME locale of the process changes.
struct LocalSettings
{
    bool ready = false;
    bool tzSet = false;
    std::string tz;
    std::string timeLocale;

    std::unique_ptr<icu::TimeZone> zone;
    icu::Locale locale;
    std::unique_ptr<icu::Calendar> calendar;
    std::map<QString, std::unique_ptr<icu::SimpleDateFormat>> formatters;
};

bool cachingEnabled = true;

icu::Locale icuLocaleFor(const std::string &posixName)
{
    // "en_US.UTF-8@euro" names the locale en_US; the C locale has ICU's POSIX equivalent.
    const std::string name = posixName.substr(0, posixName.find_first_of(".@"));
    if (name.empty() || name == "C" || name == "POSIX")
        return icu::Locale("en_US_POSIX");
    icu::Locale locale(name.c_str());
    return locale.isBogus() ? icu::Locale("en_US_POSIX") : locale;
}

LocalSettings &localSettings()
{
    static LocalSettings settings;
    const char *tz = std::getenv("TZ");
    const char *timeLocale = std::setlocale(LC_TIME, nullptr);
    if (!timeLocale)
        timeLocale = "C";
    const bool tzUnchanged = (tz != nullptr) == settings.tzSet && (!tz || settings.tz == tz);
    if (settings.ready && tzUnchanged && settings.timeLocale == timeLocale)
        return settings;

    settings.ready = true;
    settings.tzSet = tz != nullptr;
    settings.tz = tz ? tz : "";
    settings.timeLocale = timeLocale;
    // The C library and ICU both keep the zone they found first; make both read TZ again.
    tzset();
    settings.zone.reset(icu::TimeZone::detectHostTimeZone());
    settings.locale = icuLocaleFor(settings.timeLocale);
    settings.calendar.reset();
    settings.formatters.clear();
    return settings;
}

// A Gregorian calendar in the local time zone, positioned by each caller before use.
std::unique_ptr<icu::Calendar> makeCalendar(const LocalSettings &settings)
{
    UErrorCode status = U_ZERO_ERROR;
    auto calendar =
        std::make_unique<icu::GregorianCalendar>(*settings.zone, settings.locale, status);
    if (U_FAILURE(status))
        return nullptr;
    return calendar;
}

// The settings' own calendar, or a fresh one held by owner when caching is off.
icu::Calendar *calendarFor(LocalSettings &settings, std::unique_ptr<icu::Calendar> &owner)
{
    if (!cachingEnabled) {
        owner = makeCalendar(settings);
        return owner.get();
    }
    if (!settings.calendar)
        settings.calendar = makeCalendar(settings);
    return settings.calendar.get();
}

std::unique_ptr<icu::SimpleDateFormat> makeFormatter(const LocalSettings &settings,
                                                     const QString &pattern)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString icuPattern(pattern.utf16(), static_cast<int32_t>(pattern.size()));
    auto formatter = std::make_unique<icu::SimpleDateFormat>(icuPattern, settings.locale, status);
    if (U_FAILURE(status))
        return nullptr;
    formatter->setTimeZone(*settings.zone);
    return formatter;
}

icu::SimpleDateFormat *formatterFor(LocalSettings &settings, const QString &pattern,
                                    std::unique_ptr<icu::SimpleDateFormat> &owner)
{
    if (!cachingEnabled) {
        owner = makeFormatter(settings, pattern);
        return owner.get();
    }
    std::unique_ptr<icu::SimpleDateFormat> &cached = settings.formatters[pattern];
    if (!cached)
        cached = makeFormatter(settings, pattern);
    return cached.get();
}

bool withinCalendar(const QDateTime &instant)
{
    if (!instant.isValid())
        return false;
    const qint64 msecs = instant.toMSecsSinceEpoch();
    return msecs >= -calendarLimitMsecs && msecs <= calendarLimitMsecs;
}

UDate icuDate(const QDateTime &instant)
{
    return static_cast<UDate>(instant.toMSecsSinceEpoch());
}

QString renderPattern(const QDateTime &instant, const QString &pattern)
{
    LocalSettings &settings = localSettings();
    std::unique_ptr<icu::Calendar> ownCalendar;
    std::unique_ptr<icu::SimpleDateFormat> ownFormatter;
    icu::Calendar *calendar = calendarFor(settings, ownCalendar);
    icu::SimpleDateFormat *formatter = formatterFor(settings, pattern, ownFormatter);
    if (!calendar || !formatter)
        return QString();

    UErrorCode status = U_ZERO_ERROR;
    calendar->setTime(icuDate(instant), status);
    if (U_FAILURE(status))
        return QString();
    icu::UnicodeString text;
    icu::FieldPosition position;
    formatter->format(*calendar, text, position);
    return QString::fromUtf16(text.getBuffer(), text.length());
}

QString renderStrftime(const QDateTime &instant, const QString &format)
{
    localSettings(); // so that a changed TZ reaches the C library too

    // Whole seconds, rounded down also before 1970, as the calendar does.
    const qint64 msecs = instant.toMSecsSinceEpoch();
    const std::time_t seconds = msecs / msecsPerSecond - (msecs % msecsPerSecond < 0 ? 1 : 0);
    std::tm fields{};
    if (!localtime_r(&seconds, &fields))
        return QString();

    // The wide form gives the locale's month names and markers whatever its character set.
    const std::wstring wideFormat = format.toStdWString();
    wchar_t buffer[256];
    const std::size_t length =
        std::wcsftime(buffer, std::size(buffer), wideFormat.c_str(), &fields);
    return QString::fromWCharArray(buffer, static_cast<qsizetype>(length));
}

// The length a unit usually has, from which a first guess at a count is taken.
double typicalMsecs(UCalendarDateFields field)
{
    switch (field) {
    case UCAL_WEEK_OF_YEAR:
        return 7 * 86'400'000.0;
    case UCAL_MONTH:
        return 30.436875 * 86'400'000.0; // a Gregorian year of 365.2425 days over twelve
    case UCAL_YEAR:
        return 365.2425 * 86'400'000.0;
    default:
        return 86'400'000.0;
    }
}

// The count that Calendar::fieldDifference gives: the largest number of units that, added to
// the start by the calendar, does not pass the end (toward zero when the end lies before).
// fieldDifference finds it by doubling and halving from zero, some twenty to thirty additions
// for a far event; starting from the count the elapsed time suggests needs two or three. Each
// count is added to the start afresh, as months from 31 January must not be chained through
// 28 February.
int32_t wholeUnits(icu::Calendar &calendar, UDate from, UDate to, UCalendarDateFields field,
                   UErrorCode &status)
{
    const auto reached = [&](int32_t count) {
        calendar.setTime(from, status);
        calendar.add(field, count, status);
        return calendar.getTime(status);
    };
    const auto calendarsOwnSearch = [&] {
        calendar.setTime(from, status);
        return calendar.fieldDifference(to, field, status);
    };

    const double estimate = std::trunc((to - from) / typicalMsecs(field));
    if (std::fabs(estimate) > 1e9)
        return calendarsOwnSearch();
    int32_t count = static_cast<int32_t>(estimate);
    constexpr int maxSteps = 8; // the guess is off by one at most, but never rely on it
    for (int step = 0; step < maxSteps && U_SUCCESS(status); ++step) {
        if (to >= from) {
            if (reached(count) > to)
                --count;
            else if (reached(count + 1) <= to)
                ++count;
            else
                return count;
        } else {
            if (reached(count) < to)
                ++count;
            else if (reached(count - 1) >= to)
                --count;
            else
                return count;
        }
    }
    return U_SUCCESS(status) ? calendarsOwnSearch() : 0;
}

// The count of whole units from one instant to another, truncated toward zero (negative once
// the second lies before the first). Zero when either instant is none or out of range.
int calendarDifference(const QDateTime &from, const QDateTime &to, UCalendarDateFields field)
{
    if (!withinCalendar(from) || !withinCalendar(to))
        return 0;
    LocalSettings &settings = localSettings();
    std::unique_ptr<icu::Calendar> ownCalendar;
    icu::Calendar *calendar = calendarFor(settings, ownCalendar);
    if (!calendar)
        return 0;

    UErrorCode status = U_ZERO_ERROR;
    const int32_t count = wholeUnits(*calendar, icuDate(from), icuDate(to), field, status);
    return U_SUCCESS(status) ? count : 0;
}

EVCountdown::Lines unitLines(int count, const QString &plural, const QString &singular)
{
    // Only a count above one is plural, so a passed event reads "Day Passed"; a count of zero
    // already reads as passed. Both are how the widget has always read.
    const QString &word = count > 1 ? plural : singular;
    const QString direction = count > 0 ? QStringLiteral("Left") : QStringLiteral("Passed");
    return {QString::asprintf("%.f", std::fabs(static_cast<double>(count))),
            word + QLatin1Char(' ') + direction};
}

EVCountdown::Lines timeLines(const QDateTime &from, const QDateTime &to)
{
    // Hours, minutes and seconds count elapsed time, so a daylight-saving change adds or
    // removes an hour; hours are not folded into days.
    qint64 elapsedMsecs = 0;
    if (from.isValid() && to.isValid() &&
        qSubOverflow(to.toMSecsSinceEpoch(), from.toMSecsSinceEpoch(), &elapsedMsecs))
        elapsedMsecs = 0;
    const qint64 elapsedSeconds = elapsedMsecs / msecsPerSecond;
    const qint64 h = elapsedSeconds / secondsPerHour;
    const qint64 m = elapsedSeconds % secondsPerHour / secondsPerMinute;
    const qint64 s = elapsedSeconds % secondsPerMinute;

    const double hours = std::fabs(static_cast<double>(h));
    const double minutes = std::fabs(static_cast<double>(m));
    const double seconds = std::fabs(static_cast<double>(s));
    if (hours > 24.0) {
        const double days = std::trunc(hours / 24.0);
        return {QString::asprintf("%.f", std::fabs(days)),
                QString::asprintf("%02.f:%02.f:%02.f", hours - 24.0 * days, minutes, seconds)};
    }
    const QString direction = h + m + s > 0 ? QStringLiteral("Left") : QStringLiteral("Passed");
    return {QString::asprintf("%02.f:%02.f:%02.f", hours, minutes, seconds),
            QStringLiteral("Seconds ") + direction};
}

} // namespace

QString EVCountdown::widgetDateText(const EVWidgetEntry &entry)
{
    return renderDate(entry.eventDate(), widgetDateFormat(entry.dateformat(), entry.timeElement()));
}

QString EVCountdown::reminderDateText(const EVWidgetEntry &entry)
{
    return renderDate(entry.eventDate(),
                      reminderDateFormat(entry.dateformat(), entry.timeElement()));
}

EVCountdown::Lines EVCountdown::countdownLines(const EVWidgetEntry &entry, const QDateTime &now)
{
    const QDateTime event = entry.eventDate();
    switch (entry.countdownUnit()) {
    case 1:
        return unitLines(calendarDifference(now, event, UCAL_DATE), QStringLiteral("Days"),
                         QStringLiteral("Day"));
    case 2:
        // Adding a week of the year adds seven days of wall time, so these are whole weeks of
        // seven days, not changes of week number.
        return unitLines(calendarDifference(now, event, UCAL_WEEK_OF_YEAR), QStringLiteral("Weeks"),
                         QStringLiteral("Week"));
    case 3:
        return unitLines(calendarDifference(now, event, UCAL_MONTH), QStringLiteral("Months"),
                         QStringLiteral("Month"));
    case 4:
        return unitLines(calendarDifference(now, event, UCAL_YEAR), QStringLiteral("Years"),
                         QStringLiteral("Year"));
    default:
        return timeLines(now, event);
    }
}

QMap<QString, QString> EVCountdown::countdownDesc(const EVWidgetEntry &entry)
{
    const Lines lines = countdownLines(entry, EVClock::now());
    return {{EVCountdownMajorDescKey, lines.majorDesc},
            {EVCountdownSecondDescKey, lines.secondDesc}};
}

EVCountdown::DateFormat EVCountdown::widgetDateFormat(int dateformat, bool timeElement)
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

EVCountdown::DateFormat EVCountdown::reminderDateFormat(int dateformat, bool timeElement)
{
    if (timeElement)
        return widgetDateFormat(dateformat, timeElement);
    // Unlike the widget, a date-only reminder keeps month names for tags 1 and 2 alone.
    if (dateformat == 1 || dateformat == 2)
        return widgetDateFormat(dateformat, timeElement);
    return DateFormat{QStringLiteral("yyyy-MM-dd"), DateFormatKind::UnicodePattern};
}

QString EVCountdown::renderDate(const QDateTime &instant, const DateFormat &format)
{
    if (!withinCalendar(instant))
        return QString();
    return format.kind == DateFormatKind::Strftime ? renderStrftime(instant, format.format)
                                                   : renderPattern(instant, format.format);
}

void EVCountdown::setCachingEnabled(bool enabled)
{
    cachingEnabled = enabled;
}

bool EVCountdown::isCachingEnabled()
{
    return cachingEnabled;
}
