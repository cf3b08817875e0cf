#include "TestMain.h"

#include "core/EVClock.h"
#include "engine/EVCountdown.h"
#include "engine/EVDateText.h"
#include "engine/EVLocalCalendar.h"
#include "store/EVWidgetEntry.h"

#include <QRandomGenerator>
#include <QTimeZone>

#include <unicode/gregocal.h>
#include <unicode/timezone.h>

#include <clocale>
#include <limits>

using Lines = EVCountdown::Lines;
using DateFormat = EVDateText::DateFormat;
using Kind = EVDateText::DateFormatKind;

char *toString(const Lines &lines)
{
    return QTest::toString(
        QStringLiteral("\"%1\" over \"%2\"").arg(lines.majorDesc, lines.secondDesc));
}

char *toString(const DateFormat &format)
{
    return QTest::toString(QStringLiteral("%1 (%2)").arg(
        format.format,
        format.kind == Kind::Strftime ? QStringLiteral("strftime") : QStringLiteral("pattern")));
}

namespace {

Lines expect(const char *major, const char *second)
{
    return {QString::fromUtf8(major), QString::fromUtf8(second)};
}

Lines linesFor(int unit, const QDateTime &now, const QDateTime &event, int ignoredDayType = 0)
{
    EVWidgetEntry entry;
    entry.setCountdownUnit(unit);
    entry.setIgnoredDayType(ignoredDayType);
    entry.setEventDate(event);
    return EVCountdown::countdownLines(entry, now);
}

// The instant up to which a widget's lines hold, as a local wall-clock time.
QDateTime unchangedUntil(int unit, const QDateTime &now, const QDateTime &event)
{
    EVWidgetEntry entry;
    entry.setCountdownUnit(unit);
    entry.setEventDate(event);
    return QDateTime::fromMSecsSinceEpoch(EVCountdown::linesUnchangedUntil(entry, now));
}

// The signed count behind a unit line: positive while the event lies ahead.
int signedCount(const Lines &lines)
{
    return lines.majorDesc.toInt() * (lines.secondDesc.endsWith(QLatin1String("Left")) ? 1 : -1);
}

QString widgetText(const QDateTime &event, int dateformat, bool timeElement)
{
    EVWidgetEntry entry;
    entry.setEventDate(event);
    entry.setDateformat(dateformat);
    entry.setTimeElement(timeElement);
    return EVDateText::widgetDateText(entry);
}

QString reminderText(const QDateTime &event, int dateformat, bool timeElement)
{
    EVWidgetEntry entry;
    entry.setEventDate(event);
    entry.setDateformat(dateformat);
    entry.setTimeElement(timeElement);
    return EVDateText::reminderDateText(entry);
}

// A wall-clock time in the process's own time zone.
QDateTime local(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second));
}

// A wall-clock time in a named zone; tests using it also set TZ to that zone.
QDateTime zoned(const char *zone, int year, int month, int day, int hour, int minute = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute), QTimeZone(zone));
}

// Wednesday, a long way from any daylight-saving change in the zones the tests run under.
QDateTime referenceNow()
{
    return local(2024, 6, 12, 10, 0, 0);
}

constexpr qint64 hour = 3600;
constexpr qint64 day = 24 * hour;

} // namespace

