#include "BeepCounter.h"
#include "PreferencesFixture.h"
#include "TestMain.h"

#include "controls/OnOffSwitchControl.h"
#include "notify/FLUserNotification.h"
#include "notify/FLUserNotificationCenter.h"
#include "prefs/EVNoteTab.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTimeZone>

#include <limits>

namespace {

// Friday 5 April 2024, noon; the widgets' events lie ten days later.
const QDateTime now(QDate(2024, 4, 5), QTime(12, 0), QTimeZone::systemTimeZone());
const QDateTime eventDate = now.addDays(10);

enum AlertUnit { Seconds = 0, Minutes = 1, Hours = 2, Days = 3, Weeks = 4 };

} // namespace

class TestEVNoteTab : public QObject
{
    Q_OBJECT

private:
    // Two widgets on a pinned clock, in a window on screen with the Note tab in front and the
    // first widget selected: "Launch" with the defaults (no reminder, one minute before),
    // "Holiday" with a reminder fifteen days before its event, which is due already.
    struct Note : Preferences
    {
        Note()
            : Preferences({QStringLiteral("Launch"), QStringLiteral("Holiday")})
        {
            center.setCenterType(FLUserNotificationCenterTypeBanner);
            manager.setUserNotificationCenter(&center);
            for (EVWidgetEntry *entry : entries())
                entry->setEventDate(eventDate);
            EVWidgetEntry *holiday = entries().at(1);
            holiday->setPriority(2);
            holiday->setSoundAlert(true);
            holiday->setIntervalBeforeAlert(15);
            holiday->setIntervalAlertUnit(Days);
            holiday->setNote(QStringLiteral("Pack the bags"));
            controller.showWindow();
            clickRow(0);
            clickTab(2);
        }
        ~Note() { finishAnimations(&center); }

        QComboBox *priority() const { return find<QComboBox>("note_priority"); }
        OnOffSwitchControl *remind() const { return find<OnOffSwitchControl>("note_remind"); }
        QLineEdit *interval() const { return find<QLineEdit>("note_interval"); }
        QComboBox *intervalUnit() const { return find<QComboBox>("note_intervalUnit"); }
        QPlainTextEdit *textNote() const { return find<QPlainTextEdit>("note_textNote"); }
        bool leadTimeEnabled() const
        {
            return interval()->isEnabled() && intervalUnit()->isEnabled();
        }
        bool leadTimeDisabled() const
        {
            return !interval()->isEnabled() && !intervalUnit()->isEnabled();
        }
        // Selects "Holiday" and gives its entry.
        EVWidgetEntry *showHoliday()
        {
            clickRow(1);
            return entries().at(1);
        }
        // The lead time field, focused with its text selected, to be typed over.
        QLineEdit *intervalToTypeOver() const
        {
            QLineEdit *field = interval();
            field->setFocus();
            field->selectAll();
            return field;
        }
        QList<FLUserNotification *> delivered() const { return center.deliveredNotifications(); }

        PinnedClock clock{now};
        FLUserNotificationCenter center;
    };

private Q_SLOTS:
    void fixedListsHoldTheirItemsInTheOrderOfTheStoredValues()
    {
        Note note;
        QCOMPARE(titlesOf(note.priority()), QStringList({"None", "Low", "Medium", "High"}));
        QCOMPARE(titlesOf(note.intervalUnit()),
                 QStringList({"Seconds", "Minutes", "Hours", "Days", "Weeks"}));
    }

    void selectingAWidgetShowsItsValues()
    {
        Note note;
        QCOMPARE(note.priority()->currentText(), QStringLiteral("None"));
        QCOMPARE(note.remind()->state(), 0);
        QCOMPARE(note.interval()->text(), QStringLiteral("1"));
        QCOMPARE(note.intervalUnit()->currentText(), QStringLiteral("Minutes"));
        QVERIFY(note.leadTimeDisabled());
        QCOMPARE(note.textNote()->toPlainText(), QString());
        note.clickRow(1);
        QCOMPARE(note.priority()->currentText(), QStringLiteral("Medium"));
        QCOMPARE(note.remind()->state(), 1);
        QCOMPARE(note.interval()->text(), QStringLiteral("15"));
        QCOMPARE(note.intervalUnit()->currentText(), QStringLiteral("Days"));
        QVERIFY(note.leadTimeEnabled());
        QCOMPARE(note.textNote()->toPlainText(), QStringLiteral("Pack the bags"));
    }

    void showingAWidgetWritesNothing()
    {
        Note note;
        // The switch moves between the two widgets, one of them a record from an earlier
        // generation that lacks the value the switch shows.
        note.entries().at(0)->setSoundAlert(true);
        note.entries().at(1)->setSoundAlert(std::nullopt);
        const QList<quint64> before = note.revisions();
        note.browse(2);
        QCOMPARE(note.revisions(), before);
    }

