#include "engine/EVLocalCalendar.h"

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

namespace EVLocalCalendar {
namespace {

// Instants further than this from 1970 (about three million years) are treated as none: ICU
// would silently clamp them to the end of its calendar and print or count a wrong date.
constexpr qint64 calendarLimitMsecs = 100'000'000'000'000'000;

constexpr qint64 msecsPerSecond = 1000;

// What the calendar and the formatters are made from: the user's time zone and locale.
// Rebuilt whenever TZ or the LC_TIME locale of the process changes.
struct LocalSettings
{
    bool ready = false;
    // Goes up with every rebuild, so that what was computed under other settings can be told.
    quint64 generation = 0;
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
    ++settings.generation;
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

UDate icuDate(const QDateTime &instant)
{
    return static_cast<UDate>(instant.toMSecsSinceEpoch());
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

int32_t fieldDifference(const QDateTime &from, const QDateTime &to, UCalendarDateFields field)
{
    if (!isWithinCalendar(from) || !isWithinCalendar(to))
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

UCalendarDateFields fieldFor(Unit unit)
{
    switch (unit) {
    case Unit::Week:
        // Adding a week of the year adds seven days of wall time, so these are whole weeks of
        // seven days, not changes of week number.
        return UCAL_WEEK_OF_YEAR;
    case Unit::Month:
        return UCAL_MONTH;
    case Unit::Year:
        return UCAL_YEAR;
    default:
        return UCAL_DATE;
    }
}

} // namespace

bool isWithinCalendar(const QDateTime &instant)
{
    if (!instant.isValid())
        return false;
    const qint64 msecs = instant.toMSecsSinceEpoch();
    return msecs >= -calendarLimitMsecs && msecs <= calendarLimitMsecs;
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

int difference(const QDateTime &from, const QDateTime &to, Unit unit)
{
    return fieldDifference(from, to, fieldFor(unit));
}

quint64 settingsGeneration()
{
    return localSettings().generation;
}

void setCachingEnabled(bool enabled)
{
    cachingEnabled = enabled;
}

} // namespace EVLocalCalendar
