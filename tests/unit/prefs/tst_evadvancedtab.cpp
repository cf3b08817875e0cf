#include "BeepCounter.h"
#include "DialogSeams.h"
#include "PreferencesFixture.h"
#include "TestMain.h"

#include "controls/EVColorWell.h"
#include "controls/OnOffSwitchControl.h"
#include "engine/EVDateText.h"
#include "engine/EVWidgetWindow.h"
#include "engine/EVWindowController.h"
#include "prefs/EVAdvancedTab.h"
#include "render/EVWidgetView.h"

#include <QComboBox>
#include <QTimeZone>

namespace {

// Friday 5 April 2024, noon; the widgets' events lie ten days later, with no change of clocks
// between.
const QDateTime now(QDate(2024, 4, 5), QTime(12, 0), QTimeZone::systemTimeZone());
const QDateTime eventDate = now.addDays(10);

// The items of a pop-up list as "title [tag]", a separator as "-".
QStringList itemsOf(const QComboBox *popUp)
{
    QStringList items;
    for (int i = 0; i < popUp->count(); ++i) {
        if (popUp->itemData(i, Qt::AccessibleDescriptionRole).toString() ==
            QLatin1String("separator"))
            items << QStringLiteral("-");
        else
            items << QStringLiteral("%1 [%2]")
                         .arg(popUp->itemText(i))
                         .arg(popUp->itemData(i).toInt());
    }
    return items;
}

} // namespace

class TestEVAdvancedTab : public QObject
{
    Q_OBJECT

private:
    // Two widgets on a pinned clock, in a window on screen with the Advanced tab in front and
    // the first widget selected: "Launch" with the defaults, "Holiday" with every value of the
    // tab changed.
    struct Advanced : Preferences
    {
        Advanced()
            : Preferences({QStringLiteral("Launch"), QStringLiteral("Holiday")})
        {
            for (EVWidgetEntry *entry : entries())
                entry->setEventDate(eventDate);
            EVWidgetEntry *holiday = entries().at(1);
            holiday->setTimeElement(true);
            holiday->setDateformat(5);
            holiday->setCountdownUnit(3);
            holiday->setIgnoredDayType(1);
            holiday->setTextcolor(QColor(200, 30, 40));
            holiday->setKeepTop(2);
            holiday->setLockWidget(true);
            controller.showWindow();
            clickRow(0);
            clickTab(1);
        }
        QComboBox *format() const { return find<QComboBox>("advanced_format"); }
        QComboBox *countUnit() const { return find<QComboBox>("advanced_countUnit"); }
        QComboBox *ignore() const { return find<QComboBox>("advanced_ignore"); }
        EVColorWell *color() const { return find<EVColorWell>("advanced_color"); }
        QComboBox *keepTop() const { return find<QComboBox>("advanced_keeptop"); }
        OnOffSwitchControl *lock() const { return find<OnOffSwitchControl>("advanced_lockWidget"); }

        // Starts the manager's one-second passes, which show the widgets.
        bool startWidgets()
        {
            manager.start();
            return manager.widgetWindowController(entries().at(0)) != nullptr;
        }
        EVWindowController *widget(int row)
        {
            return manager.widgetWindowController(entries().at(row));
        }

        PinnedClock clock{now};
    };

private Q_SLOTS:
    void fixedListsHoldTheirItemsInTheOrderOfTheStoredValues()
    {
        Advanced advanced;
        QCOMPARE(titlesOf(advanced.countUnit()),
                 QStringList({"Time", "Day", "Week", "Month", "Year"}));
        QCOMPARE(titlesOf(advanced.ignore()), QStringList({"None", "Weekend", "Weekday"}));
        QCOMPARE(titlesOf(advanced.keepTop()), QStringList({"Never", "Always", "When active"}));
    }

    void withTimeTheListHasSixItemsAndASeparatorBetweenTheThirdAndTheFourth()
    {
        Advanced advanced;
        advanced.clickRow(1);
        // The sample instant, 10:05:06 UTC, is 06:05:06 in New York.
        QCOMPARE(itemsOf(advanced.format()),
                 QStringList({"1986-10-06 06:05:06 [0]", "Oct 06, 1986, 06:05:06 [1]",
                              "06 Oct 1986, 06:05:06 [2]", "-", "1986-10-06 06:05:06 AM [3]",
                              "Oct 06, 1986, 06:05:06 AM [4]", "06 Oct 1986, 06:05:06 AM [5]"}));
        QCOMPARE(advanced.format()->currentText(), QStringLiteral("06 Oct 1986, 06:05:06 AM"));
    }

