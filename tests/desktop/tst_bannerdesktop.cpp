#include "DesktopTools.h"
#include "TestMain.h"

#include "engine/EVClock.h"
#include "engine/EVWidgetsManager.h"
#include "notify/FLBannerWindow.h"
#include "notify/FLUserNotification.h"
#include "notify/FLUserNotificationCenter.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVWidgetEntry.h"

#include <QDir>
#include <QElapsedTimer>
#include <QScreen>

namespace {

// Counts the pixels of the area darker than a text grey can be on the light panel.
int darkPixels(const QImage &image, const QRect &area)
{
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (qGray(image.pixel(x, y)) < 140)
                ++count;
        }
    }
    return count;
}

bool isPanelFace(const QColor &color)
{
    return color.lightness() > 215 && color.saturation() < 20;
}

} // namespace

// A reminder on a real X desktop with a window manager: the banner comes in at the top right
// of the screen, readable, and leaves about five seconds later.
class TestBannerDesktop : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reminderBannerShowsAtTheTopRightAndLeavesAfterFiveSeconds()
    {
        if (!DesktopTools::hasDisplay())
            QSKIP("No X display to test on");
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.teardown();
        FLUserNotificationCenter center;
        center.setCenterType(FLUserNotificationCenterTypeBanner);
        manager.setUserNotificationCenter(&center);

        EVWidgetEntry *entry = manager.addNewWidgetEntry();
        entry->setEventTitle(QStringLiteral("Team offsite"));
        entry->setNote(QStringLiteral("Bring the slides and the projector cable"));
        entry->setEventDate(EVClock::now().addSecs(90));
        entry->setIntervalBeforeAlert(5);
        entry->setIntervalAlertUnit(1);
        entry->setSoundAlert(true);
        // Keep the widget itself out of the banner's corner.
        entry->setFrame(QRectF(40, 500, 300, 150));
        manager.update_timer_callback();
        QElapsedTimer sinceDelivery;
        sinceDelivery.start();

        QCOMPARE(center.deliveredNotifications().size(), 1);
        FLUserNotification *banner = center.deliveredNotifications().first();
        QVERIFY(banner->isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(!banner->isAnimating(), 1500);
        QTest::qWait(300);

        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        const QRect expected(screen.right() + 1 - 328, screen.top() + 20, 328, 100);
        QCOMPARE(DesktopTools::windowGeometry(banner->showWindow()->winId()), expected);

        const QString shot = QDir::current().absoluteFilePath(QStringLiteral("banner-desktop.png"));
        QVERIFY(DesktopTools::screenshot(shot));
        const QImage image(shot);
        QVERIFY(!image.isNull());
        // The panel's face, right of the texts, and the three lines of dark text on it.
        QVERIFY(isPanelFace(image.pixelColor(expected.left() + 312, expected.top() + 85)));
        QVERIFY(isPanelFace(image.pixelColor(expected.left() + 40, expected.top() + 88)));
        QVERIFY(darkPixels(image, QRect(expected.left() + 56, expected.top() + 20, 240, 18)) > 40);
        QVERIFY(darkPixels(image, QRect(expected.left() + 56, expected.top() + 38, 250, 18)) > 40);
        QVERIFY(darkPixels(image, QRect(expected.left() + 56, expected.top() + 56, 250, 18)) > 40);
        QCOMPARE(darkPixels(image, QRect(expected.left() + 56, expected.top() + 78, 250, 10)), 0);

        // The center's once-a-second check takes it down on its first tick five seconds on.
        QTRY_VERIFY_WITH_TIMEOUT(!banner->isVisible(), 8000);
        const qint64 shownFor = sinceDelivery.elapsed();
        QVERIFY2(shownFor >= 5000 && shownFor < 6600, qPrintable(QString::number(shownFor)));
        QTRY_VERIFY_WITH_TIMEOUT(!banner->showWindow()->isVisible(), 1500);
        QTest::qWait(300);
        const QString after =
            QDir::current().absoluteFilePath(QStringLiteral("banner-desktop-after.png"));
        QVERIFY(DesktopTools::screenshot(after));
        QVERIFY(!isPanelFace(QImage(after).pixelColor(expected.left() + 312, expected.top() + 85)));
    }
};

TALLYVANE_TEST_MAIN(TestBannerDesktop)
#include "tst_bannerdesktop.moc"
