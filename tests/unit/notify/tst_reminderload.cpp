#include "NotificationTools.h"
#include "TestMain.h"

#include "core/EVClock.h"
#include "engine/EVWidgetsManager.h"
#include "notify/FLBannerWindow.h"
#include "notify/FLUserNotification.h"
#include "notify/FLUserNotificationCenter.h"
#include "notify/FLViewAnimation.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVWidgetEntry.h"

#include <QSet>

#include <memory>

namespace {

constexpr int widgetCount = 1000;
constexpr int screenWidth = bannerSceneScreenSize.width();

} // namespace

// A thousand widgets whose reminders fall due in the same pass.
class TestReminderLoad : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(bannerSceneSetUp()); }

    void thousandRemindersInOnePassFireOnceAndShowAsOneBanner()
    {
        TestHome home;
        BannerScene scene;
        EVCoreDataDelegate store;
        for (int i = 0; i < widgetCount; ++i) {
            EVWidgetEntry *entry = store.addWidgetEntry();
            entry->setEventTitle(QStringLiteral("Event %1").arg(i));
            entry->setEventDate(EVClock::now().addSecs(60 + i % 7));
            entry->setIntervalBeforeAlert(5);
            entry->setIntervalAlertUnit(1);
            entry->setSoundAlert(false);
        }
        EVWidgetsManager manager(&store);
        FLUserNotificationCenter center;
        center.setCenterType(FLUserNotificationCenterTypeBanner);
        manager.setUserNotificationCenter(&center);
        const QList<EVWidgetEntry *> entries = manager.widgetEntries();
        QCOMPARE(entries.size(), widgetCount);

        for (EVWidgetEntry *entry : entries)
            entry->setSoundAlert(true);
        manager.refreshAll();

        // Each widget's reminder once, in store order.
        const QList<FLUserNotification *> delivered = center.deliveredNotifications();
        QCOMPARE(delivered.size(), widgetCount);
        QCOMPARE(QSet<FLUserNotification *>(delivered.cbegin(), delivered.cend()).size(),
                 widgetCount);
        for (int i = 0; i < widgetCount; ++i) {
            QVERIFY(!entries.at(i)->soundAlert());
            QCOMPARE(delivered.at(i)->title(), entries.at(i)->eventTitle());
        }

        // Each delivery came while the one before was still moving in, so every banner is
        // up, but all on one spot at the top right, the newest on top of the others.
        const QList<FLUserNotification *> up = visibleNotifications(center);
        QCOMPARE(up.size(), widgetCount);
        const QRectF topRight(screenWidth - 328, 20, 328, 100);
        int highestLevel = 0;
        for (FLUserNotification *notification : up) {
            QCOMPARE(notification->viewAnimation()->endFrame(), topRight);
            highestLevel = std::max(highestLevel, notification->showWindow()->level());
        }
        QCOMPARE(delivered.last()->showWindow()->level(), highestLevel);
        QCOMPARE(delivered.first()->showWindow()->level(), FLBannerWindow::statusWindowLevel + 1);
        finishAnimations(&center);
        for (FLUserNotification *notification : up)
            QCOMPARE(QRectF(notification->showWindow()->geometry()), topRight);

        // Nothing fires twice.
        manager.refreshAll();
        QCOMPARE(center.deliveredNotifications().size(), widgetCount);

        // Five seconds on, they leave together, and the next reminder comes alone.
        EVClock::advance(5000);
        center.checkMethod();
        QVERIFY(visibleNotifications(center).isEmpty());
        finishAnimations(&center);
        for (FLUserNotification *notification : delivered)
            QVERIFY(!notification->showWindow()->isVisible());
        entries.first()->setSoundAlert(true);
        manager.refreshAll();
        QCOMPARE(center.deliveredNotifications().size(), widgetCount + 1);
        QCOMPARE(visibleNotifications(center).size(), 1);
        finishAnimations(&center);
    }
};

TALLYVANE_TEST_MAIN(TestReminderLoad)
#include "tst_reminderload.moc"
