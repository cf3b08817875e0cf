// How long one widget's once-a-second texts take: the countdown lines and the date text, over
// widgets with every counting unit and date format and events spread over years either side.
//
//   build/bench/bench_countdown [widgets] [passes]

#include "engine/EVCountdown.h"
#include "engine/EVDateText.h"
#include "engine/EVLocalCalendar.h"
#include "store/EVWidgetEntry.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QRandomGenerator>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

namespace {

using Entries = std::vector<std::unique_ptr<EVWidgetEntry>>;

Entries makeEntries(int count, const QDateTime &now)
{
    static const int units[] = {0, 1, 2, 3, 4};
    static const int formats[] = {0, 1, 2, 3, 4, 5, 9};
    QRandomGenerator random(20240612);
    Entries entries;
    for (int i = 0; i < count; ++i) {
        auto entry = std::make_unique<EVWidgetEntry>();
        entry->setCountdownUnit(units[i % std::size(units)]);
        entry->setDateformat(formats[i % std::size(formats)]);
        entry->setTimeElement(i % 2 == 0);
        // Up to three years either side of now.
        const qint64 offset = random.bounded(-3 * 365 * 86400, 3 * 365 * 86400);
        entry->setEventDate(now.addSecs(offset));
        entries.push_back(std::move(entry));
    }
    return entries;
}

enum class Work { Lines, DateText, Both };

// Microseconds per widget per pass; the clock moves on a second per pass, as the timer does.
double measure(const Entries &entries, int passes, Work work, qsizetype &sink)
{
    QDateTime now = QDateTime::currentDateTime();
    QElapsedTimer timer;
    timer.start();
    for (int pass = 0; pass < passes; ++pass) {
        for (const auto &entry : entries) {
            if (work != Work::DateText)
                sink += EVCountdown::countdownLines(*entry, now).majorDesc.size();
            if (work != Work::Lines)
                sink += EVDateText::widgetDateText(*entry).size();
        }
        now = now.addSecs(1);
    }
    return static_cast<double>(timer.nsecsElapsed()) / 1000.0 /
           static_cast<double>(passes * static_cast<qint64>(entries.size()));
}

double measureUnit(const QDateTime &now, int unit, int passes, qsizetype &sink)
{
    Entries entries = makeEntries(1000, now);
    for (auto &entry : entries)
        entry->setCountdownUnit(unit);
    return measure(entries, passes, Work::Lines, sink);
}

double measureFormat(const QDateTime &now, int dateformat, int passes, qsizetype &sink)
{
    Entries entries = makeEntries(1000, now);
    for (auto &entry : entries) {
        entry->setDateformat(dateformat);
        entry->setTimeElement(true);
    }
    return measure(entries, passes, Work::DateText, sink);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv); // takes the locale from the environment, as the program does
    const int widgets = argc > 1 ? std::atoi(argv[1]) : 1000;
    const int passes = argc > 2 ? std::atoi(argv[2]) : 50;
    if (widgets <= 0 || passes <= 0) {
        std::fprintf(stderr, "usage: bench_countdown [widgets] [passes]\n");
        return 2;
    }

    const QDateTime now = QDateTime::currentDateTime();
    const Entries entries = makeEntries(widgets, now);
    const char *tz = std::getenv("TZ");
    std::printf("Countdown calculation: %d widgets, %d passes, TZ=%s, LC_TIME=%s\n", widgets,
                passes, tz ? tz : "(unset)", std::setlocale(LC_TIME, nullptr));

    qsizetype sink = 0;
    measure(entries, 1, Work::Both, sink); // first use builds the zone, locale and formatters
    std::printf("\nmicroseconds per widget per second      kept   fresh formatters\n");
    for (const auto &[name, work] :
         {std::pair{"countdown lines", Work::Lines}, std::pair{"date text", Work::DateText},
          std::pair{"lines + date text", Work::Both}}) {
        EVLocalCalendar::setCachingEnabled(true);
        const double kept = measure(entries, passes, work, sink);
        EVLocalCalendar::setCachingEnabled(false);
        const double fresh = measure(entries, std::max(1, passes / 10), work, sink);
        std::printf("  %-36s %6.2f  %6.2f\n", name, kept, fresh);
    }

    std::printf("\ndate text by kind of format (with time)\n");
    for (const auto &[name, dateformat] :
         {std::pair{"ICU pattern, tag 3", 3}, std::pair{"strftime, tag 4", 4}}) {
        EVLocalCalendar::setCachingEnabled(true);
        const double kept = measureFormat(now, dateformat, passes, sink);
        EVLocalCalendar::setCachingEnabled(false);
        const double fresh = measureFormat(now, dateformat, std::max(1, passes / 10), sink);
        std::printf("  %-36s %6.2f  %6.2f\n", name, kept, fresh);
    }
    EVLocalCalendar::setCachingEnabled(true);

    std::printf("\ncountdown lines by unit (kept calendar)\n");
    static const char *const unitNames[] = {"time", "day", "week", "month", "year"};
    for (int unit = 0; unit <= 4; ++unit)
        std::printf("  %-36s %6.2f\n", unitNames[unit], measureUnit(now, unit, passes, sink));

    return sink == 0 ? 1 : 0;
}
