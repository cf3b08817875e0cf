// Times the widget store: the first load and a full save of 1,000 entries with six custom
// styles each, the way the application loads at launch and saves at quit.
#include "store/EVCoreDataDelegate.h"
#include "store/EVCustomStyle.h"
#include "store/EVWidgetEntry.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr int entryCount = 1000;
constexpr int stylesPerEntry = 6;
constexpr int runs = 5;

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double milliseconds(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

} // namespace

int main(int argc, char *argv[])
{
    for (const char *name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
        qunsetenv(name);
    QGuiApplication application(argc, argv);

    std::vector<double> fullSaves, loads, changedSaves;
    for (int run = 0; run < runs; ++run) {
        // Each run starts from nothing, away from the user's files.
        QTemporaryDir runHome;
        qputenv("HOME", runHome.path().toUtf8());
        {
            EVCoreDataDelegate store;
            for (int i = 0; i < entryCount; ++i) {
                EVWidgetEntry *entry = store.addWidgetEntry();
                entry->setEventTitle(QStringLiteral("Event %1").arg(i));
                entry->setNote(QStringLiteral("A note of some length for event %1").arg(i));
                entry->setWidgetFrameDesc(QStringLiteral("{{0.1, 0.25}, {0.3, 0.1875}}"));
                for (int s = 0; s < stylesPerEntry; ++s) {
                    EVCustomStyle *style = store.addCustomStyle(entry);
                    style->setColor(QColor(s * 40, i % 256, 128, 200));
                    style->setOpacity(0.1f * float(s));
                }
            }
            QElapsedTimer timer;
            timer.start();
            store.save();
            fullSaves.push_back(milliseconds(timer));
        }
        {
            EVCoreDataDelegate store;
            QElapsedTimer timer;
            timer.start();
            const QList<EVWidgetEntry *> entries = store.fetchWidgetEntries();
            loads.push_back(milliseconds(timer));
            if (entries.size() != entryCount) {
                std::fprintf(stderr, "loaded %lld entries\n", qlonglong(entries.size()));
                return 1;
            }
            for (EVWidgetEntry *entry : entries)
                entry->setFrame(QRectF(10, 20, 300, 150));
            timer.restart();
            store.save();
            changedSaves.push_back(milliseconds(timer));
        }
    }

    std::printf("store with %d entries and %d custom styles each, median of %d runs\n", entryCount,
                stylesPerEntry, runs);
    std::printf("  full save (all records new):        %8.2f ms\n", median(fullSaves));
    std::printf("  first load (open and read all):     %8.2f ms\n", median(loads));
    std::printf("  save after every frame changed:     %8.2f ms\n", median(changedSaves));
    return 0;
}
