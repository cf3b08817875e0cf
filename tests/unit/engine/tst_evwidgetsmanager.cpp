#include "NotificationRecorder.h"
#include "TestMain.h"

#include "engine/EVDateText.h"
#include "engine/EVWidgetWindow.h"
#include "engine/EVWidgetsManager.h"
#include "engine/EVWindowController.h"
#include "render/EVTallyView.h"
#include "render/EVWidgetView.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVCustomStyle.h"
#include "store/EVWidgetEntry.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>

#include <memory>

class TestEVWidgetsManager : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;

    // Entries saved by an earlier run, as the manager finds them at launch.
    static void saveEntries(const QStringList &titles)
    {
        EVCoreDataDelegate store;
        for (const QString &title : titles)
            store.addWidgetEntry()->setEventTitle(title);
        store.save();
    }

private Q_SLOTS:
    void init() { m_home = std::make_unique<TestHome>(); }
    void cleanup() { m_home.reset(); }

    void withNoEntriesAPassDoesNothingAndPostsNothing()
    {
        NotificationRecorder displayed(EVNotificationWidgetDidDisplayed);
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.start();
        manager.refreshAll();
        QTest::qWait(1500);
        QVERIFY(manager.widgetControllers().isEmpty());
        QCOMPARE(displayed.count(), 0);
    }

    void firstPassMakesAWindowForEveryEntry()
    {
        saveEntries({QStringLiteral("one"), QStringLiteral("two")});
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.start();
        QCOMPARE(manager.widgetControllers().size(), 2);
        for (EVWidgetEntry *entry : manager.widgetEntries()) {
            EVWindowController *controller = manager.widgetWindowController(entry);
            QVERIFY(controller);
            QCOMPARE(controller->widgetData(), entry);
            QVERIFY(controller->window()->isVisible());
        }
    }

    void passThatMakesWindowsPostsOnceOneSecondLater()
    {
        saveEntries({QStringLiteral("one"), QStringLiteral("two")});
        NotificationRecorder displayed(EVNotificationWidgetDidDisplayed);
        EVCoreDataDelegate store;
        QElapsedTimer clock;
        clock.start();
        EVWidgetsManager manager(&store);
        manager.start();
        QCOMPARE(displayed.count(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(displayed.count(), 1, 3000);
        QVERIFY2(clock.elapsed() >= 950, qPrintable(QString::number(clock.elapsed())));
        QTest::qWait(2200); // later passes update the windows and post nothing more
        QCOMPARE(displayed.count(), 1);
    }

    void windowsShowTheirTextsFromTheNextPass()
    {
        saveEntries({QStringLiteral("Launch")});
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.start();
        EVWindowController *controller =
            manager.widgetWindowController(manager.widgetEntries().at(0));
        QVERIFY(controller->widgetView()->title().isNull());
        manager.refreshAll();
        QCOMPARE(controller->widgetView()->title(), QStringLiteral("Launch"));
    }

    void timerRefreshesEverySecond()
    {
        saveEntries({QStringLiteral("before")});
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.start();
        QVERIFY(manager.isRunning());
        EVWidgetEntry *entry = manager.widgetEntries().at(0);
        entry->setEventTitle(QStringLiteral("after"));
        EVWindowController *controller = manager.widgetWindowController(entry);
        QTRY_COMPARE_WITH_TIMEOUT(controller->widgetView()->title(), QStringLiteral("after"), 1500);
    }

    void editsOfAWidgetCountedInDaysShowWithinASecond()
    {
        saveEntries({QStringLiteral("before")});
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.start();
        EVWidgetEntry *entry = manager.widgetEntries().at(0);
        QCOMPARE(entry->countdownUnit(), 1);
        EVWindowController *controller = manager.widgetWindowController(entry);
        const EVWidgetView *view = controller->widgetView();
        QTRY_COMPARE_WITH_TIMEOUT(view->title(), QStringLiteral("before"), 1500);
        // Its count does not change for hours: from here on the passes find nothing to do.
        QTest::qWait(1100);

        // A pass comes every second; a little more is allowed for a busy machine.
        constexpr int withinASecond = 1200;
        entry->setEventTitle(QStringLiteral("after"));
        QTRY_COMPARE_WITH_TIMEOUT(view->title(), QStringLiteral("after"), withinASecond);
        entry->setTextcolor(QColor(250, 10, 10));
        QTRY_COMPARE_WITH_TIMEOUT(view->textColor(), QColor(250, 10, 10), withinASecond);
        entry->setStyleIndex(5);
        QTRY_COMPARE_WITH_TIMEOUT(
            view->background().image().cacheKey(),
            EVTallyView::buildinBackgroundForStyle(5, view->size()).cacheKey(), withinASecond);
        entry->setEventDate(entry->eventDate().addDays(2));
        QTRY_COMPARE_WITH_TIMEOUT(view->date(), EVDateText::widgetDateText(*entry), withinASecond);
        entry->setLockWidget(true);
        QTRY_VERIFY_WITH_TIMEOUT(!controller->window()->isMovable(), withinASecond);
        entry->setKeepTop(1);
        QTRY_COMPARE_WITH_TIMEOUT(controller->window()->level(), EVWidgetWindow::Level::Above,
                                  withinASecond);
    }

    void timerKeepsFiringWhileAModalDialogIsOpen()
    {
        saveEntries({QStringLiteral("before")});
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.start();
        EVWidgetEntry *entry = manager.widgetEntries().at(0);
        EVWindowController *controller = manager.widgetWindowController(entry);

        QDialog dialog;
        QString seenDuringDialog;
        QTimer::singleShot(100, &dialog, [&] { entry->setEventTitle(QStringLiteral("during")); });
        QTimer::singleShot(1500, &dialog, [&] {
            seenDuringDialog = controller->widgetView()->title();
            dialog.accept();
        });
        dialog.exec();
        QCOMPARE(seenDuringDialog, QStringLiteral("during"));
    }

    void constructionStartsNothing()
    {
        saveEntries({QStringLiteral("one")});
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        QVERIFY(!manager.isRunning());
        QVERIFY(manager.widgetControllers().isEmpty());
    }

    void teardownStopsTheTimer()
    {
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.start();
        QVERIFY(manager.isRunning());
        manager.teardown();
        QVERIFY(!manager.isRunning());
    }

    void addingAnEntryMakesItsWindowAndRefetches()
    {
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.start();
        QVERIFY(manager.widgetEntries().isEmpty());
        EVWidgetEntry *entry = manager.addNewWidgetEntry();
        QVERIFY(entry);
        QVERIFY(manager.widgetWindowController(entry));
        QCOMPARE(manager.widgetEntries(), QList<EVWidgetEntry *>{entry});
    }

    void entryCacheIsFetchedAnewOnlyAfterAddOrRemove()
    {
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.start();
        const QList<EVWidgetEntry *> before = manager.widgetEntries();

        // Added behind the manager's back: the cache does not know yet.
        EVWidgetEntry *sneaked = store.addWidgetEntry();
        QCOMPARE(manager.widgetEntries(), before);

        EVWidgetEntry *added = manager.addNewWidgetEntry();
        QCOMPARE(manager.widgetEntries(), (QList<EVWidgetEntry *>{sneaked, added}));
    }

    void removingAWidgetOrdersItsWindowOutAndDropsTheRecord()
    {
        saveEntries({QStringLiteral("one"), QStringLiteral("two")});
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.start();
        EVWidgetEntry *first = manager.widgetEntries().at(0);
        QPointer<EVWidgetWindow> window = manager.widgetWindowController(first)->window();
        const QString uuid = first->uuid();

        manager.removeWidgetAtIndex(0);
        QVERIFY(!window || !window->isVisible());
        QVERIFY(!manager.widgetControllers().contains(uuid));
        QCOMPARE(manager.widgetEntries().size(), 1);
        QCOMPARE(manager.widgetEntries().at(0)->eventTitle(), QStringLiteral("two"));
        QCOMPARE(store.fetchWidgetEntries().size(), 1);
    }

    void removingBeyondTheListDoesNothing()
    {
        saveEntries({QStringLiteral("one")});
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.start();
        manager.removeWidgetAtIndex(1);
        manager.removeWidgetAtIndex(-1);
        QCOMPARE(manager.widgetEntries().size(), 1);
    }

    void addedCustomStyleBelongsToTheEntry()
    {
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.start();
        EVWidgetEntry *entry = manager.addNewWidgetEntry();
        EVCustomStyle *style = manager.addCustomStyle(entry);
        QCOMPARE(style->widget(), entry);
        QCOMPARE(entry->customStyles(), QList<EVCustomStyle *>{style});
    }

    void removingACustomStyleResetsTheStyleEvenFromABuiltInOne()
    {
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.start();
        EVWidgetEntry *entry = manager.addNewWidgetEntry();
        manager.addCustomStyle(entry);
        manager.addCustomStyle(entry);
        entry->setStyleIndex(3);
        manager.removeCustomStyleAtIndex(0, entry);
        QCOMPARE(entry->styleIndex(), 9);
        QCOMPARE(entry->customStyles().size(), 1);
    }

    void removingTheShownCustomStyleKeepsTheWidgetDrawable()
    {
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.start();
        EVWidgetEntry *entry = manager.addNewWidgetEntry();
        manager.addCustomStyle(entry);
        entry->setStyleIndex(12);
        manager.refreshAll();
        manager.removeCustomStyleAtIndex(0, entry);
        manager.refreshAll();
        QCOMPARE(entry->styleIndex(), 9);
        QVERIFY(
            !manager.widgetWindowController(entry)->widgetView()->background().image().isNull());
    }

    void refreshWidgetControllerUpdatesThatWidget()
    {
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.start();
        EVWidgetEntry *entry = manager.addNewWidgetEntry();
        entry->setEventTitle(QStringLiteral("refreshed"));
        manager.refreshWidgetController(entry->uuid());
        QCOMPARE(manager.widgetWindowController(entry)->widgetView()->title(),
                 QStringLiteral("refreshed"));
        manager.refreshWidgetController(QStringLiteral("no such widget"));
    }

    void saveStoresEveryFrameThenTheStore()
    {
        {
            EVCoreDataDelegate store;
            EVWidgetsManager manager(&store);
            manager.start();
            EVWidgetEntry *entry = manager.addNewWidgetEntry();
            manager.widgetWindowController(entry)->window()->setGeometry(QRect(30, 40, 310, 155));
            manager.save();
        }
        EVCoreDataDelegate reopened;
        QCOMPARE(reopened.fetchWidgetEntries().at(0)->frame(), QRectF(30, 40, 310, 155));
    }

    void allWidgetsCanBeHiddenAndShownAgain()
    {
        saveEntries({QStringLiteral("one"), QStringLiteral("two")});
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.start();
        manager.setAllDesktopWidgetState(0);
        for (EVWindowController *controller : manager.widgetControllers())
            QCOMPARE(controller->window()->windowOpacity(), 0.0);
        manager.setAllDesktopWidgetState(1);
        for (EVWindowController *controller : manager.widgetControllers()) {
            QCOMPARE(controller->window()->windowOpacity(), 1.0);
            QVERIFY(controller->window()->isVisible());
        }
    }

    void reminderDateTextUsesTheReminderTable()
    {
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.start();
        EVWidgetEntry *entry = manager.addNewWidgetEntry();
        entry->setEventDate(QDateTime(QDate(2027, 3, 4), QTime(5, 6, 7)));
        entry->setDateformat(4);
        entry->setTimeElement(false);
        QCOMPARE(manager.eventDate(entry), QStringLiteral("2027-03-04"));
    }
};

TALLYVANE_TEST_MAIN(TestEVWidgetsManager)
#include "tst_evwidgetsmanager.moc"
