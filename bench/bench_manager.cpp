// CPU time and memory of the widgets manager's one-second pass, for widgets counted in time
// (repainted every second) and in days (unchanged between day changes, so not repainted).
//
//   bench_manager                 per-pass figures for 10, 50 and 200 widgets of each unit
//   bench_manager live N UNIT S   N widgets of UNIT (time or day) running for S seconds
#include "core/EVClock.h"
#include "engine/EVWidgetsManager.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVWidgetEntry.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QTimer>

#include <sys/resource.h>

#include <cstdio>
#include <ctime>

namespace {

double cpuMilliseconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

long peakResidentKilobytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

void addWidgets(EVWidgetsManager &manager, int count, int countdownUnit)
{
    const QDateTime now = EVClock::now();
    for (int i = 0; i < count; ++i) {
        EVWidgetEntry *entry = manager.addNewWidgetEntry();
        entry->setEventTitle(QStringLiteral("Event number %1").arg(i));
        entry->setCountdownUnit(countdownUnit);
        entry->setTimeElement(true);
        entry->setEventDate(now.addSecs(86400LL * (i % 40 + 3) + 3600 * 5 + 7));
        entry->setFrame(QRectF((i % 8) * 150, (i / 8 % 6) * 120, 300, 150));
    }
    manager.refreshAll();
    QCoreApplication::processEvents();
}

// Mean CPU time of one pass, paints included, with the clock one second on per pass.
double perPass(int count, int countdownUnit)
{
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    EVCoreDataDelegate store;
    EVWidgetsManager manager(&store);
    addWidgets(manager, count, countdownUnit);
    for (int warmUp = 0; warmUp < 3; ++warmUp) {
        EVClock::advance(1000);
        manager.refreshAll();
        QCoreApplication::processEvents();
    }
    constexpr int passes = 30;
    const double start = cpuMilliseconds();
    for (int pass = 0; pass < passes; ++pass) {
        EVClock::advance(1000);
        manager.refreshAll();
        QCoreApplication::processEvents();
    }
    return (cpuMilliseconds() - start) / passes;
}

int live(int count, int countdownUnit, int seconds)
{
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    EVCoreDataDelegate store;
    EVWidgetsManager manager(&store);
    addWidgets(manager, count, countdownUnit);
    manager.start();
    const double start = cpuMilliseconds();
    QTimer::singleShot(seconds * 1000, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
    const double used = cpuMilliseconds() - start;
    std::printf("%d widgets counted in %s, %d s on %s: %.1f ms CPU in all, %.2f ms per second, "
                "peak resident %ld KiB\n",
                count, countdownUnit == 0 ? "time" : "days", seconds,
                qPrintable(QGuiApplication::platformName()), used, used / seconds,
                peakResidentKilobytes());
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    for (const char *name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
        qunsetenv(name);
    QApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.value(1) == QLatin1String("live")) {
        const int unit = arguments.value(3) == QLatin1String("day") ? 1 : 0;
        return live(arguments.value(2).toInt(), unit, std::max(1, arguments.value(4).toInt()));
    }

    EVClock::pin(QDateTime::currentDateTime());
    std::printf("CPU per pass on %s (mean of 30 passes, paints included)\n",
                qPrintable(QGuiApplication::platformName()));
    for (int count : {10, 50, 200}) {
        const double time = perPass(count, 0);
        const double days = perPass(count, 1);
        std::printf("  %3d widgets: time unit %7.3f ms   day unit %7.3f ms\n", count, time, days);
    }
    std::printf("peak resident %ld KiB\n", peakResidentKilobytes());
    return 0;
}
