#include "NotificationTools.h"
#include "TestMain.h"

#include "core/EVClock.h"
#include "notify/FLBannerTextField.h"
#include "notify/FLBannerWindow.h"
#include "notify/FLUserNotification.h"
#include "notify/FLUserNotificationCenter.h"
#include "notify/FLViewAnimation.h"
#include "platform/EVMainScreen.h"

#include <QDialog>
#include <QMenu>
#include <QPointer>
#include <QPushButton>

#include <memory>

namespace {

constexpr int screenWidth = bannerSceneScreenSize.width();
constexpr int screenHeight = bannerSceneScreenSize.height();

FLUserNotification *notificationTitled(const QString &title)
{
    auto *notification = new FLUserNotification;
    notification->setTitle(title);
    return notification;
}

FLDateComponents repeatEvery(std::optional<qint64> FLDateComponents::*component, qint64 value)
{
    FLDateComponents interval;
    interval.*component = value;
    return interval;
}

} // namespace

class TestFLUserNotificationCenter : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BannerScene> m_scene;

    // A center whose ticks come only when a test calls checkMethod().
    static std::unique_ptr<FLUserNotificationCenter> handDrivenCenter(qint64 type)
    {
        auto center = std::make_unique<FLUserNotificationCenter>();
        center->setCenterType(type);
        return center;
    }

    // Delivers a notification a second after the previous one and lets every banner settle.
    static FLUserNotification *deliverAndSettle(FLUserNotificationCenter &center,
                                                const QString &title)
    {
        EVClock::advance(1000);
        FLUserNotification *notification = notificationTitled(title);
        center.deliverNotification(notification);
        finishAnimations(&center);
        return notification;
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(bannerSceneSetUp()); }
    void init() { m_scene = std::make_unique<BannerScene>(); }
    void cleanup() { m_scene.reset(); }

    void newCenterChecksNothingUntilStarted()
    {
        FLUserNotificationCenter center;
        QVERIFY(!center.timer()->isActive());
        FLUserNotification *due = notificationTitled(QStringLiteral("due"));
        center.scheduleNotification(due);
        QTest::qWait(100);
        QVERIFY(!due->isPresented());
    }

    void defaultCenterIsMadeOnceAsAnAlertCenter()
    {
        FLUserNotificationCenter *center =
            FLUserNotificationCenter::defaultUserNotificationCenter();
        QVERIFY(center);
        QCOMPARE(FLUserNotificationCenter::defaultUserNotificationCenter(), center);
        QCOMPARE(center->centerType(), qint64(FLUserNotificationCenterTypeAlert));
        QVERIFY(center->timer()->isActive());
    }

    void newCenterHasEmptyListsAndChecksOnceASecondFromTheStart()
    {
        FLUserNotificationCenter center;
        QCOMPARE(center.centerType(), qint64(FLUserNotificationCenterTypeAlert));
        QVERIFY(center.scheduledNotifications().isEmpty());
        QVERIFY(center.deliveredNotifications().isEmpty());
        QVERIFY(!center.delegate());
        center.start();
        QVERIFY(center.timer()->isActive());
        QVERIFY(!center.timer()->isSingleShot());
        // The first check comes at once: a notification scheduled right away is presented.
        FLUserNotification *due = notificationTitled(QStringLiteral("due"));
        center.scheduleNotification(due);
        QTRY_VERIFY_WITH_TIMEOUT(due->isPresented(), 200);
        QCOMPARE(center.timer()->interval(), 1000);
        QVERIFY(center.timer()->isActive());
        finishAnimations(&center);
    }

    void uncheckedCenterStacksAlertsUntilTypeOneTakesThemDownAndShowsBannersForFiveSeconds()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        center->setCenterType(FLUserNotificationCenterTypeAlert);
        FLUserNotification *first = deliverAndSettle(*center, QStringLiteral("first"));
        FLUserNotification *second = deliverAndSettle(*center, QStringLiteral("second"));
        QVERIFY(first->isVisible() && second->isVisible());
        QVERIFY(!first->showWindow()->otherButton()->isHidden());

        const QRect firstBefore = first->showWindow()->geometry();
        const QRect secondBefore = second->showWindow()->geometry();

        center->setCenterType(FLUserNotificationCenterTypeBanner);
        QVERIFY(!first->isVisible() && !second->isVisible());
        QVERIFY(first->isAnimating() && second->isAnimating());
        finishAnimations(center.get());
        // Both slid right, on their own rows, until half of each lay past the screen's edge.
        const QRectF screen = EVMainScreen::frame();
        for (const auto &[banner, before] :
             {std::pair{first, firstBefore}, {second, secondBefore}}) {
            const QRect after = banner->showWindow()->geometry();
            QCOMPARE(after.size(), before.size());
            QCOMPARE(after.y(), before.y());
            QCOMPARE(double(after.x()), screen.x() + screen.width() - before.width() * 0.5);
        }
        QVERIFY(!first->showWindow()->isVisible());
        QVERIFY(!second->showWindow()->isVisible());

        FLUserNotification *banner = deliverAndSettle(*center, QStringLiteral("banner"));
        QVERIFY(banner->isVisible());
        QVERIFY(banner->showWindow()->actionButton()->isHidden());
        QVERIFY(banner->showWindow()->otherButton()->isHidden());
        QCOMPARE(banner->showWindow()->titleField()->width(), 240);
        QCOMPARE(banner->showWindow()->geometry(), QRect(screenWidth - 328, 20, 328, 100));

        EVClock::advance(4999);
        center->checkMethod();
        QVERIFY(banner->isVisible());
        QVERIFY(!banner->isAnimating());
        EVClock::advance(1);
        center->checkMethod();
        QVERIFY(!banner->isVisible());
        QCOMPARE(banner->viewAnimation()->effect(), FLViewAnimation::Effect::FadeOut);
        finishAnimations(center.get());
        QVERIFY(!banner->showWindow()->isVisible());
        QCOMPARE(center->deliveredNotifications(),
                 (QList<FLUserNotification *>{first, second, banner}));
    }

    void typeOneShowsOneBannerAtATime()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeBanner);
        FLUserNotification *first = deliverAndSettle(*center, QStringLiteral("first"));
        EVClock::advance(1000);
        FLUserNotification *second = notificationTitled(QStringLiteral("second"));
        center->deliverNotification(second);
        QVERIFY(!first->isVisible());
        QCOMPARE(first->viewAnimation()->effect(), FLViewAnimation::Effect::FadeOut);
        QVERIFY(second->isVisible());
        finishAnimations(center.get());
        QCOMPARE(visibleNotifications(*center), QList<FLUserNotification *>{second});
        QVERIFY(!first->showWindow()->isVisible());
    }

    void typeOneDeliveryDuringAMoveInLeavesTheOlderBannerForTheFiveSecondRule()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeBanner);
        FLUserNotification *first = notificationTitled(QStringLiteral("first"));
        center->deliverNotification(first);
        EVClock::advance(1000);
        FLUserNotification *second = notificationTitled(QStringLiteral("second"));
        center->deliverNotification(second);
        finishAnimations(center.get());
        QCOMPARE(visibleNotifications(*center), (QList<FLUserNotification *>{first, second}));

        // Five seconds after the first came, the check takes it down and then waits for the
        // second, which came a second later.
        EVClock::advance(4000);
        center->checkMethod();
        QVERIFY(!first->isVisible());
        QVERIFY(second->isVisible());
        finishAnimations(center.get());
        EVClock::advance(1000);
        center->checkMethod();
        QVERIFY(!second->isVisible());
    }

    void typeZeroOnlyRecordsAndShowsNothing()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeNone);
        CenterDelegateRecorder delegate;
        center->setDelegate(&delegate);
        FLUserNotification *notification = notificationTitled(QStringLiteral("quiet"));
        center->deliverNotification(notification);
        center->deliverNotification(notification);
        QCOMPARE(center->deliveredNotifications(), QList<FLUserNotification *>{notification});
        QVERIFY(!notification->isVisible());
        QVERIFY(!notification->isPresented());
        QVERIFY(!notification->showWindow()->isVisible());
        QVERIFY(delegate.delivered.isEmpty());

        // Its checks do nothing either.
        center->scheduleNotification(notificationTitled(QStringLiteral("scheduled")));
        center->checkMethod();
        QCOMPARE(center->scheduledNotifications().size(), 1);
        QCOMPARE(center->deliveredNotifications().size(), 1);
    }

    void switchingToTypeZeroTakesEveryBannerDown()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        FLUserNotification *first = deliverAndSettle(*center, QStringLiteral("first"));
        FLUserNotification *second = deliverAndSettle(*center, QStringLiteral("second"));
        center->setCenterType(FLUserNotificationCenterTypeNone);
        QVERIFY(!first->isVisible() && !second->isVisible());
    }

    void otherTypesActAsAlertsAndKeepTheirBanners()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        FLUserNotification *first = deliverAndSettle(*center, QStringLiteral("first"));
        for (qint64 type : {qint64(-1), qint64(3), qint64(2)}) {
            center->setCenterType(type);
            QCOMPARE(center->centerType(), type);
            QVERIFY(first->isVisible());
            QVERIFY(!first->isAnimating());
        }
        center->setCenterType(-1);
        FLUserNotification *second = deliverAndSettle(*center, QStringLiteral("second"));
        QVERIFY(first->isVisible() && second->isVisible());
        QVERIFY(!second->showWindow()->otherButton()->isHidden());
        EVClock::advance(60000);
        center->checkMethod();
        QVERIFY(first->isVisible() && second->isVisible());
    }

    void scheduledNotificationWithoutDateComesOnTheNextTickAndTwoDueComeOnePerTick()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        FLUserNotification *undated = notificationTitled(QStringLiteral("undated"));
        FLUserNotification *earlier = notificationTitled(QStringLiteral("earlier"));
        earlier->setDeliveryDate(EVClock::now().addSecs(-30));
        center->scheduleNotification(undated);
        center->scheduleNotification(earlier);
        QCOMPARE(center->scheduledNotifications(), (QList<FLUserNotification *>{undated, earlier}));

        center->checkMethod();
        QVERIFY(undated->isPresented());
        QVERIFY(undated->isVisible());
        QVERIFY(!earlier->isPresented());
        QCOMPARE(center->scheduledNotifications(), QList<FLUserNotification *>{earlier});
        QCOMPARE(center->deliveredNotifications(), QList<FLUserNotification *>{undated});

        // While a banner moves, the check waits.
        center->checkMethod();
        QVERIFY(!earlier->isPresented());
        finishAnimations(center.get());
        center->checkMethod();
        QVERIFY(earlier->isPresented());
        QVERIFY(center->scheduledNotifications().isEmpty());
        QCOMPARE(center->deliveredNotifications(), (QList<FLUserNotification *>{undated, earlier}));
    }

    void scheduledNotificationWaitsForItsDate()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        FLUserNotification *later = notificationTitled(QStringLiteral("later"));
        later->setDeliveryDate(EVClock::now().addSecs(10));
        center->scheduleNotification(later);
        EVClock::advance(9999);
        center->checkMethod();
        QVERIFY(!later->isPresented());
        EVClock::advance(1);
        center->checkMethod();
        QVERIFY(later->isPresented());
        QCOMPARE(later->actualDeliveryDate(), EVClock::now());
    }

    void listsHoldEachNotificationOnceByIdentity()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        FLUserNotification *a = notificationTitled(QStringLiteral("same"));
        FLUserNotification *b = notificationTitled(QStringLiteral("same"));
        center->scheduleNotification(a);
        center->scheduleNotification(a);
        center->scheduleNotification(b);
        QCOMPARE(center->scheduledNotifications(), (QList<FLUserNotification *>{a, b}));
        center->removeScheduledNotification(a);
        QCOMPARE(center->scheduledNotifications(), QList<FLUserNotification *>{b});
        center->setScheduledNotifications({a});
        QCOMPARE(center->scheduledNotifications(), QList<FLUserNotification *>{a});

        center->deliverNotification(a);
        finishAnimations(center.get());
        EVClock::advance(1000);
        center->deliverNotification(a);
        QCOMPARE(center->deliveredNotifications(), QList<FLUserNotification *>{a});
        QVERIFY(center->scheduledNotifications().isEmpty());
    }

    void centerOwnsWhatItIsGivenAndForgetsWhatIsDeleted()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        QPointer<FLUserNotification> kept = notificationTitled(QStringLiteral("kept"));
        FLUserNotification *dropped = notificationTitled(QStringLiteral("dropped"));
        center->scheduleNotification(dropped);
        center->deliverNotification(kept);
        QCOMPARE(kept->parent(), center.get());
        QCOMPARE(dropped->parent(), center.get());
        delete dropped;
        QVERIFY(center->scheduledNotifications().isEmpty());
        finishAnimations(center.get());
        center->removeAllDeliveredNotifications();
        QVERIFY(center->deliveredNotifications().isEmpty());
        QVERIFY(kept);
        center.reset();
        QVERIFY(!kept);
    }

    void nullNotificationsAreIgnored()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        center->scheduleNotification(nullptr);
        center->deliverNotification(nullptr);
        center->presentedNotification(nullptr);
        center->setScheduledNotifications({nullptr});
        center->removeScheduledNotification(nullptr);
        center->removeDeliveredNotification(nullptr);
        center->checkMethod();
        QVERIFY(center->scheduledNotifications().isEmpty());
        QVERIFY(center->deliveredNotifications().isEmpty());
    }

    void repeatIntervalUnderAMinuteNeverRepeats()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        FLUserNotification *notification = notificationTitled(QStringLiteral("59 s"));
        notification->setDeliveryRepeatInterval(repeatEvery(&FLDateComponents::second, 59));
        center->deliverNotification(notification);
        finishAnimations(center.get());
        const QDateTime presented = notification->actualDeliveryDate();
        for (int i = 0; i < 5; ++i) {
            EVClock::advance(3600 * 1000);
            center->checkMethod();
        }
        QCOMPARE(notification->actualDeliveryDate(), presented);
    }

    void repeatIntervalOfAMinuteRepeatsEverySixtySeconds()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        CenterDelegateRecorder delegate;
        center->setDelegate(&delegate);
        FLUserNotification *notification = notificationTitled(QStringLiteral("minute"));
        notification->setDeliveryRepeatInterval(repeatEvery(&FLDateComponents::minute, 1));
        center->deliverNotification(notification);
        finishAnimations(center.get());
        const QDateTime first = notification->actualDeliveryDate();

        EVClock::advance(59999);
        center->checkMethod();
        QCOMPARE(notification->actualDeliveryDate(), first);
        EVClock::advance(1);
        center->checkMethod();
        QCOMPARE(notification->actualDeliveryDate(), first.addSecs(60));
        // Still on screen, so it was refreshed rather than delivered again.
        QCOMPARE(delegate.delivered.size(), 1);

        // Once it has been closed, the next repeat brings it back in.
        notification->fadeOutAnimation();
        finishAnimations(center.get());
        EVClock::advance(60000);
        center->checkMethod();
        QVERIFY(notification->isVisible());
        QCOMPARE(notification->actualDeliveryDate(), first.addSecs(120));
        QCOMPARE(delegate.delivered.size(), 2);
        QCOMPARE(center->deliveredNotifications(), QList<FLUserNotification *>{notification});
    }

    void repeatIntervalOfAWeekdayIsSevenHours()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        FLUserNotification *notification = notificationTitled(QStringLiteral("weekday"));
        notification->setDeliveryRepeatInterval(repeatEvery(&FLDateComponents::weekday, 1));
        center->deliverNotification(notification);
        finishAnimations(center.get());
        const QDateTime first = notification->actualDeliveryDate();
        EVClock::advance(25199 * 1000LL);
        center->checkMethod();
        QCOMPARE(notification->actualDeliveryDate(), first);
        EVClock::advance(1000);
        center->checkMethod();
        QCOMPARE(notification->actualDeliveryDate(), first.addSecs(25200));
    }

    void repeatLengthAddsTheSetComponentsAndIgnoresMonthsAndYears()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        FLUserNotification *months = notificationTitled(QStringLiteral("months"));
        FLDateComponents monthsOnly;
        monthsOnly.month = 1;
        monthsOnly.year = 1;
        months->setDeliveryRepeatInterval(monthsOnly);
        FLUserNotification *mixed = notificationTitled(QStringLiteral("mixed"));
        FLDateComponents parts;
        parts.day = 1;
        parts.hour = 1;
        parts.minute = 1;
        parts.second = 1;
        parts.month = 5;
        mixed->setDeliveryRepeatInterval(parts);
        center->deliverNotification(months);
        center->deliverNotification(mixed);
        finishAnimations(center.get());
        const QDateTime first = mixed->actualDeliveryDate();
        const qint64 length = 86400 + 3600 + 60 + 1;
        EVClock::advance((length - 1) * 1000);
        center->checkMethod();
        QCOMPARE(mixed->actualDeliveryDate(), first);
        EVClock::advance(1000);
        center->checkMethod();
        QCOMPARE(mixed->actualDeliveryDate(), first.addSecs(length));
        QCOMPARE(months->actualDeliveryDate(), first);
    }

    void hugeRepeatIntervalsNeitherCrashNorRepeat()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        FLUserNotification *notification = notificationTitled(QStringLiteral("huge"));
        FLDateComponents huge;
        huge.day = std::numeric_limits<qint64>::max();
        huge.weekday = std::numeric_limits<qint64>::min();
        huge.second = std::numeric_limits<qint64>::max();
        notification->setDeliveryRepeatInterval(huge);
        center->deliverNotification(notification);
        finishAnimations(center.get());
        const QDateTime first = notification->actualDeliveryDate();
        EVClock::advance(3600 * 1000);
        center->checkMethod();
        QVERIFY(notification->actualDeliveryDate() >= first);
    }

    void nineAlertBannersStackFromTheTopRightNewestFirstAndOnTop()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        QList<FLUserNotification *> oldestFirst;
        for (int i = 0; i < 9; ++i)
            oldestFirst.append(deliverAndSettle(*center, QStringLiteral("banner %1").arg(i)));

        const QList<int> tops{20, 110, 200, 290, 380, 470, 475, 480, 485};
        for (int i = 0; i < 9; ++i) {
            const FLUserNotification *newestFirst = oldestFirst.at(8 - i);
            const QRect frame = newestFirst->showWindow()->geometry();
            QCOMPARE(frame, QRect(screenWidth - 328, tops.at(i), 328, 100));
            // Seen from the bottom of the screen, as the offsets were first written.
            QCOMPARE(screenHeight - frame.bottom() - 1, screenHeight - 120 - (tops.at(i) - 20));
            QCOMPARE(newestFirst->showWindow()->level(), FLBannerWindow::statusWindowLevel + 9 - i);
        }
    }

    void ofBannersPresentedAtOneInstantTheOneDeliveredLastIsNewest()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        FLUserNotification *first = notificationTitled(QStringLiteral("first"));
        FLUserNotification *second = notificationTitled(QStringLiteral("second"));
        center->deliverNotification(first);
        finishAnimations(center.get());
        center->deliverNotification(second);
        finishAnimations(center.get());
        QCOMPARE(first->actualDeliveryDate(), second->actualDeliveryDate());
        QCOMPARE(second->showWindow()->y(), 20);
        QCOMPARE(first->showWindow()->y(), 110);
        QVERIFY(second->showWindow()->level() > first->showWindow()->level());
    }

    void alertBodyClickReportsAndStaysWhileShowAndCloseFadeItOutAndCloseTheGap()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        CenterDelegateRecorder delegate;
        center->setDelegate(&delegate);
        FLUserNotification *oldest = deliverAndSettle(*center, QStringLiteral("oldest"));
        FLUserNotification *middle = deliverAndSettle(*center, QStringLiteral("middle"));
        FLUserNotification *newest = deliverAndSettle(*center, QStringLiteral("newest"));
        QCOMPARE(oldest->showWindow()->y(), 200);

        QTest::mouseClick(newest->showWindow()->bgButton(), Qt::LeftButton);
        QCOMPARE(delegate.activated, QList<FLUserNotification *>{newest});
        QCOMPARE(newest->activationType(), qint64(FLUserNotificationActivationTypeContentsClicked));
        QVERIFY(newest->isVisible());
        QVERIFY(!newest->isAnimating());

        QTest::mouseClick(newest->showWindow()->otherButton(), Qt::LeftButton);
        QCOMPARE(delegate.activated, (QList<FLUserNotification *>{newest, newest}));
        QVERIFY(!newest->isVisible());
        QCOMPARE(newest->viewAnimation()->effect(), FLViewAnimation::Effect::FadeOut);
        QCOMPARE(newest->viewAnimation()->endFrame(), QRectF(screenWidth - 328, 20, 328, 100));
        finishAnimations(center.get());
        QVERIFY(!newest->showWindow()->isVisible());
        QCOMPARE(middle->showWindow()->y(), 20);
        QCOMPARE(oldest->showWindow()->y(), 110);

        QTest::mouseClick(middle->showWindow()->actionButton(), Qt::LeftButton);
        QCOMPARE(middle->activationType(),
                 qint64(FLUserNotificationActivationTypeActionButtonClicked));
        finishAnimations(center.get());
        QVERIFY(!middle->showWindow()->isVisible());
        QCOMPARE(oldest->showWindow()->y(), 20);
        QCOMPARE(visibleNotifications(*center), QList<FLUserNotification *>{oldest});
    }

    void anyClickOnATypeOneBannerTakesItDown()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeBanner);
        CenterDelegateRecorder delegate;
        center->setDelegate(&delegate);
        FLUserNotification *banner = deliverAndSettle(*center, QStringLiteral("banner"));
        QTest::mouseClick(banner->showWindow()->bgButton(), Qt::LeftButton);
        QVERIFY(!banner->isVisible());
        QCOMPARE(banner->viewAnimation()->endFrame(), QRectF(screenWidth - 164, 20, 328, 100));
        QCOMPARE(delegate.activated, QList<FLUserNotification *>{banner});
    }

    void clickDuringAnyBannersAnimationDoesNothing()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        CenterDelegateRecorder delegate;
        center->setDelegate(&delegate);
        FLUserNotification *settled = deliverAndSettle(*center, QStringLiteral("settled"));
        EVClock::advance(1000);
        FLUserNotification *arriving = notificationTitled(QStringLiteral("arriving"));
        center->deliverNotification(arriving);
        QVERIFY(arriving->isAnimating());

        for (QAbstractButton *button :
             {static_cast<QAbstractButton *>(settled->showWindow()->otherButton()),
              static_cast<QAbstractButton *>(settled->showWindow()->actionButton()),
              settled->showWindow()->bgButton()}) {
            QTest::mouseClick(button, Qt::LeftButton);
            QVERIFY(!button->isChecked());
        }
        QVERIFY(!center->userNotificationWillActivate(settled));
        QCOMPARE(settled->activationType(), qint64(FLUserNotificationActivationTypeNone));
        QVERIFY(delegate.activated.isEmpty());
        QVERIFY(settled->isVisible());
        finishAnimations(center.get());
        QVERIFY(center->userNotificationWillActivate(settled));
    }

    void deliveryIsReportedOnlyForABannerThatWasNotOnScreen()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        CenterDelegateRecorder delegate;
        center->setDelegate(&delegate);
        FLUserNotification *notification = deliverAndSettle(*center, QStringLiteral("once"));
        QCOMPARE(delegate.delivered, QList<FLUserNotification *>{notification});
        QCOMPARE(delegate.centers.first(), center.get());
        QCOMPARE(notification->delegate(), center.get());

        EVClock::advance(1000);
        notification->setTitle(QStringLiteral("again"));
        center->deliverNotification(notification);
        QCOMPARE(delegate.delivered.size(), 1);
        QCOMPARE(notification->actualDeliveryDate(), EVClock::now());
        QCOMPARE(notification->showWindow()->titleField()->text(), QStringLiteral("again"));
        QVERIFY(!notification->isAnimating());
    }

    void delegateHearsOnlyWhatItImplementsAndNoDelegateHearsNothing()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        CenterDelegateRecorder deaf{FLUserNotificationCenterDelegate::Operations()};
        center->setDelegate(&deaf);
        FLUserNotification *notification = deliverAndSettle(*center, QStringLiteral("quiet"));
        QTest::mouseClick(notification->showWindow()->bgButton(), Qt::LeftButton);
        QVERIFY(deaf.delivered.isEmpty());
        QVERIFY(deaf.activated.isEmpty());

        CenterDelegateRecorder activationsOnly(
            FLUserNotificationCenterDelegate::Operation::DidActivateNotification);
        center->setDelegate(&activationsOnly);
        deliverAndSettle(*center, QStringLiteral("second"));
        QTest::mouseClick(notification->showWindow()->bgButton(), Qt::LeftButton);
        QVERIFY(activationsOnly.delivered.isEmpty());
        QCOMPARE(activationsOnly.activated, QList<FLUserNotification *>{notification});

        center->setDelegate(nullptr);
        deliverAndSettle(*center, QStringLiteral("third"));
        QTest::mouseClick(notification->showWindow()->otherButton(), Qt::LeftButton);
        QVERIFY(!notification->isVisible());
    }

    void checkWaitsWhileAModalDialogIsUp()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        FLUserNotification *due = notificationTitled(QStringLiteral("due"));
        center->scheduleNotification(due);
        QDialog dialog;
        dialog.setModal(true);
        dialog.show();
        QVERIFY(QApplication::activeModalWidget());
        center->checkMethod();
        QVERIFY(!due->isPresented());
        dialog.hide();
        center->checkMethod();
        QVERIFY(due->isPresented());
        finishAnimations(center.get());
    }

    void checkWaitsWhileAPopupMenuIsUp()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        FLUserNotification *due = notificationTitled(QStringLiteral("due"));
        center->scheduleNotification(due);
        QMenu menu;
        menu.addAction(QStringLiteral("Item"));
        menu.popup(QPoint(100, 100));
        QTRY_VERIFY(QApplication::activePopupWidget());
        center->checkMethod();
        QVERIFY(!due->isPresented());
        menu.close();
        QTRY_VERIFY(!QApplication::activePopupWidget());
        center->checkMethod();
        QVERIFY(due->isPresented());
        finishAnimations(center.get());
    }

    void bannerForgottenByTheCenterStaysUpAndStillAnswersItsClicks()
    {
        auto center = handDrivenCenter(FLUserNotificationCenterTypeAlert);
        CenterDelegateRecorder delegate;
        center->setDelegate(&delegate);
        FLUserNotification *forgotten = deliverAndSettle(*center, QStringLiteral("forgotten"));
        FLUserNotification *kept = deliverAndSettle(*center, QStringLiteral("kept"));
        QCOMPARE(forgotten->showWindow()->y(), 110);
        center->removeDeliveredNotification(forgotten);
        QCOMPARE(center->deliveredNotifications(), QList<FLUserNotification *>{kept});
        QVERIFY(forgotten->isVisible());
        QVERIFY(forgotten->showWindow()->isVisible());

        // No longer stacked: closing the newer banner does not move it up.
        QTest::mouseClick(kept->showWindow()->otherButton(), Qt::LeftButton);
        finishAnimations(center.get());
        finishAnimations(forgotten);
        QCOMPARE(forgotten->showWindow()->y(), 110);
        QTest::mouseClick(forgotten->showWindow()->otherButton(), Qt::LeftButton);
        QCOMPARE(delegate.activated, (QList<FLUserNotification *>{kept, forgotten}));
        finishAnimations(forgotten);
        QVERIFY(!forgotten->showWindow()->isVisible());
    }
};

TALLYVANE_TEST_MAIN(TestFLUserNotificationCenter)
#include "tst_flusernotificationcenter.moc"
