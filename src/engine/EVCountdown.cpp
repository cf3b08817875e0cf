#include "engine/EVCountdown.h"

#include "core/EVClock.h"
#include "engine/EVLocalCalendar.h"
#include "store/EVWidgetEntry.h"

#include <QtNumeric>

#include <algorithm>
#include <cmath>

namespace {

constexpr qint64 msecsPerSecond = 1000;
constexpr qint64 secondsPerMinute = 60;
constexpr qint64 secondsPerHour = 3600;

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

EVCountdown::Lines EVCountdown::countdownLines(const EVWidgetEntry &entry, const QDateTime &now)
{
    using EVLocalCalendar::Unit;
    const QDateTime event = entry.eventDate();
    switch (entry.countdownUnit()) {
    case 1:
        return unitLines(EVLocalCalendar::difference(now, event, Unit::Day), QStringLiteral("Days"),
                         QStringLiteral("Day"));
    case 2:
        return unitLines(EVLocalCalendar::difference(now, event, Unit::Week),
                         QStringLiteral("Weeks"), QStringLiteral("Week"));
    case 3:
        return unitLines(EVLocalCalendar::difference(now, event, Unit::Month),
                         QStringLiteral("Months"), QStringLiteral("Month"));
    case 4:
        return unitLines(EVLocalCalendar::difference(now, event, Unit::Year),
                         QStringLiteral("Years"), QStringLiteral("Year"));
    default:
        return timeLines(now, event);
    }
}

qint64 EVCountdown::linesUnchangedUntil(const EVWidgetEntry &entry, const QDateTime &now)
{
    const qint64 from = now.toMSecsSinceEpoch();
    const int unit = entry.countdownUnit();
    if (unit < 1 || unit > 4)
        return from + 1;

    // Counts of whole days, weeks, months or years only ever step one way as time goes on, so
    // the lines read as at now up to one instant and differently from then on: doubling finds
    // an instant past it, halving then finds it to the millisecond.
    constexpr qint64 searchedSpan = 400LL * 24 * 3600 * msecsPerSecond;
    const Lines atNow = countdownLines(entry, now);
    const auto sameAt = [&](qint64 offset) {
        return countdownLines(entry, QDateTime::fromMSecsSinceEpoch(from + offset, Qt::UTC)) ==
               atNow;
    };
    qint64 same = 0;
    qint64 changed = msecsPerSecond;
    while (sameAt(changed)) {
        same = changed;
        if (changed == searchedSpan)
            return from + searchedSpan;
        changed = std::min(changed * 2, searchedSpan);
    }
    while (changed - same > 1) {
        const qint64 middle = same + (changed - same) / 2;
        (sameAt(middle) ? same : changed) = middle;
    }
    return from + changed;
}

QMap<QString, QString> EVCountdown::countdownDesc(const EVWidgetEntry &entry)
{
    const Lines lines = countdownLines(entry, EVClock::now());
    return {{EVCountdownMajorDescKey, lines.majorDesc},
            {EVCountdownSecondDescKey, lines.secondDesc}};
}
