// The preferences window on a real X desktop with a window manager, next to the widgets it
// edits, driven with the pointer the way a person would.
#include "DesktopTools.h"
#include "NotificationRecorder.h"
#include "TestMain.h"

#include "controls/LUMDatePicker.h"
#include "controls/LUMPopover.h"
#include "controls/OnOffSwitchControl.h"
#include "engine/EVWidgetWindow.h"
#include "engine/EVWidgetsManager.h"
#include "engine/EVWindowController.h"
#include "prefs/EVPerferenceController.h"
#include "render/EVWidgetWindowSnapshot.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVWidgetEntry.h"

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QToolButton>
#include <QWindow>

#include <iterator>
#include <memory>

class TestPreferencesDesktop : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<EVCoreDataDelegate> m_store;
    std::unique_ptr<EVWidgetsManager> m_manager;
    std::unique_ptr<EVPerferenceController> m_preferences;

    // Three widgets saved by an earlier run, placed where the window does not cover them.
    static void saveThreeWidgets()
    {
        EVCoreDataDelegate earlierRun;
        const QStringList titles = {QStringLiteral("Product launch"), QStringLiteral("Holiday"),
                                    QStringLiteral("Marathon")};
        for (int i = 0; i < titles.size(); ++i) {
            EVWidgetEntry *entry = earlierRun.addWidgetEntry();
            entry->setEventTitle(titles.at(i));
            entry->setStyleIndex(i * 4);
            entry->setFrame(QRectF(940, 40 + i * 180, 300, 150));
        }
        earlierRun.save();
    }

    // Saves a picture of the screen for people to look at, when they asked for one.
    static void screenshot(const QString &name)
    {
        const QString folder = qEnvironmentVariable("TALLYVANE_SCREENSHOT_DIR");
        if (!folder.isEmpty())
            QVERIFY(DesktopTools::screenshot(folder + QLatin1Char('/') + name + ".png"));
    }

    // The window with the three widgets, the second one selected, once the manager has shown
    // the widgets.
    bool showPreferences()
    {
        saveThreeWidgets();
        NotificationRecorder displayed(EVNotificationWidgetDidDisplayed);
        m_store = std::make_unique<EVCoreDataDelegate>();
        m_manager = std::make_unique<EVWidgetsManager>(m_store.get());
        m_manager->start();
        m_preferences = std::make_unique<EVPerferenceController>(m_manager.get());
        m_preferences->window()->move(40, 40);
        m_preferences->showWindow();
        if (!QTest::qWaitForWindowExposed(m_preferences->window()))
            return false;
        // The manager tells everyone once the new windows are on screen.
        if (!QTest::qWaitFor([&displayed] { return displayed.count() == 1; }, 3000))
            return false;
        m_preferences->selectWidgetItemWithUUID(m_manager->widgetEntries().at(1)->uuid());
        QTest::qWait(300);
        return true;
    }

    static QPoint centreOnScreen(QWidget *widget)
    {
        return widget->mapToGlobal(widget->rect().center());
    }

    QTableView *table() const
    {
        return m_preferences->window()->findChild<QTableView *>(QStringLiteral("widgetTableView"));
    }

