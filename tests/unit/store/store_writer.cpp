// A second process for the store tests: it saves, reopens and churns the store that the test's
// HOME points at, as a later or concurrent run of the application would.
#include "store/EVCoreDataDelegate.h"
#include "store/EVWidgetEntry.h"

#include <QGuiApplication>
#include <QTextStream>

#include <cstdio>

namespace {

int saveEntries(EVCoreDataDelegate &store, int count, const QString &title)
{
    for (int i = 0; i < count; ++i)
        store.addWidgetEntry()->setEventTitle(title);
    store.save();
    return 0;
}

int saveThenAddUnsaved(EVCoreDataDelegate &store)
{
    store.addWidgetEntry()->setEventTitle(QStringLiteral("saved"));
    store.save();
    store.addWidgetEntry()->setEventTitle(QStringLiteral("never saved"));
    return 0;
}

// Retitles every entry and saves, over and over, until it is killed.
int churn(EVCoreDataDelegate &store)
{
    const QList<EVWidgetEntry *> entries = store.fetchWidgetEntries();
    for (int generation = 1;; ++generation) {
        const QString title = QStringLiteral("generation %1").arg(generation);
        for (EVWidgetEntry *entry : entries)
            entry->setEventTitle(title);
        std::printf("saving %d\n", generation);
        std::fflush(stdout);
        store.save();
    }
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    EVCoreDataDelegate store;
    QObject::connect(&store, &EVCoreDataDelegate::errorReported, [](const EVError &error) {
        std::fprintf(stderr, "store error: %s\n", qPrintable(error.localizedDescription));
        std::exit(2);
    });

    const QString mode = arguments.value(1);
    if (mode == QLatin1String("save-entries"))
        return saveEntries(store, arguments.value(2).toInt(), arguments.value(3));
    if (mode == QLatin1String("save-then-add-unsaved"))
        return saveThenAddUnsaved(store);
    if (mode == QLatin1String("churn"))
        return churn(store);
    std::fprintf(stderr,
                 "usage: store_writer save-entries N TITLE | save-then-add-unsaved | churn\n");
    return 1;
}
