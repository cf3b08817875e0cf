#include "ExampleWidgets.h"

#include "core/EVClock.h"
#include "platform/EVMainScreen.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVStoreFailures.h"
#include "store/EVWidgetEntry.h"

#include <QList>

#include <algorithm>

namespace ExampleWidgets {
namespace {

struct Example
{
    QString title;
    qint64 secondsAhead;
    int countdownUnit; // 0 time, 1 days, 2 weeks
    int styleIndex;
};

const QList<Example> &everydayEvents()
{
    static const QList<Example> events = {
        {QStringLiteral("Product launch"), 45LL * 86400 + 5 * 3600, 1, 9},
        {QStringLiteral("Summer holiday"), 130LL * 86400, 2, 1},
        {QStringLiteral("Marathon"), 12LL * 86400 + 7 * 3600 + 1800, 0, 6},
    };
    return events;
}

constexpr QSizeF widgetSize(300, 150);
constexpr double margin = 24;
constexpr double gap = 16;
// Below a panel along the top edge.
constexpr double top = 40;
constexpr double layerOffset = 12;

QRectF frameAt(int index)
{
    const QRectF screen = EVMainScreen::frame();
    const int rows =
        std::max(1, int((screen.height() - top - margin + gap) / (widgetSize.height() + gap)));
    const int columns =
        std::max(1, int((screen.width() - 2 * margin + gap) / (widgetSize.width() + gap)));
    const int layer = index / (rows * columns);
    const int cell = index % (rows * columns);
    const double x = screen.right() - margin - widgetSize.width() -
                     (cell / rows) * (widgetSize.width() + gap) - layer * layerOffset;
    const double y =
        screen.top() + top + (cell % rows) * (widgetSize.height() + gap) + layer * layerOffset;
    return QRectF(QPointF(x, y), widgetSize);
}

} // namespace

bool save(int count, QString *message)
{
    EVCoreDataDelegate store;
    const EVStoreFailures failures(&store);
    const QDateTime now = EVClock::now();
    for (int i = 0; i < count && !failures.any(); ++i) {
        EVWidgetEntry *entry = store.addWidgetEntry();
        const Example example =
            i < everydayEvents().size()
                ? everydayEvents().at(i)
                : Example{QStringLiteral("Event %1").arg(i + 1), (i % 60 + 2) * 86400LL, 1, i % 12};
        entry->setEventTitle(example.title);
        entry->setEventDate(now.addSecs(example.secondsAhead));
        entry->setCountdownUnit(example.countdownUnit);
        entry->setStyleIndex(example.styleIndex);
        entry->setFrame(frameAt(i));
    }
    if (!failures.any())
        store.save();
    if (failures.any()) {
        *message = QStringLiteral("The widget store cannot be written: %1").arg(failures.first());
        return false;
    }
    *message =
        QStringLiteral("%1 example widget(s) written to %2").arg(count).arg(store.storeFilePath());
    return true;
}

} // namespace ExampleWidgets