    void withTheRemindMeSwitchOffTheLeadTimeIsDisabledAndTurningItOnEnablesItAtOnce()
    {
        Note note;
        EVWidgetEntry *launch = note.entries().at(0);
        QVERIFY(note.leadTimeDisabled());
        QTest::mouseClick(note.remind(), Qt::LeftButton);
        QCOMPARE(note.remind()->state(), 1);
        QVERIFY(launch->soundAlert());
        QVERIFY(note.leadTimeEnabled());
        QTest::mouseClick(note.remind(), Qt::LeftButton);
        QVERIFY(!launch->soundAlert());
        QVERIFY(note.leadTimeDisabled());
    }

    void theArrowKeysMoveTheRemindMeSwitchAndTheLeadTimeFollows()
    {
        Note note;
        BeepCounter beeps;
        EVWidgetEntry *launch = note.entries().at(0);
        note.remind()->setFocus();
        QTest::keyClick(note.remind(), Qt::Key_Left);
        QCOMPARE(beeps.count(), 1);
        QTest::keyClick(note.remind(), Qt::Key_Right);
        QVERIFY(launch->soundAlert());
        QVERIFY(note.leadTimeEnabled());
        QTest::keyClick(note.remind(), Qt::Key_Left);
        QVERIFY(!launch->soundAlert());
        QVERIFY(note.leadTimeDisabled());
        QCOMPARE(beeps.count(), 1);
    }

    void typingFifteenStoresOneThenFifteen()
    {
        Note note;
        EVWidgetEntry *holiday = note.showHoliday();
        QLineEdit *interval = note.intervalToTypeOver();
        QTest::keyClick(interval, Qt::Key_Backspace);
        QCOMPARE(holiday->intervalBeforeAlert(), 0);
        const quint64 before = holiday->revision();
        QTest::keyClick(interval, Qt::Key_1);
        QCOMPARE(holiday->intervalBeforeAlert(), 1);
        QCOMPARE(holiday->revision(), before + 1);
        QTest::keyClick(interval, Qt::Key_5);
        QCOMPARE(holiday->intervalBeforeAlert(), 15);
        QCOMPARE(holiday->revision(), before + 2);
    }

    void typingAbcStoresZero()
    {
        Note note;
        EVWidgetEntry *holiday = note.showHoliday();
        QLineEdit *interval = note.intervalToTypeOver();
        QTest::keyClick(interval, Qt::Key_A);
        QCOMPARE(holiday->intervalBeforeAlert(), 0);
        QTest::keyClicks(interval, QStringLiteral("bc"));
        QCOMPARE(holiday->intervalBeforeAlert(), 0);
        // The text stays as typed until the widget is shown again.
        QCOMPARE(interval->text(), QStringLiteral("abc"));
        note.clickRow(0);
        note.clickRow(1);
        QCOMPARE(interval->text(), QStringLiteral("0"));
    }

