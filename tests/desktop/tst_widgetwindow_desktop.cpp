// The widget windows on a real X desktop with a window manager, driven the way a person
// would: with the pointer, and read back from the X server.
#include "DesktopTools.h"
#include "NotificationRecorder.h"
#include "TestMain.h"

#include "engine/EVWidgetWindow.h"
#include "engine/EVWidgetsManager.h"
#include "engine/EVWindowController.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVWidgetEntry.h"

#include <memory>

class TestWidgetWindowDesktop : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<EVCoreDataDelegate> m_store;
    std::unique_ptr<EVWidgetsManager> m_manager;

    // One widget, made by the manager the way it is at launch, mapped and in place.
    EVWindowController *showWidget(const QRectF &frame, bool locked = false)
    {
        {
            EVCoreDataDelegate earlierRun;
            EVWidgetEntry *entry = earlierRun.addWidgetEntry();
            entry->setEventTitle(QStringLiteral("Desktop"));
            entry->setLockWidget(locked);
            if (frame.isValid())
                entry->setFrame(frame);
            earlierRun.save();
        }
        m_store = std::make_unique<EVCoreDataDelegate>();
        m_manager = std::make_unique<EVWidgetsManager>(m_store.get());
        m_manager->start();
        m_manager->refreshAll();
        EVWindowController *controller =
            m_manager->widgetWindowController(m_manager->widgetEntries().value(0));
        if (!controller || !QTest::qWaitForWindowExposed(controller->window()))
            return nullptr;
        QTest::qWait(200);
        return controller;
    }

    static QRect serverGeometry(EVWindowController *controller)
    {
        return DesktopTools::windowGeometry(controller->window()->winId());
    }

    static QString states(EVWindowController *controller)
    {
        return DesktopTools::windowProperty(controller->window()->winId(),
                                            QStringLiteral("_NET_WM_STATE"));
    }

