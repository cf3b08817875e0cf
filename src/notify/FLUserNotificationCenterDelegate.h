#pragma once

#include <QFlags>

class FLUserNotification;
class FLUserNotificationCenter;

// What a notification center tells its delegate. A delegate overrides the operations it cares
// about and names them in implementedOperations(); the center sends only those.
class FLUserNotificationCenterDelegate
{
public:
    enum class Operation {
        DidDeliverNotification = 0x1,
        DidActivateNotification = 0x2,
        ShouldPresentNotification = 0x4,
    };
    Q_DECLARE_FLAGS(Operations, Operation)

    virtual ~FLUserNotificationCenterDelegate() = default;

    virtual Operations implementedOperations() const = 0;

    // A notification that was not on screen has been presented and has started to move in.
    virtual void userNotificationCenterDidDeliverNotification(FLUserNotificationCenter *,
                                                              FLUserNotification *)
    {}
    // A click on a banner was accepted; the banner has been told to leave or to stay.
    virtual void userNotificationCenterDidActivateNotification(FLUserNotificationCenter *,
                                                               FLUserNotification *)
    {}
    // Kept for the shape of the platform's notification centers; this center never asks.
    virtual bool userNotificationCenterShouldPresentNotification(FLUserNotificationCenter *,
                                                                 FLUserNotification *)
    {
        return true;
    }
};

Q_DECLARE_OPERATORS_FOR_FLAGS(FLUserNotificationCenterDelegate::Operations)
