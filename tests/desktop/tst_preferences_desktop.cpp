// The preferences window on a real X desktop with a window manager, next to the widgets it
// edits, driven with the pointer the way a person would.
#include "DesktopTools.h"
#include "NotificationRecorder.h"
#include "TestMain.h"

#include "controls/LUMDatePicker.h"
#include "controls/LUMPopover.h"
#include "engine/EVWidgetWindow.h"
#include "engine/EVWidgetsManager.h"
#include "engine/EVWindowController.h"
#include "prefs/EVPerferenceController.h"
#include "render/EVWidgetWindowSnapshot.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVWidgetEntry.h"

#include <QAbstractItemModel>
#include <QDialog>
#include <QGroupBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QToolButton>
#include <QWindow>

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

    void advancedAndNoteTabsAreLaidOut()
    {
        QVERIFY(showPreferences());
        auto *tabs =
            m_preferences->window()->findChild<QTabWidget *>(QStringLiteral("configTabView"));
        tabs->setCurrentIndex(1);
        QTest::qWait(200);
        screenshot(QStringLiteral("preferences-advanced-tab"));
        tabs->setCurrentIndex(2);
        QTest::qWait(200);
        screenshot(QStringLiteral("preferences-note-tab"));
        QCOMPARE(tabs->count(), 3);
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