    void withTimeTagThreeIsShownOnTheTwelveHourClockUnlikeTheWidget()
    {
        // 10:05:06 UTC is 19:05:06 in Tokyo: the list reads 07 where the widget reads 19.
        ScopedEnvironment tokyo("TZ", "Asia/Tokyo");
        Advanced advanced;
        advanced.clickRow(1);
        QCOMPARE(advanced.format()->itemText(4), QStringLiteral("1986-10-06 07:05:06 PM"));
        QCOMPARE(EVDateText::renderDate(EVAdvancedTab::dateFormatSample(),
                                        EVDateText::widgetDateFormat(3, true)),
                 QStringLiteral("1986-10-06 19:05:06 PM"));
    }

    void withoutTimeTheListEndsWithThreeItemsTaggedThreeFourFive()
    {
        Advanced advanced;
        QCOMPARE(itemsOf(advanced.format()),
                 QStringList({"1986-10-06 [3]", "Oct 06, 1986 [4]", "06 Oct 1986 [5]"}));
        // The default tag 4 is always there.
        QCOMPARE(advanced.format()->currentText(), QStringLiteral("Oct 06, 1986"));
    }

    void withoutTimeATagOfTheFirstThreeSelectsNothing()
    {
        Advanced advanced;
        advanced.entries().at(0)->setDateformat(1);
        advanced.clickRow(1);
        advanced.clickRow(0);
        QCOMPARE(advanced.format()->currentIndex(), -1);
        QCOMPARE(advanced.entries().at(0)->dateformat(), 1);
    }

    void turningTheTimeOnInTheGeneralTabGivesTheLongListOnReturn()
    {
        Advanced advanced;
        advanced.clickTab(0);
        QTest::mouseClick(advanced.find<QWidget>("general_timeElement"), Qt::LeftButton);
        advanced.clickTab(1);
        QCOMPARE(advanced.format()->count(), 7);
        QCOMPARE(advanced.format()->currentData().toInt(), 4);
    }

    void selectingAWidgetShowsItsValues()
    {
        Advanced advanced;
        QCOMPARE(advanced.countUnit()->currentText(), QStringLiteral("Day"));
        QCOMPARE(advanced.ignore()->currentText(), QStringLiteral("None"));
        QCOMPARE(advanced.color()->color(), QColor(Qt::white));
        QCOMPARE(advanced.keepTop()->currentText(), QStringLiteral("Never"));
        QCOMPARE(advanced.lock()->state(), 0);
        advanced.clickRow(1);
        QCOMPARE(advanced.format()->currentData().toInt(), 5);
        QCOMPARE(advanced.countUnit()->currentText(), QStringLiteral("Month"));
        QCOMPARE(advanced.ignore()->currentText(), QStringLiteral("Weekend"));
        QCOMPARE(advanced.color()->color(), QColor(200, 30, 40));
        QCOMPARE(advanced.keepTop()->currentText(), QStringLiteral("When active"));
        QCOMPARE(advanced.lock()->state(), 1);
    }

    void showingAWidgetWritesNothing()
    {
        Advanced advanced;
        // The switch moves between the two widgets, one of them a record from an earlier
        // generation that lacks the value the switch shows.
        advanced.entries().at(0)->setLockWidget(true);
        advanced.entries().at(1)->setLockWidget(std::nullopt);
        const QList<quint64> before = advanced.revisions();
        advanced.browse(1);
        QCOMPARE(advanced.revisions(), before);
    }