    void integerValueOfText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("value");
        QTest::newRow("digits") << "15" << 15;
        QTest::newRow("empty") << "" << 0;
        QTest::newRow("letters") << "abc" << 0;
        QTest::newRow("digits then letters") << "15abc" << 15;
        QTest::newRow("letters then digits") << "abc15" << 0;
        QTest::newRow("leading spaces") << "  7" << 7;
        QTest::newRow("inner space") << "1 2" << 1;
        QTest::newRow("minus") << "-3" << -3;
        QTest::newRow("plus") << "+4" << 4;
        QTest::newRow("sign alone") << "-" << 0;
        QTest::newRow("decimal") << "2.9" << 2;
        QTest::newRow("too large") << "99999999999" << std::numeric_limits<int>::max();
        QTest::newRow("too small") << "-99999999999" << std::numeric_limits<int>::min();
        QTest::newRow("largest") << "2147483647" << 2147483647;
        QTest::newRow("smallest") << "-2147483648" << std::numeric_limits<int>::min();
    }

    void integerValueOfText()
    {
        QFETCH(QString, text);
        QFETCH(int, value);
        QCOMPARE(EVNoteTab::integerValueOfText(text), value);
    }

    void choosingAPriorityAndAUnitStoresTheirIndexes()
    {
        Note note;
        EVWidgetEntry *holiday = note.showHoliday();
        Preferences::chooseItem(note.priority(), 3);
        QCOMPARE(holiday->priority(), 3);
        Preferences::chooseItem(note.intervalUnit(), 0);
        QCOMPARE(holiday->intervalAlertUnit(), 0);
        note.intervalUnit()->setFocus();
        QTest::keyClick(note.intervalUnit(), Qt::Key_Down);
        QCOMPARE(holiday->intervalAlertUnit(), 1);
    }

    void theNoteIsStoredAtEveryKeystroke()
    {
        Note note;
        EVWidgetEntry *holiday = note.showHoliday();
        QPlainTextEdit *text = note.textNote();
        text->setFocus();
        text->moveCursor(QTextCursor::End);
        const quint64 before = holiday->revision();
        QTest::keyClick(text, Qt::Key_Exclam);
        QCOMPARE(holiday->note(), QStringLiteral("Pack the bags!"));
        QTest::keyClick(text, Qt::Key_Return);
        QTest::keyClicks(text, QStringLiteral("Tent"));
        QCOMPARE(holiday->note(), QStringLiteral("Pack the bags!\nTent"));
        QCOMPARE(holiday->revision(), before + 6);
    }

    void clearingTheNoteStoresAnEmptyNoteAndTheReminderCarriesAnEmptyText()
    {
        Note note;
        EVWidgetEntry *holiday = note.showHoliday();
        QPlainTextEdit *text = note.textNote();
        text->setFocus();
        QTest::keyClick(text, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(text, Qt::Key_Backspace);
        QVERIFY(holiday->note().isEmpty());
        QVERIFY(!holiday->note().isNull());
        note.manager.checkRemindMeForNotificationCenter(holiday);
        QCOMPARE(note.delivered().size(), 1);
        QVERIFY(note.delivered().first()->informativeText().isEmpty());
        QVERIFY(!note.delivered().first()->informativeText().isNull());
    }

    void aFiredReminderShowsItsSwitchOffTheNextTimeTheTabIsFilled()
    {
        Note note;
        EVWidgetEntry *holiday = note.showHoliday();
        QCOMPARE(note.remind()->state(), 1);
        note.manager.refreshAll();
        QCOMPARE(note.delivered().size(), 1);
        QVERIFY(!holiday->soundAlert());
        note.clickTab(0);
        note.clickTab(2);
        QCOMPARE(note.remind()->state(), 0);
        QVERIFY(note.leadTimeDisabled());
        // Turned on again, it is due again.
        QTest::mouseClick(note.remind(), Qt::LeftButton);
        QVERIFY(holiday->soundAlert());
        note.manager.refreshAll();
        QCOMPARE(note.delivered().size(), 2);
    }

    void aReminderArmedBeyondTheTimeLeftComesWithinASecond()
    {
        Note note;
        // Only the reminder armed here may come.
        note.entries().at(1)->setSoundAlert(false);
        note.manager.start();
        EVWidgetEntry *launch = note.entries().at(0);
        QTest::mouseClick(note.remind(), Qt::LeftButton);
        Preferences::chooseItem(note.intervalUnit(), Weeks);
        QTest::qWait(1100);
        QVERIFY(note.delivered().isEmpty());
        // Two weeks before an event ten days away: due at once.
        note.intervalToTypeOver();
        QTest::keyClick(note.interval(), Qt::Key_2);
        QCOMPARE(launch->intervalBeforeAlert(), 2);
        const qint64 shown = millisecondsUntil([&note] { return !note.delivered().isEmpty(); });
        QVERIFY2(shown >= 0 && shown <= onePassMilliseconds, qPrintable(QString::number(shown)));
        QCOMPARE(note.delivered().first()->title(), QStringLiteral("Launch"));
        QVERIFY(note.delivered().first()->isVisible());
        QVERIFY(!launch->soundAlert());
    }

    void withoutASelectionUpdateNoteViewsLeavesEveryControlAsItWas()
    {
        Note note;
        note.table()->selectionModel()->clear();
        EVWidgetEntry *launch = note.entries().at(0);
        launch->setPriority(3);
        launch->setSoundAlert(true);
        launch->setIntervalBeforeAlert(9);
        launch->setIntervalAlertUnit(Hours);
        launch->setNote(QStringLiteral("Changed elsewhere"));
        note.controller.noteTab()->updateNoteViews();
        note.clickTab(0);
        note.clickTab(2);
        QCOMPARE(note.priority()->currentText(), QStringLiteral("None"));
        QCOMPARE(note.remind()->state(), 0);
        QCOMPARE(note.interval()->text(), QStringLiteral("1"));
        QCOMPARE(note.intervalUnit()->currentText(), QStringLiteral("Minutes"));
        QVERIFY(note.leadTimeDisabled());
        QCOMPARE(note.textNote()->toPlainText(), QString());
    }

    void onlyTheShownTabIsRefreshedWhenTheSelectionChanges()
    {
        Note note;
        note.clickTab(1);
        note.clickRow(1);
        QCOMPARE(note.textNote()->toPlainText(), QString());
        note.clickTab(2);
        QCOMPARE(note.textNote()->toPlainText(), QStringLiteral("Pack the bags"));
    }
};

TALLYVANE_TEST_MAIN(TestEVNoteTab)
#include "tst_evnotetab.moc"
