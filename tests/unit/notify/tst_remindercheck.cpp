#include "NotificationTools.h"
#include "TestMain.h"

#include "core/EVClock.h"
#include "engine/EVDateText.h"
#include "engine/EVWidgetsManager.h"
#include "notify/FLBannerTextField.h"
#include "notify/FLBannerWindow.h"
#include "notify/FLUserNotification.h"
#include "notify/FLUserNotificationCenter.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVWidgetEntry.h"

#include <QPushButton>

#include <memory>

namespace {

enum AlertUnit { Seconds = 0, Minutes = 1, Hours = 2, Days = 3, Weeks = 4 };

} // namespace

class TestReminderCheck : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<PinnedClock> m_clock;
    std::unique_ptr<OffscreenWindowNotesFilter> m_notes;
    std::unique_ptr<EVCoreDataDelegate> m_store;
    std::unique_ptr<EVWidgetsManager> m_manager;
    std::unique_ptr<FLUserNotificationCenter> m_center;

    // An armed widget whose reminder comes `lead` units before an event `secondsAhead` away.
    EVWidgetEntry *armedEntry(int lead, AlertUnit unit, qint64 secondsAhead)
    {
        EVWidgetEntry *entry = m_manager->addNewWidgetEntry();
        entry->setEventTitle(QStringLiteral("Launch"));
        entry->setEventDate(EVClock::now().addSecs(secondsAhead));
        entry->setIntervalBeforeAlert(lead);
        entry->setIntervalAlertUnit(int(unit));
        entry->setSoundAlert(true);
        return entry;
    }

    QList<FLUserNotification *> delivered() const { return m_center->deliveredNotifications(); }

