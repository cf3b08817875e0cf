#pragma once

#include "TestEnvironment.h"
#include "notify/FLUserNotificationCenterDelegate.h"
#include "notify/FLUserNotificationDelegate.h"

#include <QList>
#include <QSize>
#include <QtMessageHandler>

class FLUserNotification;
class FLUserNotificationCenter;

// A center delegate that keeps what it was told. It claims only the operations it was made
// with, and records a call of any other as well, so that tests see calls it should not get.
class CenterDelegateRecorder : public FLUserNotificationCenterDelegate
{
public:
    explicit CenterDelegateRecorder(Operations implemented = Operation::DidDeliverNotification |
                                                             Operation::DidActivateNotification)
        : m_implemented(implemented)
    {}

    Operations implementedOperations() const override { return m_implemented; }
    void userNotificationCenterDidDeliverNotification(FLUserNotificationCenter *center,
                                                      FLUserNotification *notification) override
    {
        centers.append(center);
        delivered.append(notification);
    }
    void userNotificationCenterDidActivateNotification(FLUserNotificationCenter *center,
                                                       FLUserNotification *notification) override
    {
        centers.append(center);
        activated.append(notification);
    }

    QList<FLUserNotificationCenter *> centers;
    QList<FLUserNotification *> delivered;
    QList<FLUserNotification *> activated;

private:
    Operations m_implemented;
};

// A banner delegate that answers clicks as told and keeps the reported activation types.
class BannerDelegateRecorder : public FLUserNotificationDelegate
{
public:
    bool userNotificationWillActivate(FLUserNotification *) override
    {
        ++questions;
        return answer;
    }
    void userNotificationDidActivateType(FLUserNotification *, qint64 activationType) override
    {
        activations.append(activationType);
    }

    bool answer = true;
    int questions = 0;
    QList<qint64> activations;
};

// Runs the banner's animations to their end at once: the slide or fade, which ends the swing
// of a move-in with it.
void finishAnimations(FLUserNotification *notification);
// The same for every notification the center knows.
void finishAnimations(FLUserNotificationCenter *center);

// The offscreen platform notes every window raise, opacity change, mask, keyboard grab and size
// hint it cannot pass on; this keeps those notes out of the test log while it lives.
class OffscreenWindowNotesFilter
{
public:
    OffscreenWindowNotesFilter();
    ~OffscreenWindowNotesFilter();
    OffscreenWindowNotesFilter(const OffscreenWindowNotesFilter &) = delete;
    OffscreenWindowNotesFilter &operator=(const OffscreenWindowNotesFilter &) = delete;

private:
    QtMessageHandler m_previous;
};

// The scene every banner test plays in: the clock pinned at noon on 1 March 2024 (UTC) and the
// offscreen platform's window notes kept out of the log. The main screen is made
// bannerSceneScreenSize once per test case (bannerSceneSetUp).
inline constexpr QSize bannerSceneScreenSize(1280, 800);
bool bannerSceneSetUp();

class BannerScene
{
public:
    BannerScene();

private:
    PinnedClock m_clock;
    OffscreenWindowNotesFilter m_notes;
};

// The notifications the center knows whose banners are on screen, in delivery order.
QList<FLUserNotification *> visibleNotifications(const FLUserNotificationCenter &center);
