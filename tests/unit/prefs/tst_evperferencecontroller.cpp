#include "AppSeams.h"
#include "PreferencesFixture.h"
#include "TestMain.h"

#include "controls/EVSegmentedControl.h"
#include "core/EVAppSetting.h"
#include "core/EVUserDefaults.h"
#include "engine/EVWidgetWindow.h"
#include "engine/EVWidgetsManager.h"
#include "engine/EVWindowController.h"
#include "platform/EVNotificationBus.h"
#include "prefs/EVPerferenceController.h"
#include "prefs/EVPerferenceToolBarActionDelegate.h"
#include "prefs/EVViewAnimator.h"
#include "prefs/EVWidgetListModel.h"
#include "prefs/Rate.h"
#include "render/EVWidgetWindowSnapshot.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVWidgetEntry.h"

#include <QAbstractButton>
#include <QElapsedTimer>
#include <QGroupBox>
#include <QHeaderView>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTableView>
#include <QToolButton>

#include <memory>

namespace {

// Keeps every toolbar action it is sent, with the control that sent it.
class ToolBarActionRecorder : public EVPerferenceToolBarActionDelegate
{
public:
    void perferenceToolBarOpenAtLoginStateDidChanged(EVSegmentedControl *sender) override
    {
        calls.append({QStringLiteral("openAtLogin"), sender, sender->selectedSegment()});
    }
    void perferenceToolBarStatusBarIconStateDidChanged(EVSegmentedControl *sender) override
    {
        calls.append({QStringLiteral("statusBarIcon"), sender, sender->selectedSegment()});
    }
    void perferenceToolBarFeedbackClicked(QAbstractButton *sender) override
    {
        calls.append({QStringLiteral("feedback"), sender, -1});
    }

    struct Call
    {
        QString operation;
        QObject *sender;
        int segment;
    };
    QList<Call> calls;
};

} // namespace