private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<TestHome>();
        m_clock = std::make_unique<PinnedClock>(
            QDateTime(QDate(2024, 3, 1), QTime(12, 0), QTimeZone::systemTimeZone()));
        m_notes = std::make_unique<OffscreenWindowNotesFilter>();
        m_store = std::make_unique<EVCoreDataDelegate>();
        m_manager = std::make_unique<EVWidgetsManager>(m_store.get());
        // Passes run when a test says so.
        m_center = std::make_unique<FLUserNotificationCenter>();
        m_center->setCenterType(FLUserNotificationCenterTypeBanner);
        m_manager->setUserNotificationCenter(m_center.get());
    }

    void cleanup()
    {
        m_manager.reset();
        m_center.reset();
        m_store.reset();
        m_notes.reset();
        m_clock.reset();
        m_home.reset();
    }

    void reminderIsDueOnlyOnceTheLeadExceedsTheTimeLeft()
    {
        EVWidgetEntry *notYet = armedEntry(2, Hours, 7200);
        m_manager->checkRemindMeForNotificationCenter(notYet);
        QVERIFY(delivered().isEmpty());
        QVERIFY(notYet->soundAlert());

        EVWidgetEntry *due = armedEntry(2, Hours, 7199);
        m_manager->checkRemindMeForNotificationCenter(due);
        QCOMPARE(delivered().size(), 1);
        QVERIFY(!due->soundAlert());

        // A second later the first is due too.
        EVClock::advance(1000);
        m_manager->checkRemindMeForNotificationCenter(notYet);
        QCOMPARE(delivered().size(), 2);
        QVERIFY(!notYet->soundAlert());
    }

    void everyUnitCountsItsSeconds()
    {
        const QList<std::pair<AlertUnit, qint64>> units{
            {Seconds, 1}, {Minutes, 60}, {Hours, 3600}, {Days, 86400}, {Weeks, 604800}};
        for (const auto &[unit, seconds] : units) {
            EVWidgetEntry *atTheLead = armedEntry(3, unit, 3 * seconds);
            m_manager->checkRemindMeForNotificationCenter(atTheLead);
            QVERIFY(atTheLead->soundAlert());
            EVWidgetEntry *inside = armedEntry(3, unit, 3 * seconds - 1);
            m_manager->checkRemindMeForNotificationCenter(inside);
            QVERIFY(!inside->soundAlert());
        }
        QCOMPARE(delivered().size(), 5);
    }

    void disarmedReminderNeverFires()
    {
        EVWidgetEntry *entry = armedEntry(1, Minutes, 30);
        entry->setSoundAlert(false);
        for (int step = 0; step < 5; ++step) {
            m_manager->checkRemindMeForNotificationCenter(entry);
            EVClock::advance(86400 * 1000LL);
        }
        m_manager->refreshAll();
        QVERIFY(delivered().isEmpty());
    }

    void armedReminderOfAPastEventFiresOnTheNextPass()
    {
        EVWidgetEntry *entry = armedEntry(0, Seconds, -3600);
        QVERIFY(delivered().isEmpty());
        m_manager->refreshAll();
        QCOMPARE(delivered().size(), 1);
        QVERIFY(!entry->soundAlert());
    }

    void leadOfZeroFiresOnTheFirstPassAfterTheEvent()
    {
        EVWidgetEntry *entry = armedEntry(0, Minutes, 2);
        m_manager->refreshAll();
        EVClock::advance(2000);
        m_manager->refreshAll();
        QVERIFY(delivered().isEmpty());
        EVClock::advance(1);
        m_manager->refreshAll();
        QCOMPARE(delivered().size(), 1);
        QVERIFY(!entry->soundAlert());
    }

    void reminderCarriesTheWidgetsTextsAndIsDeliveredNow()
    {
        EVWidgetEntry *entry = armedEntry(1, Days, 3600);
        entry->setNote(QStringLiteral("Bring the cake"));
        entry->setDateformat(0);
        entry->setTimeElement(true);
        m_manager->checkRemindMeForNotificationCenter(entry);
        QCOMPARE(delivered().size(), 1);
        const FLUserNotification *notification = delivered().first();
        QCOMPARE(notification->title(), QStringLiteral("Launch"));
        QCOMPARE(notification->subtitle(), m_manager->eventDate(entry));
        QCOMPARE(notification->subtitle(), QStringLiteral("2024-03-01 13:00:00"));
        QCOMPARE(notification->informativeText(), QStringLiteral("Bring the cake"));
        QVERIFY(notification->hasActionButton());
        QCOMPARE(notification->deliveryDate(), EVClock::now());
        QVERIFY(notification->soundName().isNull());
        QVERIFY(notification->userInfo().isEmpty());
        // Shown at once, laid out as a banner without buttons.
        QVERIFY(notification->isVisible());
        QCOMPARE(notification->actualDeliveryDate(), EVClock::now());
        QCOMPARE(notification->showWindow()->titleField()->text(), QStringLiteral("Launch"));
        QCOMPARE(notification->showWindow()->informativeField()->text(),
                 QStringLiteral("Bring the cake"));
        QVERIFY(notification->showWindow()->actionButton()->isHidden());
        finishAnimations(m_center.get());
    }

    void noNoteGivesNoInformativeTextAndAnEmptyNoteAnEmptyOne()
    {
        EVWidgetEntry *withoutNote = armedEntry(1, Hours, 60);
        withoutNote->setNote(QString());
        m_manager->checkRemindMeForNotificationCenter(withoutNote);
        finishAnimations(m_center.get());
        EVWidgetEntry *emptyNote = armedEntry(1, Hours, 60);
        emptyNote->setNote(QStringLiteral(""));
        m_manager->checkRemindMeForNotificationCenter(emptyNote);
        QCOMPARE(delivered().size(), 2);
        QVERIFY(delivered().at(0)->informativeText().isNull());
        QVERIFY(!delivered().at(1)->informativeText().isNull());
        QVERIFY(delivered().at(1)->informativeText().isEmpty());
        finishAnimations(m_center.get());
    }

    void dateOnlyReminderOfFormatFourReadsYearMonthDay()
    {
        EVWidgetEntry *entry = armedEntry(1, Days, 3600);
        entry->setDateformat(4);
        entry->setTimeElement(false);
        m_manager->checkRemindMeForNotificationCenter(entry);
        QCOMPARE(delivered().size(), 1);
        QCOMPARE(delivered().first()->subtitle(), QStringLiteral("2024-03-01"));
        // The widget itself shows the month by name.
        QCOMPARE(EVDateText::widgetDateText(*entry), QStringLiteral("Mar 01, 2024"));
        finishAnimations(m_center.get());
    }

    void passChecksEveryWidgetAfterItsUpdateAndEachReminderFiresOnce()
    {
        EVWidgetEntry *first = armedEntry(5, Minutes, 60);
        EVWidgetEntry *later = armedEntry(5, Minutes, 3600);
        EVWidgetEntry *second = armedEntry(5, Minutes, 120);
        m_manager->refreshAll();
        QCOMPARE(delivered().size(), 2);
        QCOMPARE(delivered().at(0)->subtitle(), m_manager->eventDate(first));
        QCOMPARE(delivered().at(1)->subtitle(), m_manager->eventDate(second));
        QVERIFY(later->soundAlert());
        finishAnimations(m_center.get());
        for (int pass = 0; pass < 3; ++pass)
            m_manager->refreshAll();
        QCOMPARE(delivered().size(), 2);

        // Armed again by the user, it fires again.
        first->setSoundAlert(true);
        m_manager->refreshAll();
        QCOMPARE(delivered().size(), 3);
        finishAnimations(m_center.get());
    }

    void unitOutsideTheTableIsNeverDueAndNeverCrashes()
    {
        for (int unit : {-1, 5, 1000}) {
            EVWidgetEntry *entry = armedEntry(1, Seconds, -10);
            entry->setIntervalAlertUnit(unit);
            m_manager->checkRemindMeForNotificationCenter(entry);
            QVERIFY(entry->soundAlert());
        }
        m_manager->checkRemindMeForNotificationCenter(nullptr);
        QVERIFY(delivered().isEmpty());
    }

    void extremeLeadTimesAndMissingDatesNeverCrash()
    {
        EVWidgetEntry *hugeLead = armedEntry(std::numeric_limits<int>::max(), Weeks, 3600);
        m_manager->checkRemindMeForNotificationCenter(hugeLead);
        QVERIFY(!hugeLead->soundAlert());
        EVWidgetEntry *negativeLead = armedEntry(std::numeric_limits<int>::min(), Weeks, -3600);
        m_manager->checkRemindMeForNotificationCenter(negativeLead);
        QVERIFY(negativeLead->soundAlert());
        // No event date reads as now: due as soon as there is any lead.
        EVWidgetEntry *undated = armedEntry(1, Seconds, 0);
        undated->setEventDate(QDateTime());
        m_manager->checkRemindMeForNotificationCenter(undated);
        QVERIFY(!undated->soundAlert());
        QCOMPARE(delivered().size(), 2);
        finishAnimations(m_center.get());
    }

    void managerUsesTheSharedCenterUnlessTold()
    {
        m_manager->setUserNotificationCenter(nullptr);
        FLUserNotificationCenter *shared =
            FLUserNotificationCenter::defaultUserNotificationCenter();
        const qsizetype before = shared->deliveredNotifications().size();
        EVWidgetEntry *entry = armedEntry(1, Minutes, 30);
        m_manager->checkRemindMeForNotificationCenter(entry);
        QCOMPARE(shared->deliveredNotifications().size(), before + 1);
        QVERIFY(delivered().isEmpty());
        finishAnimations(shared);
    }
};

TALLYVANE_TEST_MAIN(TestReminderCheck)
#include "tst_remindercheck.moc"
