#pragma once

#include <QtGlobal>

class FLUserNotification;

// What a banner asks and tells about clicks on it; the notification center implements it for
// every banner it shows.
class FLUserNotificationDelegate
{
public:
    virtual ~FLUserNotificationDelegate() = default;

    // Asked before a click is reported; false drops the click.
    virtual bool userNotificationWillActivate(FLUserNotification *notification) = 0;
    // Told after an accepted click, with the kind of click (FLUserNotificationActivationType).
    virtual void userNotificationDidActivateType(FLUserNotification *notification,
                                                 qint64 activationType) = 0;
};