    void choosingADateFormatStoresItsTagAndTheWidgetShowsItWithinASecond()
    {
        Advanced advanced;
        QVERIFY(advanced.startWidgets());
        EVWidgetView *view = advanced.widget(0)->widgetView();
        QCOMPARE(view->date(), QStringLiteral("Apr 15, 2024"));
        Preferences::chooseItem(advanced.format(), 2);
        QCOMPARE(advanced.entries().at(0)->dateformat(), 5);
        // Written into the entry only; the widget's own pass shows it.
        QCOMPARE(view->date(), QStringLiteral("Apr 15, 2024"));
        const qint64 shown =
            millisecondsUntil([view] { return view->date() == QLatin1String("15 Apr 2024"); });
        QVERIFY2(shown >= 0 && shown <= onePassMilliseconds, qPrintable(QString::number(shown)));
    }

    void theKeyboardSkipsTheSeparatorAndStoresTheTagBeyondIt()
    {
        Advanced advanced;
        EVWidgetEntry *holiday = advanced.entries().at(1);
        holiday->setDateformat(2);
        advanced.clickRow(1);
        QCOMPARE(advanced.format()->currentIndex(), 2);
        advanced.format()->setFocus();
        QTest::keyClick(advanced.format(), Qt::Key_Down);
        QCOMPARE(advanced.format()->currentIndex(), 4);
        QCOMPARE(holiday->dateformat(), 3);
    }

    void choosingACountUnitStoresItsIndexAndTheWidgetCountsInItWithinASecond()
    {
        Advanced advanced;
        QVERIFY(advanced.startWidgets());
        EVWidgetView *view = advanced.widget(0)->widgetView();
        QCOMPARE(view->secondCountdown(), QStringLiteral("Days Left"));
        Preferences::chooseItem(advanced.countUnit(), 0);
        QCOMPARE(advanced.entries().at(0)->countdownUnit(), 0);
        const qint64 shown = millisecondsUntil([view] {
            return view->majorCountdown() == QLatin1String("10") &&
                   view->secondCountdown() == QLatin1String("00:00:00");
        });
        QVERIFY2(shown >= 0 && shown <= onePassMilliseconds, qPrintable(QString::number(shown)));
    }

    void choosingWeekdayStoresTwoAndChangesNoCount()
    {
        Advanced advanced;
        QVERIFY(advanced.startWidgets());
        EVWidgetEntry *launch = advanced.entries().at(0);
        EVWidgetView *view = advanced.widget(0)->widgetView();
        QCOMPARE(view->majorCountdown(), QStringLiteral("10"));
        Preferences::chooseItem(advanced.ignore(), 2);
        QCOMPARE(launch->ignoredDayType(), 2);
        // A title changed at the same time tells when a pass has shown the entry again.
        launch->setEventTitle(QStringLiteral("Launch, weekdays ignored"));
        QVERIFY(millisecondsUntil(
                    [view] { return view->title().endsWith(QLatin1String("ignored")); }) >= 0);
        QCOMPARE(view->majorCountdown(), QStringLiteral("10"));
        QCOMPARE(view->secondCountdown(), QStringLiteral("Days Left"));
    }

    void choosingATextColourStoresItAndTheWidgetDrawsInItWithinASecond()
    {
        Advanced advanced;
        QVERIFY(advanced.startWidgets());
        EVWidgetView *view = advanced.widget(0)->widgetView();
        ColorPanelRecorder colours;
        colours.queueColor(QColor(10, 200, 90));
        QTest::mouseClick(advanced.color(), Qt::LeftButton);
        QCOMPARE(colours.shown(), QList<QColor>({QColor(Qt::white)}));
        QCOMPARE(advanced.entries().at(0)->textcolor(), QColor(10, 200, 90));
        const qint64 shown =
            millisecondsUntil([view] { return view->textColor() == QColor(10, 200, 90); });
        QVERIFY2(shown >= 0 && shown <= onePassMilliseconds, qPrintable(QString::number(shown)));
    }

    void cancellingTheColourDialogKeepsTheColour()
    {
        Advanced advanced;
        ColorPanelRecorder colours;
        const quint64 before = advanced.entries().at(0)->revision();
        QTest::mouseClick(advanced.color(), Qt::LeftButton);
        QCOMPARE(colours.shown().size(), 1);
        QCOMPARE(advanced.entries().at(0)->revision(), before);
        QCOMPARE(advanced.color()->color(), QColor(Qt::white));
    }