private Q_SLOTS:
    void init() { m_home = std::make_unique<TestHome>(); }
    void cleanup()
    {
        m_manager.reset();
        m_store.reset();
        m_home.reset();
        QTest::qWait(400); // no click series runs on into the next test
    }

    void widgetAppearsAtItsStoredFrame()
    {
        EVWindowController *controller = showWidget(QRectF(200, 150, 320, 160));
        QVERIFY(controller);
        QTRY_COMPARE(serverGeometry(controller), QRect(200, 150, 320, 160));
    }

    void widgetWithoutAFrameKeepsTheInterfaceFileSize()
    {
        EVWindowController *controller = showWidget(QRectF());
        QVERIFY(controller);
        QTRY_COMPARE(serverGeometry(controller).size(), QSize(300, 150));
    }

    void widgetIsOnEveryDesktopAndOutOfTaskBarsAndPagers()
    {
        EVWindowController *controller = showWidget(QRectF(100, 100, 300, 150));
        QVERIFY(controller);
        const WId window = controller->window()->winId();
        QTRY_COMPARE(DesktopTools::windowProperty(window, QStringLiteral("_NET_WM_DESKTOP")),
                     QStringLiteral("4294967295"));
        QTRY_VERIFY(states(controller).contains(QStringLiteral("_NET_WM_STATE_SKIP_TASKBAR")));
        QVERIFY(states(controller).contains(QStringLiteral("_NET_WM_STATE_SKIP_PAGER")));
    }

    void unlockedWidgetFollowsADragAndSavesWhereItWasDropped()
    {
        EVWindowController *controller = showWidget(QRectF(100, 100, 300, 150));
        QVERIFY(controller);
        QTRY_COMPARE(serverGeometry(controller).topLeft(), QPoint(100, 100));

        QVERIFY(DesktopTools::drag(QPoint(250, 175), QPoint(370, 255)));
        QTRY_COMPARE(serverGeometry(controller), QRect(220, 180, 300, 150));

        m_manager->save();
        EVCoreDataDelegate reopened;
        QCOMPARE(reopened.fetchWidgetEntries().at(0)->frame(), QRectF(220, 180, 300, 150));
    }

    void lockedWidgetDoesNotMove()
    {
        EVWindowController *controller = showWidget(QRectF(100, 100, 300, 150), true);
        QVERIFY(controller);
        QTRY_COMPARE(serverGeometry(controller).topLeft(), QPoint(100, 100));
        QVERIFY(DesktopTools::drag(QPoint(250, 175), QPoint(370, 255)));
        QTest::qWait(300);
        QCOMPARE(serverGeometry(controller).topLeft(), QPoint(100, 100));
    }

    void lockingTakesEffectWithinASecond()
    {
        EVWindowController *controller = showWidget(QRectF(100, 100, 300, 150));
        QVERIFY(controller);
        controller->widgetData()->setLockWidget(true);
        QTest::qWait(1100);
        QVERIFY(DesktopTools::drag(QPoint(250, 175), QPoint(370, 255)));
        QTest::qWait(300);
        QCOMPARE(serverGeometry(controller).topLeft(), QPoint(100, 100));
    }

    void keepTopSetsTheStackingStateWithinASecond()
    {
        EVWindowController *controller = showWidget(QRectF(100, 100, 300, 150));
        QVERIFY(controller);
        const QString below = QStringLiteral("_NET_WM_STATE_BELOW");
        const QString above = QStringLiteral("_NET_WM_STATE_ABOVE");
        QTRY_VERIFY(states(controller).contains(below));
        QVERIFY(!states(controller).contains(above));

        EVWidgetEntry *entry = controller->widgetData();
        entry->setKeepTop(1);
        QTRY_VERIFY_WITH_TIMEOUT(states(controller).contains(above), 1200);
        QVERIFY(!states(controller).contains(below));

        entry->setKeepTop(2);
        QTRY_VERIFY_WITH_TIMEOUT(!states(controller).contains(above), 1200);
        QVERIFY(!states(controller).contains(below));

        entry->setKeepTop(0);
        QTRY_VERIFY_WITH_TIMEOUT(states(controller).contains(below), 1200);
        QVERIFY(!states(controller).contains(above));
        QVERIFY(controller->window()->isVisible());
    }

    void singleClickPostsNothing()
    {
        EVWindowController *controller = showWidget(QRectF(100, 100, 300, 150));
        QVERIFY(controller);
        NotificationRecorder posts(EVNotificationWidgetDoubleClick);
        QVERIFY(DesktopTools::click(QPoint(250, 175), 1));
        QTest::qWait(500);
        QCOMPARE(posts.count(), 0);
    }

    void doubleClickPostsOnceWithTheController()
    {
        EVWindowController *controller = showWidget(QRectF(100, 100, 300, 150));
        QVERIFY(controller);
        NotificationRecorder posts(EVNotificationWidgetDoubleClick);
        QVERIFY(DesktopTools::click(QPoint(250, 175), 2));
        QTRY_COMPARE(posts.count(), 1);
        QTest::qWait(500);
        QCOMPARE(posts.count(), 1);
        QCOMPARE(posts.objectAt(0), controller);
    }

    void tripleClickPostsAgain()
    {
        EVWindowController *controller = showWidget(QRectF(100, 100, 300, 150));
        QVERIFY(controller);
        NotificationRecorder posts(EVNotificationWidgetDoubleClick);
        QVERIFY(DesktopTools::click(QPoint(250, 175), 3));
        QTRY_COMPARE(posts.count(), 2);
        QTest::qWait(500);
        QCOMPARE(posts.count(), 2);
    }

    void clickedWidgetStaysWhereItIs()
    {
        EVWindowController *controller = showWidget(QRectF(100, 100, 300, 150));
        QVERIFY(controller);
        QVERIFY(DesktopTools::click(QPoint(250, 175), 2));
        QTest::qWait(300);
        QCOMPARE(serverGeometry(controller).topLeft(), QPoint(100, 100));
    }
};

TALLYVANE_DESKTOP_TEST_MAIN(TestWidgetWindowDesktop)
#include "tst_widgetwindow_desktop.moc"