class TestEVPerferenceController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        Rate::setRandomSource([] { return quint32(2); });
    }
    void cleanup() { Rate::setRandomSource({}); }

    void everyOutletIsAControlOfItsName()
    {
        Preferences preferences;
        const QStringList outlets = {
            QStringLiteral("widgetTableView"),      QStringLiteral("configTabView"),
            QStringLiteral("firstRemindTip"),       QStringLiteral("openAtLoginSeg"),
            QStringLiteral("showStatusBarIconSeg"), QStringLiteral("advanced_countUnit"),
            QStringLiteral("advanced_ignore"),      QStringLiteral("advanced_format"),
            QStringLiteral("advanced_keeptop"),     QStringLiteral("advanced_color"),
            QStringLiteral("advanced_lockWidget"),  QStringLiteral("note_priority"),
            QStringLiteral("note_intervalUnit"),    QStringLiteral("note_remind"),
            QStringLiteral("note_interval"),        QStringLiteral("note_textNote")};
        for (const QString &outlet : outlets)
            QVERIFY2(preferences.controller.window()->findChild<QWidget *>(outlet),
                     qPrintable(outlet));
        QCOMPARE(preferences.find<QTabWidget>("configTabView")->count(), 3);
    }

    void withoutWidgetsTheTipShowsInsteadOfTheTabs()
    {
        Preferences preferences;
        preferences.controller.showWindow();
        QVERIFY(QTest::qWaitForWindowExposed(preferences.controller.window()));
        QVERIFY(!preferences.find<QGroupBox>("firstRemindTip")->isHidden());
        QVERIFY(preferences.find<QTabWidget>("configTabView")->isHidden());
    }

    void addingTheFirstWidgetSwapsTipAndTabsWithAFade()
    {
        Preferences preferences;
        preferences.controller.showWindow();
        QVERIFY(QTest::qWaitForWindowExposed(preferences.controller.window()));
        auto *tip = preferences.find<QGroupBox>("firstRemindTip");
        auto *tabs = preferences.find<QTabWidget>("configTabView");

        QTest::mouseClick(preferences.find<QToolButton>("addWidgetButton"), Qt::LeftButton);
        QCOMPARE(preferences.entries().size(), 1);
        // Both are on screen while one fades into the other.
        QVERIFY(!tip->isHidden());
        QVERIFY(!tabs->isHidden());
        QVERIFY(tip->graphicsEffect());
        QTRY_VERIFY(tip->isHidden());
        QVERIFY(!tabs->isHidden());
        QVERIFY(!tabs->graphicsEffect());
    }

    void removingTheLastWidgetBringsTheTipBack()
    {
        Preferences preferences({QStringLiteral("only")});
        preferences.controller.showWindow();
        QVERIFY(QTest::qWaitForWindowExposed(preferences.controller.window()));
        QVERIFY(preferences.find<QGroupBox>("firstRemindTip")->isHidden());
        preferences.clickRow(0);
        QTest::mouseClick(preferences.find<QToolButton>("removeWidgetButton"), Qt::LeftButton);
        QVERIFY(preferences.entries().isEmpty());
        QTRY_VERIFY(preferences.find<QTabWidget>("configTabView")->isHidden());
        QVERIFY(!preferences.find<QGroupBox>("firstRemindTip")->isHidden());
    }

    void listHasARowOfPreviewAndTitlePerWidget()
    {
        Preferences preferences({QStringLiteral("Launch"), QStringLiteral("Holiday")});
        QTableView *table = preferences.table();
        QAbstractItemModel *model = table->model();
        QCOMPARE(model->rowCount(), 2);
        QCOMPARE(model->columnCount(), 2);
        QCOMPARE(model->headerData(0, Qt::Horizontal).toString(), QStringLiteral("preview"));
        QCOMPARE(model->headerData(1, Qt::Horizontal).toString(), QStringLiteral("title"));
        QCOMPARE(model->index(0, 1).data().toString(), QStringLiteral("Launch"));
        QCOMPARE(model->index(1, 1).data().toString(), QStringLiteral("Holiday"));
        QVERIFY(!model->index(0, 0).data(Qt::DisplayRole).isValid());
        QCOMPARE(EVWidgetListModel::columnIdentifier(2), QString());
        for (int row = 0; row < 2; ++row)
            QCOMPARE(table->rowHeight(row), 68);
    }

    void previewIsThePictureOfTheWidgetWindowAsItLooksNow()
    {
        Preferences preferences({QStringLiteral("Launch")});
        EVWidgetEntry *entry = preferences.entries().first();
        EVWidgetWindow *window = preferences.manager.widgetWindowController(entry)->window();
        preferences.manager.refreshWidgetController(entry->uuid());
        const QImage preview =
            preferences.table()->model()->index(0, 0).data(Qt::DecorationRole).value<QImage>();
        QVERIFY(!preview.isNull());
        QCOMPARE(preview, widgetWindowSnapshot(window));
        // Something is drawn: the middle of the widget is not see-through.
        QCOMPARE(preview.pixelColor(preview.width() / 2, preview.height() / 2).alpha(), 255);
    }

    void widgetDidDisplayedReloadsTheListAtOnce()
    {
        Preferences preferences({QStringLiteral("one")});
        preferences.controller.window();
        QSignalSpy resets(preferences.controller.widgetListModel(),
                          &QAbstractItemModel::modelReset);
        EVNotificationBus::defaultCenter()->postNotificationName(QStringLiteral("SomethingElse"));
        QCOMPARE(resets.size(), 0);
        EVWidgetEntry *entry = preferences.entries().first();
        preferences.manager.refreshWidgetController(entry->uuid());
        EVNotificationBus::defaultCenter()->postNotificationName(EVNotificationWidgetDidDisplayed);
        QCOMPARE(resets.size(), 1);
        const QImage preview =
            preferences.table()->model()->index(0, 0).data(Qt::DecorationRole).value<QImage>();
        QCOMPARE(preview,
                 widgetWindowSnapshot(preferences.manager.widgetWindowController(entry)->window()));
    }

    void onlyWidgetsDrawnAgainHaveTheirPreviewsTakenAgain()
    {
        PinnedClock clock(QDateTime(QDate(2024, 4, 5), QTime(12, 0)));
        Preferences preferences({QStringLiteral("Launch"), QStringLiteral("Holiday")});
        preferences.manager.start();
        preferences.controller.showWindow();
        QVERIFY(QTest::qWaitForWindowExposed(preferences.controller.window()));
        QSignalSpy previews(preferences.controller.widgetListModel(),
                            &QAbstractItemModel::dataChanged);
        const int pass = EVPerferenceController::previewRefreshMilliseconds;
        // The previews are taken as the widgets come on screen ...
        QTest::qWait(2 * pass + 250);
        previews.clear();
        // ... and not again while the widgets look the same.
        QTest::qWait(pass + 250);
        QCOMPARE(previews.size(), 0);
        // One widget drawn again: its preview alone is taken again, once.
        preferences.entries().at(1)->setEventTitle(QStringLiteral("Trip"));
        QTRY_VERIFY_WITH_TIMEOUT(!previews.isEmpty(), 2 * pass + 250);
        QTest::qWait(pass + 250);
        QCOMPARE(previews.size(), 1);
        const QModelIndex taken = previews.first().at(0).value<QModelIndex>();
        QCOMPARE(taken.row(), 1);
        QCOMPARE(taken.column(), int(EVWidgetListModel::PreviewColumn));
        QCOMPARE(previews.first().at(2).value<QList<int>>(), QList<int>({Qt::DecorationRole}));
    }

    void addingReloadsTheListATenthOfASecondLaterWithoutSelectingTheNewRow()
    {
        Preferences preferences({QStringLiteral("one")});
        preferences.controller.showWindow();
        preferences.clickRow(0);
        QSignalSpy resets(preferences.controller.widgetListModel(),
                          &QAbstractItemModel::modelReset);
        QElapsedTimer clock;
        clock.start();
        QTest::mouseClick(preferences.find<QToolButton>("addWidgetButton"), Qt::LeftButton);
        QCOMPARE(resets.size(), 0);
        QTRY_COMPARE(resets.size(), 1);
        QVERIFY(clock.elapsed() >= 95);
        QCOMPARE(preferences.table()->model()->rowCount(), 2);
        QCOMPARE(preferences.selectedRow(), 0);
        QCOMPARE(preferences.controller.selectedWidgetEntry(), preferences.entries().first());
    }

    void addingDrawsTheNewWidgetAtOnce()
    {
        Preferences preferences;
        preferences.controller.window();
        QTest::mouseClick(preferences.find<QToolButton>("addWidgetButton"), Qt::LeftButton);
        EVWidgetEntry *entry = preferences.entries().first();
        EVWindowController *controller = preferences.manager.widgetWindowController(entry);
        QVERIFY(controller);
        QVERIFY(controller->window()->isVisible());
        const QImage drawn = widgetWindowSnapshot(controller->window());
        QCOMPARE(drawn.pixelColor(drawn.width() / 2, drawn.height() / 2).alpha(), 255);
    }

    void removingTheSelectedRowThreeSelectsRowTwo()
    {
        Preferences preferences({QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2"),
                                 QStringLiteral("3"), QStringLiteral("4")});
        preferences.controller.showWindow();
        preferences.clickRow(3);
        QCOMPARE(preferences.selectedRow(), 3);
        QTest::mouseClick(preferences.find<QToolButton>("removeWidgetButton"), Qt::LeftButton);
        QCOMPARE(preferences.table()->model()->rowCount(), 4);
        QCOMPARE(preferences.selectedRow(), 2);
        QCOMPARE(preferences.controller.selectedWidgetEntry()->eventTitle(), QStringLiteral("2"));
        QStringList left;
        for (EVWidgetEntry *entry : preferences.entries())
            left << entry->eventTitle();
        QCOMPARE(left, QStringList({"0", "1", "2", "4"}));
    }

    void removingRowZeroLeavesNoSelection()
    {
        Preferences preferences({QStringLiteral("0"), QStringLiteral("1")});
        preferences.controller.showWindow();
        preferences.clickRow(0);
        QTest::mouseClick(preferences.find<QToolButton>("removeWidgetButton"), Qt::LeftButton);
        QCOMPARE(preferences.table()->model()->rowCount(), 1);
        QCOMPARE(preferences.selectedRow(), -1);
        QCOMPARE(preferences.controller.selectedWidgetEntry(), nullptr);
        QVERIFY(!preferences.find<QToolButton>("removeWidgetButton")->isEnabled());
    }

    void tabsAndRemoveButtonWaitForASelectedWidget()
    {
        Preferences preferences({QStringLiteral("0"), QStringLiteral("1")});
        preferences.controller.showWindow();
        auto *tabs = preferences.find<QTabWidget>("configTabView");
        auto *remove = preferences.find<QToolButton>("removeWidgetButton");
        QVERIFY(!remove->isEnabled());
        for (int tab = 0; tab < tabs->count(); ++tab)
            QVERIFY(!tabs->widget(tab)->isEnabled());
        preferences.clickRow(1);
        QVERIFY(remove->isEnabled());
        for (int tab = 0; tab < tabs->count(); ++tab)
            QVERIFY(tabs->widget(tab)->isEnabled());
    }

    void removingWithoutASelectionDoesNothing()
    {
        Preferences preferences({QStringLiteral("0"), QStringLiteral("1")});
        preferences.controller.showWindow();
        QMetaObject::invokeMethod(&preferences.controller, "onRemoveWidget");
        QCOMPARE(preferences.entries().size(), 2);
    }

    void deleteKeyInTheListRemovesTheSelectedWidget()
    {
        Preferences preferences({QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2")});
        preferences.controller.showWindow();
        QVERIFY(QTest::qWaitForWindowActive(preferences.controller.window()));
        preferences.clickRow(2);
        preferences.table()->setFocus();
        QTest::keyClick(preferences.table(), Qt::Key_Delete);
        QCOMPARE(preferences.entries().size(), 2);
        QCOMPARE(preferences.selectedRow(), 1);
    }

    void selectingByAKnownUuidSelectsItsRow()
    {
        Preferences preferences({QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2")});
        preferences.controller.selectWidgetItemWithUUID(preferences.entries().at(1)->uuid());
        QCOMPARE(preferences.selectedRow(), 1);
        preferences.controller.selectWidgetItemWithUUID(preferences.entries().at(0)->uuid());
        QCOMPARE(preferences.selectedRow(), 0);
    }

    void selectingByAnUnknownUuidSelectsTheLastRow()
    {
        Preferences preferences({QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2")});
        preferences.controller.selectWidgetItemWithUUID(preferences.entries().at(0)->uuid());
        preferences.controller.selectWidgetItemWithUUID(QStringLiteral("NO-SUCH-WIDGET"));
        QCOMPARE(preferences.selectedRow(), 2);
    }

    void selectingByUuidWithoutWidgetsDoesNothing()
    {
        Preferences preferences;
        preferences.controller.selectWidgetItemWithUUID(QStringLiteral("NO-SUCH-WIDGET"));
        QCOMPARE(preferences.selectedRow(), -1);
    }

    void toolbarSwitchesShowTheApplicationSettings_data()
    {
        QTest::addColumn<bool>("openAtLogin");
        QTest::addColumn<bool>("showStatusBarIcon");
        QTest::newRow("defaults") << false << true;
        QTest::newRow("both on") << true << true;
        QTest::newRow("both off") << false << false;
        QTest::newRow("login only") << true << false;
    }

    void toolbarSwitchesShowTheApplicationSettings()
    {
        QFETCH(bool, openAtLogin);
        QFETCH(bool, showStatusBarIcon);
        EVAppSetting *setting = EVAppSetting::shareAppSetting();
        const EVAppSetting saved = *setting;
        setting->setOpenAtLogin(openAtLogin);
        setting->setShowStatusBarIcon(showStatusBarIcon);
        Preferences preferences;
        preferences.controller.window();
        *setting = saved;
        QCOMPARE(preferences.find<EVSegmentedControl>("openAtLoginSeg")->selectedSegment(),
                 openAtLogin ? 0 : 1);
        QCOMPARE(preferences.find<EVSegmentedControl>("showStatusBarIconSeg")->selectedSegment(),
                 showStatusBarIcon ? 0 : 1);
    }

    void toolbarActionsGoToTheDelegateWithTheirControl()
    {
        Preferences preferences;
        ToolBarActionRecorder recorder;
        preferences.controller.setToolbarActionDelegate(&recorder);
        preferences.controller.showWindow();
        auto *login = preferences.find<EVSegmentedControl>("openAtLoginSeg");
        auto *icon = preferences.find<EVSegmentedControl>("showStatusBarIconSeg");
        QTest::mouseClick(login->segmentButton(0), Qt::LeftButton);
        QTest::mouseClick(icon->segmentButton(1), Qt::LeftButton);
        QTest::mouseClick(preferences.find<QPushButton>("feedbackButton"), Qt::LeftButton);
        QCOMPARE(recorder.calls.size(), 3);
        QCOMPARE(recorder.calls.at(0).operation, QStringLiteral("openAtLogin"));
        QCOMPARE(recorder.calls.at(0).sender, login);
        QCOMPARE(recorder.calls.at(0).segment, 0);
        QCOMPARE(recorder.calls.at(1).operation, QStringLiteral("statusBarIcon"));
        QCOMPARE(recorder.calls.at(1).sender, icon);
        QCOMPARE(recorder.calls.at(1).segment, 1);
        QCOMPARE(recorder.calls.at(2).operation, QStringLiteral("feedback"));
        QCOMPARE(recorder.calls.at(2).sender, preferences.find<QPushButton>("feedbackButton"));
    }

    void toolbarWithoutADelegateReportsToNobody()
    {
        Preferences preferences;
        preferences.controller.showWindow();
        QTest::mouseClick(preferences.find<EVSegmentedControl>("openAtLoginSeg")->segmentButton(0),
                          Qt::LeftButton);
        QTest::mouseClick(preferences.find<QPushButton>("feedbackButton"), Qt::LeftButton);
        QCOMPARE(preferences.controller.toolbarActionDelegate(), nullptr);
    }

    void closingTheWindowSavesTheWidgets()
    {
        Preferences preferences({QStringLiteral("before")});
        preferences.controller.showWindow();
        preferences.entries().first()->setEventTitle(QStringLiteral("after"));
        QVERIFY(preferences.controller.window()->close());
        EVCoreDataDelegate reread;
        const QList<EVWidgetEntry *> saved = reread.fetchWidgetEntries();
        QCOMPARE(saved.size(), 1);
        QCOMPARE(saved.first()->eventTitle(), QStringLiteral("after"));
    }

    void ratingIsNotOfferedBeforeTheEighthLaunch()
    {
        int draws = 0;
        Rate::setRandomSource([&draws] {
            ++draws;
            return quint32(2);
        });
        AlertRecorder alerts;
        alerts.queueAnswer(2);
        Preferences preferences;
        EVUserDefaults::setInteger(EVUserDefaults::appLaunchTimesKey, 7);
        preferences.controller.showWindow();
        QTest::qWait(50);
        QCOMPARE(draws, 0);
        QVERIFY(alerts.shown().isEmpty());
    }

    void ratingIsOfferedAsASheetFromTheEighthLaunch()
    {
        AlertRecorder alerts;
        alerts.queueAnswer(2);
        Preferences preferences;
        EVUserDefaults::setInteger(EVUserDefaults::appLaunchTimesKey, 8);
        preferences.controller.showWindow();
        QTRY_COMPARE(alerts.shown().size(), 1);
        QCOMPARE(alerts.shown().first().window, preferences.controller.window());
        // Once per loading of the window.
        preferences.controller.window()->hide();
        preferences.controller.showWindow();
        QTest::qWait(50);
        QCOMPARE(alerts.shown().size(), 1);
    }
};

TALLYVANE_TEST_MAIN(TestEVPerferenceController)
#include "tst_evperferencecontroller.moc"