    void choosingAWindowLevelStoresItsIndexAndTheWidgetTakesItWithinASecond()
    {
        Advanced advanced;
        QVERIFY(advanced.startWidgets());
        EVWidgetWindow *window = advanced.widget(0)->window();
        QCOMPARE(window->level(), EVWidgetWindow::Level::Below);
        Preferences::chooseItem(advanced.keepTop(), 1);
        QCOMPARE(advanced.entries().at(0)->keepTop(), 1);
        const qint64 shown =
            millisecondsUntil([window] { return window->level() == EVWidgetWindow::Level::Above; });
        QVERIFY2(shown >= 0 && shown <= onePassMilliseconds, qPrintable(QString::number(shown)));
    }

    void theLockIsASwitchWhoseClickLocksTheWidgetWithinASecond()
    {
        Advanced advanced;
        QVERIFY(advanced.startWidgets());
        EVWidgetWindow *window = advanced.widget(0)->window();
        QVERIFY(window->isMovable());
        QTest::mouseClick(advanced.lock(), Qt::LeftButton);
        QCOMPARE(advanced.lock()->state(), 1);
        QVERIFY(advanced.entries().at(0)->lockWidget());
        const qint64 shown = millisecondsUntil([window] { return !window->isMovable(); });
        QVERIFY2(shown >= 0 && shown <= onePassMilliseconds, qPrintable(QString::number(shown)));
        QTest::mouseClick(advanced.lock(), Qt::LeftButton);
        QVERIFY(!advanced.entries().at(0)->lockWidget());
        QVERIFY(millisecondsUntil([window] { return window->isMovable(); }) >= 0);
    }

    void theArrowKeysMoveTheLockAndTheWidgetFollows()
    {
        Advanced advanced;
        BeepCounter beeps;
        OnOffSwitchControl *lock = advanced.lock();
        lock->setFocus();
        QTest::keyClick(lock, Qt::Key_Right);
        QCOMPARE(lock->state(), 1);
        QVERIFY(advanced.entries().at(0)->lockWidget());
        QTest::keyClick(lock, Qt::Key_Right);
        QCOMPARE(beeps.count(), 1);
        QVERIFY(advanced.entries().at(0)->lockWidget());
        QTest::keyClick(lock, Qt::Key_Left);
        QVERIFY(!advanced.entries().at(0)->lockWidget());
    }

    void withoutASelectionUpdateAdvancedViewsLeavesEveryControlAsItWas()
    {
        Advanced advanced;
        advanced.table()->selectionModel()->clear();
        EVWidgetEntry *launch = advanced.entries().at(0);
        launch->setTimeElement(true);
        launch->setDateformat(0);
        launch->setCountdownUnit(4);
        launch->setIgnoredDayType(2);
        launch->setTextcolor(QColor(Qt::black));
        launch->setKeepTop(1);
        launch->setLockWidget(true);
        advanced.controller.advancedTab()->updateAdvancedViews();
        advanced.clickTab(0);
        advanced.clickTab(1);
        QCOMPARE(itemsOf(advanced.format()),
                 QStringList({"1986-10-06 [3]", "Oct 06, 1986 [4]", "06 Oct 1986 [5]"}));
        QCOMPARE(advanced.format()->currentText(), QStringLiteral("Oct 06, 1986"));
        QCOMPARE(advanced.countUnit()->currentText(), QStringLiteral("Day"));
        QCOMPARE(advanced.ignore()->currentText(), QStringLiteral("None"));
        QCOMPARE(advanced.color()->color(), QColor(Qt::white));
        QCOMPARE(advanced.keepTop()->currentText(), QStringLiteral("Never"));
        QCOMPARE(advanced.lock()->state(), 0);
    }

    void onlyTheShownTabIsRefreshedWhenTheSelectionChanges()
    {
        Advanced advanced;
        advanced.clickTab(2);
        advanced.clickRow(1);
        QCOMPARE(advanced.countUnit()->currentText(), QStringLiteral("Day"));
        advanced.clickTab(1);
        QCOMPARE(advanced.countUnit()->currentText(), QStringLiteral("Month"));
    }
};

TALLYVANE_TEST_MAIN(TestEVAdvancedTab)
#include "tst_evadvancedtab.moc"