private Q_SLOTS:
    void init() { m_home = std::make_unique<TestHome>(); }
    void cleanup()
    {
        m_preferences.reset();
        m_manager.reset();
        m_store.reset();
        m_home.reset();
        QTest::qWait(300);
    }

    void previewsShowTheDrawnWidgets()
    {
        QVERIFY(showPreferences());
        QAbstractItemModel *model = table()->model();
        QCOMPARE(model->rowCount(), 3);
        for (int row = 0; row < 3; ++row) {
            const EVWidgetEntry *entry = m_manager->widgetEntries().at(row);
            EVWidgetWindow *window = m_manager->widgetWindowController(entry)->window();
            QVERIFY(window->isVisible());
            const QImage preview = model->index(row, 0).data(Qt::DecorationRole).value<QImage>();
            QCOMPARE(preview.size(), window->size() * window->devicePixelRatio());
            // The widget is drawn: its middle is covered by its background.
            QCOMPARE(preview.pixelColor(preview.rect().center()).alpha(), 255);
            QCOMPARE(preview, widgetWindowSnapshot(window));
        }
        screenshot(QStringLiteral("preferences-three-widgets"));
    }

    void calendarPopoverOpensBesideTheDateFieldAndClosesOnAClickOutside()
    {
        QVERIFY(showPreferences());
        auto *field =
            m_preferences->window()->findChild<LUMDatePicker *>(QStringLiteral("general_date"));
        QVERIFY(field);
        LUMPopover *popover = field->popover();
        QVERIFY(DesktopTools::click(centreOnScreen(field->calendarButton()), 1));
        QTRY_VERIFY(popover->isVisible());
        QTest::qWait(300);
        const QRect fieldOnScreen(field->mapToGlobal(QPoint(0, 0)), field->size());
        const QRect shown = DesktopTools::windowGeometry(popover->winId());
        QCOMPARE(shown.left(), fieldOnScreen.right() + 1);
        QVERIFY(shown.top() <= fieldOnScreen.center().y());
        QVERIFY(shown.bottom() >= fieldOnScreen.center().y());
        screenshot(QStringLiteral("preferences-calendar-popover"));

        // A click on the window's empty list area, outside the popover.
        QWidget *list = table()->viewport();
        QVERIFY(DesktopTools::click(
            list->mapToGlobal(QPoint(list->width() / 2, list->height() - 10)), 1));
        QTRY_VERIFY(!popover->isVisible());
    }

    void calendarButtonClickedAgainClosesThePopoverWithoutOpeningItAgain()
    {
        QVERIFY(showPreferences());
        auto *field =
            m_preferences->window()->findChild<LUMDatePicker *>(QStringLiteral("general_date"));
        LUMPopover *popover = field->popover();
        QVERIFY(DesktopTools::click(centreOnScreen(field->calendarButton()), 1));
        QTRY_VERIFY(popover->isVisible());
        QTest::qWait(300);
        QVERIFY(DesktopTools::click(centreOnScreen(field->calendarButton()), 1));
        QTRY_VERIFY(!popover->isVisible());
        QTest::qWait(300);
        QVERIFY(!popover->isVisible());
    }

    void firstUseShowsTheTipUntilAWidgetIsAdded()
    {
        m_store = std::make_unique<EVCoreDataDelegate>();
        m_manager = std::make_unique<EVWidgetsManager>(m_store.get());
        m_manager->start();
        m_preferences = std::make_unique<EVPerferenceController>(m_manager.get());
        m_preferences->window()->move(40, 40);
        m_preferences->showWindow();
        QVERIFY(QTest::qWaitForWindowExposed(m_preferences->window()));
        QWidget *window = m_preferences->window();
        auto *tip = window->findChild<QGroupBox *>(QStringLiteral("firstRemindTip"));
        auto *tabs = window->findChild<QTabWidget *>(QStringLiteral("configTabView"));
        QVERIFY(tip->isVisible());
        QVERIFY(!tabs->isVisible());
        QTest::qWait(300);
        screenshot(QStringLiteral("preferences-first-use"));
        auto *add = window->findChild<QToolButton *>(QStringLiteral("addWidgetButton"));
        QVERIFY(DesktopTools::click(centreOnScreen(add), 1));
        QTRY_VERIFY(!tip->isVisible());
        QVERIFY(tabs->isVisible());
        QTRY_COMPARE(table()->model()->rowCount(), 1);
        QVERIFY(m_manager->widgetWindowController(m_manager->widgetEntries().first())
                    ->window()
                    ->isVisible());
    }

    void advancedAndNoteTabsShowTheSelectedWidgetWithTheirSwitches()
    {
        QVERIFY(showPreferences());
        QWidget *window = m_preferences->window();
        auto *tabs = window->findChild<QTabWidget *>(QStringLiteral("configTabView"));
        QCOMPARE(tabs->count(), 3);
        EVWidgetEntry *holiday = m_manager->widgetEntries().at(1);
        holiday->setTimeElement(true);
        holiday->setLockWidget(true);
        holiday->setSoundAlert(true);
        holiday->setIntervalBeforeAlert(2);
        holiday->setIntervalAlertUnit(3);
        holiday->setNote(QStringLiteral("Book the train\nPack the bags"));

        QTabBar *bar = tabs->tabBar();
        QVERIFY(DesktopTools::click(bar->mapToGlobal(bar->tabRect(1).center()), 1));
        QTRY_COMPARE(tabs->currentIndex(), 1);
        auto *lock = window->findChild<OnOffSwitchControl *>(QStringLiteral("advanced_lockWidget"));
        QVERIFY(lock);
        QTRY_VERIFY(lock->isVisible());
        QCOMPARE(lock->state(), 1);
        QCOMPARE(window->findChild<QComboBox *>(QStringLiteral("advanced_format"))->count(), 7);
        // The widget itself has taken the edits on its next pass.
        EVWidgetWindow *holidayWindow = m_manager->widgetWindowController(holiday)->window();
        QTRY_VERIFY_WITH_TIMEOUT(!holidayWindow->isMovable(), 1500);
        QTest::qWait(300);
        screenshot(QStringLiteral("preferences-advanced-tab"));
        auto *format = window->findChild<QComboBox *>(QStringLiteral("advanced_format"));
        QVERIFY(DesktopTools::click(centreOnScreen(format), 1));
        QTRY_VERIFY(format->view()->isVisible());
        QTest::qWait(300);
        screenshot(QStringLiteral("preferences-advanced-date-formats"));
        QTest::keyClick(format->view(), Qt::Key_Escape);
        QTRY_VERIFY(!format->view()->isVisible());

        QVERIFY(DesktopTools::click(bar->mapToGlobal(bar->tabRect(2).center()), 1));
        QTRY_COMPARE(tabs->currentIndex(), 2);
        auto *remind = window->findChild<OnOffSwitchControl *>(QStringLiteral("note_remind"));
        QVERIFY(remind);
        QTRY_VERIFY(remind->isVisible());
        QCOMPARE(remind->state(), 1);
        QVERIFY(window->findChild<QLineEdit *>(QStringLiteral("note_interval"))->isEnabled());
        QTest::qWait(300);
        screenshot(QStringLiteral("preferences-note-tab"));

        // Turned off with a click of the pointer, the lead time greys out.
        QVERIFY(DesktopTools::click(centreOnScreen(remind), 1));
        QTRY_COMPARE(remind->state(), 0);
        QVERIFY(!holiday->soundAlert());
        QVERIFY(!window->findChild<QLineEdit *>(QStringLiteral("note_interval"))->isEnabled());
        QTest::qWait(300);
        screenshot(QStringLiteral("preferences-note-tab-reminder-off"));
    }

    void switchesInTheWindowAtOneAndTwoPixelsPerPoint()
    {
        QVERIFY(showPreferences());
        QWidget *window = m_preferences->window();
        auto *tabs = window->findChild<QTabWidget *>(QStringLiteral("configTabView"));
        tabs->setCurrentIndex(2);
        auto *remind = window->findChild<OnOffSwitchControl *>(QStringLiteral("note_remind"));
        QTRY_VERIFY(remind->isVisible());
        // The switch with its label, as the tab shows them. The looks are put on the switch
        // alone: the tab does not hear of them, so the widget's reminder stays as it was.
        QWidget *page = tabs->currentWidget();
        const QRect row =
            QRect(remind->mapTo(page, QPoint(0, 0)), remind->size()).adjusted(-90, -8, 8, 8);
        const QSignalBlocker quiet(remind);
        const int shownState = remind->state();

        struct Look
        {
            const char *name;
            int state;
            bool mixed;
            bool enabled;
        };
        const Look looks[] = {{"off", 0, false, true},
                              {"on", 1, false, true},
                              {"mixed", -1, true, true},
                              {"off-disabled", 0, false, false},
                              {"on-disabled", 1, false, false}};
        for (const double ratio : {1.0, 2.0}) {
            QImage sheet(QSize(row.width(), row.height() * int(std::size(looks))) * ratio,
                         QImage::Format_ARGB32_Premultiplied);
            sheet.setDevicePixelRatio(ratio);
            sheet.fill(Qt::white);
            for (std::size_t i = 0; i < std::size(looks); ++i) {
                const Look &look = looks[i];
                remind->setAllowsMixedState(look.mixed);
                remind->setState(look.state);
                remind->setEnabled(look.enabled);
                const QPoint at(0, row.height() * int(i));
                page->render(&sheet, at, QRegion(row));
                // The thumb is white where the state puts it, drawn at full resolution.
                const QRectF thumb =
                    remind->cell()
                        .thumbRectInFrame(QRectF(remind->rect()))
                        .translated(remind->mapTo(page, QPoint(0, 0)) - row.topLeft() + at);
                const QColor middle = sheet.pixelColor((thumb.center() * ratio).toPoint());
                QVERIFY2(middle.red() > 200 && middle.green() > 200 && middle.blue() > 200,
                         qPrintable(QStringLiteral("%1 at %2x: %3")
                                        .arg(QLatin1String(look.name))
                                        .arg(ratio)
                                        .arg(middle.name())));
            }
            remind->setAllowsMixedState(false);
            remind->setState(shownState);
            remind->setEnabled(true);
            QCOMPARE(sheet.size(), QSize(row.width(), row.height() * 5) * ratio);
            const QString folder = qEnvironmentVariable("TALLYVANE_SCREENSHOT_DIR");
            if (!folder.isEmpty())
                QVERIFY(sheet.save(
                    QStringLiteral("%1/preferences-switches-%2x.png").arg(folder).arg(ratio)));
        }
    }

    void customStyleSheetOpensOverThePreferencesWindow()
    {
        QVERIFY(showPreferences());
        QWidget *window = m_preferences->window();
        auto *add = window->findChild<QPushButton *>(QStringLiteral("general_addCustomStyle"));
        QVERIFY(DesktopTools::click(centreOnScreen(add), 1));
        auto *sheet = window->findChild<QDialog *>(QStringLiteral("customStylePanel"));
        QTRY_VERIFY(sheet->isVisible());
        QVERIFY(QTest::qWaitForWindowExposed(sheet));
        QTest::qWait(300);
        QCOMPARE(sheet->windowHandle()->transientParent(), window->windowHandle());
        QCOMPARE(sheet->windowModality(), Qt::WindowModal);
        const QRect onScreen = DesktopTools::windowGeometry(sheet->winId());
        const QRect windowOnScreen = DesktopTools::windowGeometry(window->winId());
        QVERIFY(windowOnScreen.contains(onScreen));
        QVERIFY(qAbs(onScreen.center().x() - windowOnScreen.center().x()) <= 2);
        screenshot(QStringLiteral("preferences-custom-style-sheet"));
        QTest::keyClick(sheet, Qt::Key_Escape);
        QTRY_VERIFY(!sheet->isVisible());
    }
};

TALLYVANE_DESKTOP_TEST_MAIN(TestPreferencesDesktop)
#include "tst_preferences_desktop.moc"
