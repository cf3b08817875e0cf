#include "DesktopTools.h"
#include "TestMain.h"

#include "core/EVClock.h"
#include "engine/EVWidgetsManager.h"
#include "notify/FLBannerWindow.h"
#include "notify/FLUserNotification.h"
#include "notify/FLUserNotificationCenter.h"
#include "platform/EVDesktopWindowHints.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVWidgetEntry.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>

#include <algorithm>

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

// The X window ids of the desktop's top-level windows, topmost first.
QStringList stackingTopFirst()
{
    QProcess xwininfo;
    xwininfo.start(QStringLiteral("xwininfo"),
                   {QStringLiteral("-root"), QStringLiteral("-children")});
    xwininfo.waitForFinished(10000);
    QStringList ids;
    const QRegularExpression child(QStringLiteral("^\\s+(0x[0-9a-f]+) "));
    for (const QString &line :
         QString::fromLocal8Bit(xwininfo.readAllStandardOutput()).split('\n')) {
        const QRegularExpressionMatch match = child.match(line);
        if (match.hasMatch())
            ids.append(match.captured(1));
    }
    return ids;
}

QString windowId(const FLUserNotification *notification)
{
    return QStringLiteral("0x%1").arg(quintptr(notification->showWindow()->winId()), 0, 16);
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
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        FLUserNotificationCenter center;
        center.setCenterType(FLUserNotificationCenterTypeBanner);
        center.start();
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
        manager.refreshAll();
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

        // Without a compositing manager the see-through corners are cut off the window.
        if (!EVDesktopWindowHints::hasCompositingManager()) {
            const QRegion shape = banner->showWindow()->mask();
            QVERIFY(shape.contains(QPoint(164, 50)));
            QVERIFY(!shape.contains(QPoint(0, 0)));
            QVERIFY(!shape.contains(QPoint(327, 99)));
        }

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

    void alertBannersStackNewestOnTopAndAClickOnCloseClosesTheGap()
    {
        FLUserNotificationCenter center;
        QList<FLUserNotification *> oldestFirst;
        for (int i = 0; i < 3; ++i) {
            auto *notification = new FLUserNotification;
            notification->setTitle(QStringLiteral("Alert %1").arg(i + 1));
            notification->setSubtitle(QStringLiteral("Stacked at the top right"));
            center.deliverNotification(notification);
            QTRY_VERIFY_WITH_TIMEOUT(!notification->isAnimating(), 1500);
            QTRY_VERIFY_WITH_TIMEOUT(
                std::none_of(oldestFirst.cbegin(), oldestFirst.cend(),
                             [](const FLUserNotification *n) { return n->isAnimating(); }),
                1500);
            oldestFirst.append(notification);
            // Presented in different milliseconds, as deliveries a moment apart are.
            QTest::qWait(20);
        }
        QTest::qWait(300);
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        const int left = screen.right() + 1 - 328;
        QCOMPARE(DesktopTools::windowGeometry(oldestFirst.at(2)->showWindow()->winId()),
                 QRect(left, 20, 328, 100));
        QCOMPARE(DesktopTools::windowGeometry(oldestFirst.at(1)->showWindow()->winId()),
                 QRect(left, 110, 328, 100));
        QCOMPARE(DesktopTools::windowGeometry(oldestFirst.at(0)->showWindow()->winId()),
                 QRect(left, 200, 328, 100));
        const QStringList stacking = stackingTopFirst();
        const qsizetype newest = stacking.indexOf(windowId(oldestFirst.at(2)));
        const qsizetype middle = stacking.indexOf(windowId(oldestFirst.at(1)));
        const qsizetype oldest = stacking.indexOf(windowId(oldestFirst.at(0)));
        QVERIFY(newest >= 0 && middle >= 0 && oldest >= 0);
        QVERIFY(newest < middle && middle < oldest);
        QVERIFY(DesktopTools::screenshot(
            QDir::current().absoluteFilePath(QStringLiteral("banner-desktop-alerts.png"))));

        // A real click on the newest banner's "Close" button.
        const QRect close = oldestFirst.at(2)->showWindow()->otherButton()->geometry();
        QVERIFY(DesktopTools::click(QPoint(left, 20) + close.center(), 1));
        QTRY_VERIFY_WITH_TIMEOUT(!oldestFirst.at(2)->isVisible(), 2000);
        QCOMPARE(oldestFirst.at(2)->activationType(), qint64(FLUserNotificationActivationTypeNone));
        QTRY_VERIFY_WITH_TIMEOUT(!oldestFirst.at(2)->showWindow()->isVisible(), 1500);
        QTRY_COMPARE_WITH_TIMEOUT(
            DesktopTools::windowGeometry(oldestFirst.at(1)->showWindow()->winId()),
            QRect(left, 20, 328, 100), 1500);
        QTRY_COMPARE_WITH_TIMEOUT(
            DesktopTools::windowGeometry(oldestFirst.at(0)->showWindow()->winId()),
            QRect(left, 110, 328, 100), 1500);
    }
};

TALLYVANE_DESKTOP_TEST_MAIN(TestBannerDesktop)
#include "tst_bannerdesktop.moc"