class TestEVCountdown : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { EVLocalCalendar::setCachingEnabled(true); }

    // The environment the variants ask for must really be in effect, or they prove nothing.
    void timeLocaleFollowsTheEnvironment()
    {
        const QByteArray wanted = qgetenv("LC_ALL");
        if (wanted.isEmpty())
            QSKIP("LC_ALL is not set for this run");
        QVERIFY2(QByteArray(std::setlocale(LC_TIME, nullptr)) == wanted,
                 "the locale is not installed; scripts/setup generates it");
    }

    // --- Day counts ---

    void dayUnitOneDayAndThreeHoursAheadReadsOneDayLeft()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(1, now, now.addSecs(day + 3 * hour)), expect("1", "Day Left"));
    }

    void dayUnitTwoDaysAheadReadsTwoDaysLeft()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(1, now, now.addSecs(2 * day)), expect("2", "Days Left"));
    }

    void dayUnitFiveDaysPastReadsFiveDayPassed()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(1, now, now.addSecs(-5 * day)), expect("5", "Day Passed"));
    }

    void dayUnitLessThanADayAheadReadsZeroDayPassed()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(1, now, now.addSecs(day - 1)), expect("0", "Day Passed"));
        QCOMPARE(linesFor(1, now, now.addSecs(hour)), expect("0", "Day Passed"));
        QCOMPARE(linesFor(1, now, now), expect("0", "Day Passed"));
    }

    void dayUnitLessThanADayAfterTheEventReadsZeroDayPassed()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(1, now, now.addSecs(-(day - 1))), expect("0", "Day Passed"));
        QCOMPARE(linesFor(1, now, now.addSecs(-day)), expect("1", "Day Passed"));
    }

    // --- Time form ---

    void timeFormWithinADayReadsHoursMinutesSecondsLeft()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(0, now, now.addSecs(3 * hour + 15 * 60 + 42)),
                 expect("03:15:42", "Seconds Left"));
        QCOMPARE(linesFor(0, now, now.addSecs(1)), expect("00:00:01", "Seconds Left"));
    }

    void timeFormAtTheEventReadsZeroSecondsPassed()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(0, now, now), expect("00:00:00", "Seconds Passed"));
        // Less than a second ahead counts no whole second.
        QCOMPARE(linesFor(0, now, now.addMSecs(999)), expect("00:00:00", "Seconds Passed"));
    }

    void timeFormExactlyTwentyFourHoursAheadStaysInHours()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(0, now, now.addSecs(24 * hour)), expect("24:00:00", "Seconds Left"));
    }

    void timeFormTwentyFourAndAHalfHoursAheadStaysInHours()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(0, now, now.addSecs(24 * hour + 30 * 60)),
                 expect("24:30:00", "Seconds Left"));
    }

    void timeFormTwentyFiveHoursAheadReadsOneDayOverTheRest()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(0, now, now.addSecs(25 * hour)), expect("1", "01:00:00"));
        QCOMPARE(linesFor(0, now, now.addSecs(50 * hour + 5 * 60 + 9)), expect("2", "02:05:09"));
        QCOMPARE(linesFor(0, now, now.addSecs(48 * hour)), expect("2", "00:00:00"));
    }

    void timeFormTwoHoursAfterTheEventReadsSecondsPassed()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(0, now, now.addSecs(-2 * hour)), expect("02:00:00", "Seconds Passed"));
        QCOMPARE(linesFor(0, now, now.addSecs(-1)), expect("00:00:01", "Seconds Passed"));
        QCOMPARE(linesFor(0, now, now.addSecs(-24 * hour)), expect("24:00:00", "Seconds Passed"));
    }

    void timeFormFortyNineHoursAfterTheEventHasNoDirectionWord()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(0, now, now.addSecs(-49 * hour)), expect("2", "01:00:00"));
        QCOMPARE(linesFor(0, now, now.addSecs(-(73 * hour + 4 * 60 + 5))), expect("3", "01:04:05"));
    }

    void timeFormCountsHoursBeyondTwoDigits()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(0, now, now.addSecs(400 * day + 7 * hour + 8 * 60 + 9)),
                 expect("400", "07:08:09"));
        QCOMPARE(linesFor(0, now, now.addSecs(-(400 * day + 7 * hour))), expect("400", "07:00:00"));
    }

    void outOfRangeUnitSevenBehavesAsTime()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(7, now, now.addSecs(50 * hour + 5 * 60 + 9)), expect("2", "02:05:09"));
        QCOMPARE(linesFor(7, now, now.addSecs(3 * hour)), expect("03:00:00", "Seconds Left"));
        for (const qint64 offset : {0LL, 1LL, -1LL, 5 * hour, -5 * hour, 30 * day, -30 * day})
            QCOMPARE(linesFor(7, now, now.addSecs(offset)), linesFor(0, now, now.addSecs(offset)));
    }

    void negativeUnitBehavesAsTime()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(-1, now, now.addSecs(-2 * hour)), expect("02:00:00", "Seconds Passed"));
        QCOMPARE(linesFor(-1, now, now.addSecs(26 * hour)), expect("1", "02:00:00"));
        QCOMPARE(linesFor(5, now, now.addSecs(26 * hour)), expect("1", "02:00:00"));
    }

    // --- Weeks ---

    void weekUnitCountsWholeWeeksOfSevenDays()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(2, now, now.addDays(6)), expect("0", "Week Passed"));
        QCOMPARE(linesFor(2, now, now.addDays(7).addSecs(-1)), expect("0", "Week Passed"));
        QCOMPARE(linesFor(2, now, now.addDays(7)), expect("1", "Week Left"));
        QCOMPARE(linesFor(2, now, now.addDays(13)), expect("1", "Week Left"));
        QCOMPARE(linesFor(2, now, now.addDays(14)), expect("2", "Weeks Left"));
    }

    void weekUnitAfterTheEventReadsWeekPassed()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(2, now, now.addDays(-6)), expect("0", "Week Passed"));
        QCOMPARE(linesFor(2, now, now.addDays(-13)), expect("1", "Week Passed"));
        QCOMPARE(linesFor(2, now, now.addDays(-14)), expect("2", "Week Passed"));
    }

    void weekUnitIgnoresWeekNumbers()
    {
        // Sunday to Monday starts a new week of the year, but is a single day.
        QCOMPARE(linesFor(2, local(2024, 6, 16, 10), local(2024, 6, 17, 10)),
                 expect("0", "Week Passed"));
        // Across the turn of the year, where week numbers start again.
        QCOMPARE(linesFor(2, local(2023, 12, 20, 10), local(2024, 1, 17, 10)),
                 expect("4", "Weeks Left"));
        QCOMPARE(linesFor(2, local(2024, 1, 17, 10), local(2023, 12, 20, 10)),
                 expect("4", "Week Passed"));
    }

    void weekCountIsTheDayCountDividedBySevenTowardZero()
    {
        // Covers both directions and, in zones that have it, several daylight-saving changes.
        const QDateTime now = local(2024, 2, 20, 13, 17, 5);
        for (int days = -400; days <= 400; ++days) {
            for (const qint64 extra : {0LL, -1LL, 7 * hour, -7 * hour}) {
                const QDateTime event = now.addDays(days).addSecs(extra);
                const int dayCount = signedCount(linesFor(1, now, event));
                const int weekCount = signedCount(linesFor(2, now, event));
                QVERIFY2(weekCount == dayCount / 7,
                         qPrintable(QStringLiteral("%1 days, %2 weeks to %3")
                                        .arg(dayCount)
                                        .arg(weekCount)
                                        .arg(event.toString(Qt::ISODate))));
            }
        }
    }

    // --- Months ---

    void monthUnitCountsWholeMonths()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(3, now, local(2024, 7, 12, 9, 59, 59)), expect("0", "Month Passed"));
        QCOMPARE(linesFor(3, now, local(2024, 7, 12, 10)), expect("1", "Month Left"));
        QCOMPARE(linesFor(3, now, local(2024, 8, 12, 10)), expect("2", "Months Left"));
        QCOMPARE(linesFor(3, now, local(2025, 6, 12, 9)), expect("11", "Months Left"));
    }

    void monthUnitAfterTheEventReadsMonthPassed()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(3, now, local(2024, 3, 12, 10)), expect("3", "Month Passed"));
        QCOMPARE(linesFor(3, now, local(2024, 3, 12, 10, 0, 1)), expect("2", "Month Passed"));
        QCOMPARE(linesFor(3, now, local(2024, 5, 13, 10)), expect("0", "Month Passed"));
    }

    // Adding a month to the 31st pins the day to the end of a shorter month, and a difference
    // is the largest count whose sum does not pass the event. So from 31 January the end of
    // February is one whole month away, but from the end of February 31 January is not one
    // month back (28 February minus a month is 28 January, already beyond it).
    void monthEndsFollowCalendarArithmetic()
    {
        QCOMPARE(linesFor(3, local(2023, 1, 31), local(2023, 2, 28)), expect("1", "Month Left"));
        QCOMPARE(linesFor(3, local(2023, 1, 31), local(2023, 2, 27, 23, 59, 59)),
                 expect("0", "Month Passed"));
        QCOMPARE(linesFor(3, local(2023, 2, 28), local(2023, 1, 31)), expect("0", "Month Passed"));
        QCOMPARE(linesFor(3, local(2023, 2, 28), local(2023, 1, 28)), expect("1", "Month Passed"));
        // In a leap year the month from 31 January ends on the 29th.
        QCOMPARE(linesFor(3, local(2024, 1, 31), local(2024, 2, 28)), expect("0", "Month Passed"));
        QCOMPARE(linesFor(3, local(2024, 1, 31), local(2024, 2, 29)), expect("1", "Month Left"));
    }

    void monthCountsAreTakenFromTheStartNotChainedThroughShortMonths()
    {
        // Two months from 31 January is 31 March, not 28 March.
        QCOMPARE(linesFor(3, local(2023, 1, 31), local(2023, 3, 30)), expect("1", "Month Left"));
        QCOMPARE(linesFor(3, local(2023, 1, 31), local(2023, 3, 31)), expect("2", "Months Left"));
        QCOMPARE(linesFor(3, local(2023, 3, 31), local(2023, 4, 30)), expect("1", "Month Left"));
    }

    // --- Years ---

    void yearUnitCountsWholeYears()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(4, now, local(2025, 6, 12, 9, 59, 59)), expect("0", "Year Passed"));
        QCOMPARE(linesFor(4, now, local(2025, 6, 12, 10)), expect("1", "Year Left"));
        QCOMPARE(linesFor(4, now, local(2034, 6, 12, 9, 59, 59)), expect("9", "Years Left"));
        QCOMPARE(linesFor(4, now, local(2034, 6, 12, 10)), expect("10", "Years Left"));
    }

    void yearUnitAfterTheEventReadsYearPassed()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(4, now, local(2022, 6, 12, 10)), expect("2", "Year Passed"));
        QCOMPARE(linesFor(4, now, local(2022, 6, 12, 10, 0, 1)), expect("1", "Year Passed"));
        QCOMPARE(linesFor(4, now, local(1924, 6, 12, 10)), expect("100", "Year Passed"));
    }

    // From 29 February a year ends on 28 February of a common year; back from 28 February of a
    // common year, a year back is 28 February of the leap year, past the 29th.
    void leapDayYearsFollowCalendarArithmetic()
    {
        QCOMPARE(linesFor(4, local(2024, 2, 29), local(2025, 2, 28)), expect("1", "Year Left"));
        QCOMPARE(linesFor(4, local(2025, 2, 28), local(2024, 2, 29)), expect("0", "Year Passed"));
        QCOMPARE(linesFor(4, local(2025, 2, 28), local(2024, 2, 28)), expect("1", "Year Passed"));
        QCOMPARE(linesFor(4, local(2024, 2, 29), local(2028, 2, 28)), expect("3", "Years Left"));
        QCOMPARE(linesFor(4, local(2024, 2, 29), local(2028, 2, 29)), expect("4", "Years Left"));
        QCOMPARE(linesFor(3, local(2024, 2, 29), local(2025, 2, 28)), expect("12", "Months Left"));
    }

    // Counts must be exactly the calendar's own, as ICU's fieldDifference gives them, over many
    // pairs of instants: near and far, in both directions, around summer-time changes (Lord Howe
    // shifts by half an hour), month ends and leap days, and on or next to unit boundaries.
    void unitCountsMatchTheCalendarsFieldDifference_data()
    {
        QTest::addColumn<QByteArray>("zone");
        for (const char *zone :
             {"America/New_York", "Europe/Berlin", "Australia/Lord_Howe", "Asia/Kolkata", "UTC"})
            QTest::newRow(zone) << QByteArray(zone);
    }

    void unitCountsMatchTheCalendarsFieldDifference()
    {
        QFETCH(QByteArray, zone);
        ScopedEnvironment tz("TZ", zone);
        UErrorCode status = U_ZERO_ERROR;
        icu::GregorianCalendar calendar(
            icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(zone.constData())), status);
        QVERIFY(U_SUCCESS(status));
        const auto icuCount = [&](qint64 from, qint64 to, UCalendarDateFields field) {
            calendar.setTime(static_cast<UDate>(from), status);
            return calendar.fieldDifference(static_cast<UDate>(to), field, status);
        };
        const auto icuReached = [&](qint64 from, int count, UCalendarDateFields field) {
            calendar.setTime(static_cast<UDate>(from), status);
            calendar.add(field, count, status);
            return static_cast<qint64>(calendar.getTime(status));
        };

        struct Unit
        {
            int unit;
            UCalendarDateFields field;
        };
        const Unit units[] = {
            {1, UCAL_DATE}, {2, UCAL_WEEK_OF_YEAR}, {3, UCAL_MONTH}, {4, UCAL_YEAR}};
        const qint64 scales[] = {3 * hour, 3 * day, 70 * day, 4 * 365 * day, 300 * 365 * day};
        const QTimeZone timeZone(zone);
        QRandomGenerator random(20240310);
        for (int i = 0; i < 6000; ++i) {
            qint64 from = 0;
            qint64 to = 0;
            if (i % 2 == 0) {
                // Small hours of a day in a month where summer time starts or ends somewhere,
                // or at the end of a month.
                const int months[] = {2, 3, 4, 10, 11, 1};
                const int month = months[random.bounded(6)];
                const int year = 2000 + random.bounded(40);
                const QDate date(year, month,
                                 1 + random.bounded(QDate(year, month, 1).daysInMonth()));
                const QTime time(random.bounded(4), random.bounded(60), random.bounded(60));
                from = QDateTime(date, time, timeZone).toMSecsSinceEpoch();
                to = from + random.bounded(-40, 41) * day * 1000 +
                     random.bounded(-3 * hour, 3 * hour) * 1000;
            } else {
                const qint64 scale = scales[random.bounded(5)] * 1000;
                from = QDateTime(QDate(2000, 1, 1), QTime(0, 0), QTimeZone::utc())
                           .addDays(random.bounded(40 * 365))
                           .toMSecsSinceEpoch() +
                       random.bounded(day * 1000);
                to = from + random.bounded(-scale, scale);
            }
            const Unit &unit = units[random.bounded(4)];
            if (i % 3 == 0) {
                // On a boundary, or a millisecond either side of it.
                to = icuReached(from, icuCount(from, to, unit.field), unit.field) +
                     random.bounded(-1, 2);
            }
            const int expected = icuCount(from, to, unit.field);
            QVERIFY(U_SUCCESS(status));
            const int actual = signedCount(linesFor(unit.unit, QDateTime::fromMSecsSinceEpoch(from),
                                                    QDateTime::fromMSecsSinceEpoch(to)));
            QVERIFY2(actual == expected,
                     qPrintable(QStringLiteral("unit %1 from %2 to %3: %4, the calendar says %5")
                                    .arg(unit.unit)
                                    .arg(QDateTime::fromMSecsSinceEpoch(from, timeZone)
                                             .toString(Qt::ISODateWithMs))
                                    .arg(QDateTime::fromMSecsSinceEpoch(to, timeZone)
                                             .toString(Qt::ISODateWithMs))
                                    .arg(actual)
                                    .arg(expected)));
        }
    }

    // --- Daylight saving ---

    void dayCountAcrossSpringForwardInNewYorkCountsCalendarDays()
    {
        ScopedEnvironment tz("TZ", "America/New_York");
        const QDateTime now = zoned("America/New_York", 2024, 3, 9, 12);
        // A calendar day of 23 hours.
        QCOMPARE(linesFor(1, now, zoned("America/New_York", 2024, 3, 10, 12)),
                 expect("1", "Day Left"));
        QCOMPARE(linesFor(1, now, zoned("America/New_York", 2024, 3, 10, 11, 59)),
                 expect("0", "Day Passed"));
        QCOMPARE(linesFor(1, zoned("America/New_York", 2024, 3, 10, 12), now),
                 expect("1", "Day Passed"));
    }

    void timeFormAcrossSpringForwardInNewYorkCountsElapsedHours()
    {
        ScopedEnvironment tz("TZ", "America/New_York");
        const QDateTime now = zoned("America/New_York", 2024, 3, 9, 12);
        QCOMPARE(linesFor(0, now, zoned("America/New_York", 2024, 3, 10, 12)),
                 expect("23:00:00", "Seconds Left"));
        QCOMPARE(linesFor(0, zoned("America/New_York", 2024, 3, 10, 12), now),
                 expect("23:00:00", "Seconds Passed"));
    }

    void dayCountAcrossFallBackInNewYorkCountsCalendarDays()
    {
        ScopedEnvironment tz("TZ", "America/New_York");
        const QDateTime now = zoned("America/New_York", 2024, 11, 2, 12);
        // A calendar day of 25 hours: 24.5 hours elapsed are not yet a day.
        QCOMPARE(linesFor(1, now, zoned("America/New_York", 2024, 11, 3, 11, 30)),
                 expect("0", "Day Passed"));
        QCOMPARE(linesFor(1, now, zoned("America/New_York", 2024, 11, 3, 12)),
                 expect("1", "Day Left"));
    }

    void timeFormAcrossFallBackInNewYorkCountsElapsedHours()
    {
        ScopedEnvironment tz("TZ", "America/New_York");
        const QDateTime now = zoned("America/New_York", 2024, 11, 2, 12);
        QCOMPARE(linesFor(0, now, zoned("America/New_York", 2024, 11, 3, 11, 30)),
                 expect("24:30:00", "Seconds Left"));
        QCOMPARE(linesFor(0, now, zoned("America/New_York", 2024, 11, 3, 12)),
                 expect("1", "01:00:00"));
    }

    void countsAcrossSummerTimeInBerlin()
    {
        ScopedEnvironment tz("TZ", "Europe/Berlin");
        const QDateTime spring = zoned("Europe/Berlin", 2024, 3, 30, 12);
        QCOMPARE(linesFor(1, spring, zoned("Europe/Berlin", 2024, 3, 31, 12)),
                 expect("1", "Day Left"));
        QCOMPARE(linesFor(0, spring, zoned("Europe/Berlin", 2024, 3, 31, 12)),
                 expect("23:00:00", "Seconds Left"));

        const QDateTime autumn = zoned("Europe/Berlin", 2024, 10, 26, 12);
        QCOMPARE(linesFor(1, autumn, zoned("Europe/Berlin", 2024, 10, 27, 12)),
                 expect("1", "Day Left"));
        QCOMPARE(linesFor(1, autumn, zoned("Europe/Berlin", 2024, 10, 27, 11, 30)),
                 expect("0", "Day Passed"));
        QCOMPARE(linesFor(0, autumn, zoned("Europe/Berlin", 2024, 10, 27, 12)),
                 expect("1", "01:00:00"));
    }

    void weeksAndMonthsAcrossSummerTimeFollowTheWallClock()
    {
        ScopedEnvironment tz("TZ", "Europe/Berlin");
        const QDateTime now = zoned("Europe/Berlin", 2024, 10, 22, 12);
        // 168.5 hours elapsed, but the wall clock has not reached the same time a week on.
        QCOMPARE(linesFor(2, now, zoned("Europe/Berlin", 2024, 10, 29, 11, 30)),
                 expect("0", "Week Passed"));
        QCOMPARE(linesFor(2, now, zoned("Europe/Berlin", 2024, 10, 29, 12)),
                 expect("1", "Week Left"));
        QCOMPARE(linesFor(3, zoned("Europe/Berlin", 2024, 3, 15, 12),
                          zoned("Europe/Berlin", 2024, 4, 15, 12)),
                 expect("1", "Month Left"));
        QCOMPARE(linesFor(3, zoned("Europe/Berlin", 2024, 3, 15, 12),
                          zoned("Europe/Berlin", 2024, 4, 15, 11, 59)),
                 expect("0", "Month Passed"));
    }

    // --- How long the lines hold ---

    void dayCountAtMidnightHoldsUntilTheNextMidnightAcrossSpringForward()
    {
        ScopedEnvironment tz("TZ", "Europe/Berlin");
        const QDateTime event = zoned("Europe/Berlin", 2026, 4, 2, 0);
        // 28 March has 24 hours; 29 March, when clocks go forward, has 23.
        QCOMPARE(unchangedUntil(1, zoned("Europe/Berlin", 2026, 3, 28, 12), event),
                 zoned("Europe/Berlin", 2026, 3, 29, 0).addMSecs(1));
        QCOMPARE(unchangedUntil(1, zoned("Europe/Berlin", 2026, 3, 29, 0).addMSecs(1), event),
                 zoned("Europe/Berlin", 2026, 3, 30, 0).addMSecs(1));
    }

    void dayCountHoldsThroughTheLongDayOfFallBack()
    {
        ScopedEnvironment tz("TZ", "Europe/Berlin");
        const QDateTime event = zoned("Europe/Berlin", 2026, 10, 30, 0);
        // 25 October, when clocks go back, has 25 hours.
        QCOMPARE(unchangedUntil(1, zoned("Europe/Berlin", 2026, 10, 25, 0).addMSecs(1), event),
                 zoned("Europe/Berlin", 2026, 10, 26, 0).addMSecs(1));
    }

    void dayCountTurnsAtTheEventsTimeOfDay()
    {
        const QDateTime now = referenceNow();
        const QDateTime event = now.addDays(3).addSecs(5 * hour);
        QCOMPARE(unchangedUntil(1, now, event), now.addSecs(5 * hour).addMSecs(1));
    }

    void passedEventCountsOnFromItsTimeOfDay()
    {
        const QDateTime now = referenceNow();
        const QDateTime event = now.addDays(-2).addSecs(3 * hour);
        QCOMPARE(unchangedUntil(1, now, event), now.addSecs(3 * hour));
    }

    void clockCountHoldsForTheCurrentMillisecondOnly()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(unchangedUntil(0, now, now.addDays(3)), now.addMSecs(1));
    }

    void countWithoutAnEventHoldsForTheWholeSearchedSpan()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(unchangedUntil(4, now, QDateTime()), now.addSecs(400 * day));
    }

    void linesReadTheSameJustBeforeTheyChangeAndDifferentlyFromThen()
    {
        QRandomGenerator random(20261121);
        for (int sample = 0; sample < 200; ++sample) {
            EVWidgetEntry entry;
            entry.setCountdownUnit(1 + int(random.bounded(4)));
            const QDateTime now = referenceNow().addSecs(random.bounded(400 * day));
            entry.setEventDate(now.addSecs(random.bounded(8 * 400 * day) - 4 * 400 * day));
            const qint64 until = EVCountdown::linesUnchangedUntil(entry, now);
            const Lines atNow = EVCountdown::countdownLines(entry, now);
            QVERIFY(until > now.toMSecsSinceEpoch());
            QCOMPARE(EVCountdown::countdownLines(entry, QDateTime::fromMSecsSinceEpoch(until - 1)),
                     atNow);
            if (until < now.addSecs(400 * day).toMSecsSinceEpoch())
                QVERIFY(EVCountdown::countdownLines(entry, QDateTime::fromMSecsSinceEpoch(until)) !=
                        atNow);
        }
    }

    // --- Inputs that are not inputs, and bad inputs ---

    void ignoredDayTypeLeavesEveryCountUnchanged()
    {
        // Wednesday to a Monday five weekends later.
        const QDateTime now = referenceNow();
        const QDateTime event = local(2024, 7, 15, 18, 30);
        for (int ignored = 0; ignored <= 2; ++ignored) {
            QCOMPARE(linesFor(1, now, event, ignored), expect("33", "Days Left"));
            QCOMPARE(linesFor(2, now, event, ignored), expect("4", "Weeks Left"));
            QCOMPARE(linesFor(3, now, event, ignored), expect("1", "Month Left"));
            QCOMPARE(linesFor(4, now, event, ignored), expect("0", "Year Passed"));
            QCOMPARE(linesFor(0, now, event, ignored), expect("33", "08:30:00"));
        }
    }

    void missingEventDateGivesZeroCounts()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(0, now, QDateTime()), expect("00:00:00", "Seconds Passed"));
        QCOMPARE(linesFor(1, now, QDateTime()), expect("0", "Day Passed"));
        QCOMPARE(linesFor(2, now, QDateTime()), expect("0", "Week Passed"));
        QCOMPARE(linesFor(3, now, QDateTime()), expect("0", "Month Passed"));
        QCOMPARE(linesFor(4, now, QDateTime()), expect("0", "Year Passed"));
        QCOMPARE(linesFor(1, QDateTime(), now), expect("0", "Day Passed"));
    }

    void missingEventDateGivesNoDateText()
    {
        for (int tag = -1; tag <= 9; ++tag) {
            for (const bool timeElement : {false, true}) {
                QVERIFY(widgetText(QDateTime(), tag, timeElement).isNull());
                QVERIFY(reminderText(QDateTime(), tag, timeElement).isNull());
            }
        }
    }

    void eventsBeyondTheCalendarDoNotCrash()
    {
        const QDateTime now = referenceNow();
        const QDateTime far = QDateTime(QDate(100000000, 1, 1), QTime(0, 0), Qt::UTC);
        const QDateTime farBack = QDateTime(QDate(-100000000, 1, 1), QTime(0, 0), Qt::UTC);
        QVERIFY(far.isValid());
        QVERIFY(farBack.isValid());
        for (const QDateTime &event : {far, farBack}) {
            for (int unit = 1; unit <= 4; ++unit)
                QCOMPARE(linesFor(unit, now, event).majorDesc, QStringLiteral("0"));
            QVERIFY(widgetText(event, 0, true).isNull());
            QVERIFY(widgetText(event, 1, true).isNull());
        }
        // Elapsed time needs no calendar: a hundred million years are still counted in days.
        QVERIFY(linesFor(0, now, far).majorDesc.size() > 10);
        QCOMPARE(linesFor(0, farBack, far).majorDesc, linesFor(0, far, farBack).majorDesc);
        const QDateTime extreme = QDateTime::fromMSecsSinceEpoch(
            std::numeric_limits<qint64>::max() / 2, QTimeZone::utc());
        const QDateTime extremeBack = QDateTime::fromMSecsSinceEpoch(
            std::numeric_limits<qint64>::min() / 2 - 1000, QTimeZone::utc());
        QVERIFY(extreme.isValid());
        QVERIFY(extremeBack.isValid());
        // Their distance does not fit in 64-bit milliseconds.
        QCOMPARE(linesFor(0, extremeBack, extreme), linesFor(0, now, now));
    }

    void yearFarAheadStillCounts()
    {
        const QDateTime now = referenceNow();
        QCOMPARE(linesFor(4, now, local(9999, 6, 12, 10)), expect("7975", "Years Left"));
        // A hundred years with 24 leap days: 2100 is not a leap year.
        QCOMPARE(linesFor(1, local(2024, 1, 1), local(2124, 1, 1)), expect("36524", "Days Left"));
    }

    // --- The dictionary form ---

    void countdownDescUsesTheProgramClockAndTheKnownKeys()
    {
        const QDateTime now = referenceNow();
        PinnedClock clock(now);
        EVWidgetEntry entry;
        entry.setCountdownUnit(1);
        entry.setEventDate(now.addSecs(2 * day));
        const QMap<QString, QString> desc = EVCountdown::countdownDesc(entry);
        QCOMPARE(EVCountdownMajorDescKey, QStringLiteral("MajorDesc"));
        QCOMPARE(EVCountdownSecondDescKey, QStringLiteral("SecondDesc"));
        QCOMPARE(desc, (QMap<QString, QString>{
                           {QStringLiteral("MajorDesc"), QStringLiteral("2")},
                           {QStringLiteral("SecondDesc"), QStringLiteral("Days Left")}}));

        EVClock::advance(2 * day * 1000);
        QCOMPARE(EVCountdown::countdownDesc(entry).value(EVCountdownSecondDescKey),
                 QStringLiteral("Day Passed"));
    }

    // --- Date-format tables ---

    void widgetTableHasNineFormats_data()
    {
        QTest::addColumn<int>("tag");
        QTest::addColumn<bool>("timeElement");
        QTest::addColumn<QString>("format");
        QTest::addColumn<bool>("isStrftime");
        const auto row = [](int tag, bool time, const char *format, bool isStrftime) {
            QTest::addRow("tag %d %s", tag, time ? "with time" : "date only")
                << tag << time << QString::fromLatin1(format) << isStrftime;
        };
        row(0, true, "yyyy-MM-dd HH:mm:ss", false);
        row(0, false, "yyyy-MM-dd", false);
        row(1, true, "%b %d, %Y, %H:%M:%S", true);
        row(1, false, "%b %d, %Y", true);
        row(2, true, "%d %b %Y, %H:%M:%S", true);
        row(2, false, "%d %b %Y", true);
        row(3, true, "yyyy-MM-dd HH:mm:ss a", false);
        row(3, false, "yyyy-MM-dd", false);
        row(4, true, "%b %d, %Y, %H:%M:%S %p", true);
        row(4, false, "%b %d, %Y", true);
        row(5, true, "%d %b %Y, %H:%M:%S %p", true);
        row(5, false, "%d %b %Y", true);
        row(6, true, "yyyy-MM-dd HH:mm:ss", false);
        row(6, false, "yyyy-MM-dd", false);
        row(9, true, "yyyy-MM-dd HH:mm:ss", false);
        row(9, false, "yyyy-MM-dd", false);
        row(-1, true, "yyyy-MM-dd HH:mm:ss", false);
        row(-1, false, "yyyy-MM-dd", false);
    }

    void widgetTableHasNineFormats()
    {
        QFETCH(int, tag);
        QFETCH(bool, timeElement);
        QFETCH(QString, format);
        QFETCH(bool, isStrftime);
        QCOMPARE(EVDateText::widgetDateFormat(tag, timeElement),
                 (DateFormat{format, isStrftime ? Kind::Strftime : Kind::UnicodePattern}));
    }

    void reminderTableDiffersForDateOnlyTagsThreeToFive_data()
    {
        QTest::addColumn<int>("tag");
        QTest::addColumn<QString>("format");
        QTest::addColumn<bool>("isStrftime");
        QTest::newRow("tag 0") << 0 << QStringLiteral("yyyy-MM-dd") << false;
        QTest::newRow("tag 1") << 1 << QStringLiteral("%b %d, %Y") << true;
        QTest::newRow("tag 2") << 2 << QStringLiteral("%d %b %Y") << true;
        QTest::newRow("tag 3") << 3 << QStringLiteral("yyyy-MM-dd") << false;
        QTest::newRow("tag 4") << 4 << QStringLiteral("yyyy-MM-dd") << false;
        QTest::newRow("tag 5") << 5 << QStringLiteral("yyyy-MM-dd") << false;
        QTest::newRow("tag 6") << 6 << QStringLiteral("yyyy-MM-dd") << false;
        QTest::newRow("tag 9") << 9 << QStringLiteral("yyyy-MM-dd") << false;
        QTest::newRow("tag -1") << -1 << QStringLiteral("yyyy-MM-dd") << false;
    }

    void reminderTableDiffersForDateOnlyTagsThreeToFive()
    {
        QFETCH(int, tag);
        QFETCH(QString, format);
        QFETCH(bool, isStrftime);
        QCOMPARE(EVDateText::reminderDateFormat(tag, false),
                 (DateFormat{format, isStrftime ? Kind::Strftime : Kind::UnicodePattern}));
    }

    void reminderTableWithTimeMatchesTheWidgetTable()
    {
        for (int tag = -2; tag <= 10; ++tag)
            QCOMPARE(EVDateText::reminderDateFormat(tag, true),
                     EVDateText::widgetDateFormat(tag, true));
    }

    // --- Date texts ---

    void widgetDateTextForEveryFormat_data()
    {
        QTest::addColumn<int>("tag");
        QTest::addColumn<bool>("timeElement");
        QTest::addColumn<QDateTime>("event");
        QTest::addColumn<QString>("text");
        const QDateTime afternoon = local(2024, 3, 5, 14, 5, 9);
        const QDateTime morning = local(2023, 11, 28, 9, 7, 3);
        const auto row = [](int tag, bool time, const QDateTime &event, const char *text) {
            QTest::addRow("tag %d %s %s", tag, time ? "with time" : "date only",
                          event.time().hour() < 12 ? "morning" : "afternoon")
                << tag << time << event << QString::fromUtf8(text);
        };
        row(0, true, afternoon, "2024-03-05 14:05:09");
        row(0, false, afternoon, "2024-03-05");
        row(1, true, afternoon, "Mar 05, 2024, 14:05:09");
        row(1, false, afternoon, "Mar 05, 2024");
        row(2, true, afternoon, "05 Mar 2024, 14:05:09");
        row(2, false, afternoon, "05 Mar 2024");
        row(3, true, afternoon, "2024-03-05 14:05:09 PM");
        row(3, false, afternoon, "2024-03-05");
        row(4, true, afternoon, "Mar 05, 2024, 14:05:09 PM");
        row(4, false, afternoon, "Mar 05, 2024");
        row(5, true, afternoon, "05 Mar 2024, 14:05:09 PM");
        row(5, false, afternoon, "05 Mar 2024");
        row(6, true, afternoon, "2024-03-05 14:05:09");
        row(9, true, afternoon, "2024-03-05 14:05:09");
        row(9, false, afternoon, "2024-03-05");
        row(-1, true, afternoon, "2024-03-05 14:05:09");
        row(-1, false, afternoon, "2024-03-05");

        row(0, true, morning, "2023-11-28 09:07:03");
        row(1, true, morning, "Nov 28, 2023, 09:07:03");
        row(2, true, morning, "28 Nov 2023, 09:07:03");
        row(3, true, morning, "2023-11-28 09:07:03 AM");
        row(4, true, morning, "Nov 28, 2023, 09:07:03 AM");
        row(5, true, morning, "28 Nov 2023, 09:07:03 AM");
        row(4, false, morning, "Nov 28, 2023");
        row(5, false, morning, "28 Nov 2023");
    }

    void widgetDateTextForEveryFormat()
    {
        QFETCH(int, tag);
        QFETCH(bool, timeElement);
        QFETCH(QDateTime, event);
        QFETCH(QString, text);
        QCOMPARE(widgetText(event, tag, timeElement), text);
        // The same again from the kept formatters, and from fresh ones.
        QCOMPARE(widgetText(event, tag, timeElement), text);
        EVLocalCalendar::setCachingEnabled(false);
        QCOMPARE(widgetText(event, tag, timeElement), text);
    }

    void reminderDateTextForEveryFormat_data()
    {
        QTest::addColumn<int>("tag");
        QTest::addColumn<bool>("timeElement");
        QTest::addColumn<QString>("text");
        const auto row = [](int tag, bool time, const char *text) {
            QTest::addRow("tag %d %s", tag, time ? "with time" : "date only")
                << tag << time << QString::fromUtf8(text);
        };
        row(0, true, "2024-03-05 14:05:09");
        row(0, false, "2024-03-05");
        row(1, true, "Mar 05, 2024, 14:05:09");
        row(1, false, "Mar 05, 2024");
        row(2, true, "05 Mar 2024, 14:05:09");
        row(2, false, "05 Mar 2024");
        row(3, true, "2024-03-05 14:05:09 PM");
        row(3, false, "2024-03-05");
        row(4, true, "Mar 05, 2024, 14:05:09 PM");
        row(4, false, "2024-03-05");
        row(5, true, "05 Mar 2024, 14:05:09 PM");
        row(5, false, "2024-03-05");
        row(6, false, "2024-03-05");
        row(9, true, "2024-03-05 14:05:09");
        row(9, false, "2024-03-05");
        row(-1, false, "2024-03-05");
    }

    void reminderDateTextForEveryFormat()
    {
        QFETCH(int, tag);
        QFETCH(bool, timeElement);
        QFETCH(QString, text);
        QCOMPARE(reminderText(local(2024, 3, 5, 14, 5, 9), tag, timeElement), text);
    }

    void dateformatFourWithoutTimeDiffersBetweenWidgetAndReminder()
    {
        const QDateTime event = local(2024, 3, 5, 14, 5, 9);
        QCOMPARE(widgetText(event, 4, false), QStringLiteral("Mar 05, 2024"));
        QCOMPARE(reminderText(event, 4, false), QStringLiteral("2024-03-05"));
    }

    void dateformatNineWithTimeTakesTheLastRow()
    {
        const QDateTime event = local(2024, 3, 5, 14, 5, 9);
        QCOMPARE(widgetText(event, 9, true), QStringLiteral("2024-03-05 14:05:09"));
        QCOMPARE(reminderText(event, 9, true), QStringLiteral("2024-03-05 14:05:09"));
    }

    void dateTextIgnoresTheCountingUnitAndShowsTheStoredInstant()
    {
        EVWidgetEntry entry;
        entry.setEventDate(local(2024, 3, 5, 14, 5, 9));
        entry.setDateformat(0);
        entry.setTimeElement(true);
        for (int unit = 0; unit <= 4; ++unit) {
            entry.setCountdownUnit(unit);
            QCOMPARE(EVDateText::widgetDateText(entry), QStringLiteral("2024-03-05 14:05:09"));
        }
    }

    void monthAbbreviations_data()
    {
        QTest::addColumn<int>("month");
        QTest::addColumn<QString>("name");
        const char *const names[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
        for (int month = 1; month <= 12; ++month)
            QTest::addRow("%s", names[month - 1]) << month << QString::fromLatin1(names[month - 1]);
    }

    void monthAbbreviations()
    {
        QFETCH(int, month);
        QFETCH(QString, name);
        const QDateTime event = local(2025, month, 7, 20, 0, 0);
        QCOMPARE(widgetText(event, 1, false), name + QStringLiteral(" 07, 2025"));
        QCOMPARE(widgetText(event, 2, false),
                 QStringLiteral("07 ") + name + QStringLiteral(" 2025"));
        QCOMPARE(widgetText(event, 4, true), name + QStringLiteral(" 07, 2025, 20:00:00 PM"));
    }

    void markersAroundMidnightAndNoonKeepTheTwentyFourHourClock()
    {
        const QDateTime midnight = local(2024, 1, 2, 0, 30, 0);
        const QDateTime noon = local(2024, 1, 2, 12, 0, 0);
        QCOMPARE(widgetText(midnight, 3, true), QStringLiteral("2024-01-02 00:30:00 AM"));
        QCOMPARE(widgetText(midnight, 4, true), QStringLiteral("Jan 02, 2024, 00:30:00 AM"));
        QCOMPARE(widgetText(noon, 3, true), QStringLiteral("2024-01-02 12:00:00 PM"));
        QCOMPARE(widgetText(noon, 5, true), QStringLiteral("02 Jan 2024, 12:00:00 PM"));
    }

    void dateTextFollowsAChangeOfTimeZone()
    {
        const QDateTime instant = QDateTime(QDate(2024, 3, 5), QTime(19, 5, 9), QTimeZone::utc());
        {
            ScopedEnvironment tz("TZ", "UTC");
            QCOMPARE(widgetText(instant, 0, true), QStringLiteral("2024-03-05 19:05:09"));
            QCOMPARE(widgetText(instant, 1, true), QStringLiteral("Mar 05, 2024, 19:05:09"));
        }
        {
            ScopedEnvironment tz("TZ", "Asia/Tokyo");
            QCOMPARE(widgetText(instant, 0, true), QStringLiteral("2024-03-06 04:05:09"));
            QCOMPARE(widgetText(instant, 1, true), QStringLiteral("Mar 06, 2024, 04:05:09"));
        }
        {
            ScopedEnvironment tz("TZ", "Asia/Kolkata");
            QCOMPARE(widgetText(instant, 3, true), QStringLiteral("2024-03-06 00:35:09 AM"));
            QCOMPARE(widgetText(instant, 5, true), QStringLiteral("06 Mar 2024, 00:35:09 AM"));
        }
    }

    void dateTextBefore1970RoundsDownToTheSecond()
    {
        ScopedEnvironment tz("TZ", "UTC");
        const QDateTime instant = QDateTime::fromMSecsSinceEpoch(-500, QTimeZone::utc());
        QCOMPARE(widgetText(instant, 0, true), QStringLiteral("1969-12-31 23:59:59"));
        QCOMPARE(widgetText(instant, 1, true), QStringLiteral("Dec 31, 1969, 23:59:59"));
    }

    void resultsDoNotDependOnKeptFormattersAndCalendars()
    {
        const QDateTime now = referenceNow();
        const QList<QDateTime> events{now.addSecs(-40 * day - 5), now.addSecs(3 * hour),
                                      now.addSecs(500 * day + 7), local(2024, 2, 29, 23, 59, 59)};
        for (const QDateTime &event : events) {
            for (int unit = 0; unit <= 4; ++unit) {
                EVLocalCalendar::setCachingEnabled(true);
                const Lines kept = linesFor(unit, now, event);
                EVLocalCalendar::setCachingEnabled(false);
                QCOMPARE(linesFor(unit, now, event), kept);
            }
            for (int tag = 0; tag <= 5; ++tag) {
                EVLocalCalendar::setCachingEnabled(true);
                const QString kept = widgetText(event, tag, true);
                EVLocalCalendar::setCachingEnabled(false);
                QCOMPARE(widgetText(event, tag, true), kept);
            }
        }
    }
};

TALLYVANE_TEST_MAIN(TestEVCountdown)
#include "tst_evcountdown.moc"
