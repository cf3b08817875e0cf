#pragma once

#include "notify/FLBannerStack.h"
#include "notify/FLUserNotificationDelegate.h"

#include <QList>
#include <QObject>
#include <QTimer>

class FLUserNotification;
class FLUserNotificationCenterDelegate;

// How a center shows notifications and takes them down. Any other value acts as the alert type.
enum FLUserNotificationCenterType : qint64 {
    // Delivered notifications are only recorded; nothing is shown.
    FLUserNotificationCenterTypeNone = 0,
    // One banner at a time, without buttons, taken down 5 seconds after it came.
    FLUserNotificationCenterTypeBanner = 1,
    // Banners with "Show" and "Close" stack up and stay until one of those is clicked.
    FLUserNotificationCenterTypeAlert = 2,
};

// The owner of the application's user notifications: those waiting for their delivery date
// (scheduled) and those shown at least once (delivered). Once a second it presents what is due
// and takes down what has been up long enough; it stacks the visible banners at the top right of
// the main screen, newest on top, and tells its delegate about deliveries and clicks.
// Notifications handed to it become its children; one that is deleted leaves its lists.
class FLUserNotificationCenter : public QObject, public FLUserNotificationDelegate
{
    Q_OBJECT

public:
    // One check a second, the first at once.
    static constexpr int checkInterval = 1000;

    // The process-wide center, made and started on first use.
    static FLUserNotificationCenter *defaultUserNotificationCenter();

    // An alert-type center with empty lists; its checks begin with start().
    explicit FLUserNotificationCenter(QObject *parent = nullptr);
    ~FLUserNotificationCenter() override;

    // Starts the check timer: the first check at once, then one a second.
    void start();

    qint64 centerType() const { return m_centerType; }
    // Types 0 and 1 take every visible banner down.
    void setCenterType(qint64 centerType);

    FLUserNotificationCenterDelegate *delegate() const { return m_delegate; }
    // Not owned.
    void setDelegate(FLUserNotificationCenterDelegate *delegate) { m_delegate = delegate; }

    QList<FLUserNotification *> scheduledNotifications() const { return m_scheduled; }
    // Replaces the whole list.
    void setScheduledNotifications(const QList<FLUserNotification *> &notifications);
    // In order of first presentation.
    QList<FLUserNotification *> deliveredNotifications() const { return m_delivered; }

    // Adds it to the scheduled list unless it is there already.
    void scheduleNotification(FLUserNotification *notification);
    void removeScheduledNotification(FLUserNotification *notification);
    // Shows it now, as the center type says.
    void deliverNotification(FLUserNotification *notification);
    // These two only forget notifications; banners on screen stay.
    void removeDeliveredNotification(FLUserNotification *notification);
    void removeAllDeliveredNotifications();

    // The check timer. Stopped, it leaves the checks to whoever calls checkMethod().
    QTimer *timer() { return &m_timer; }

    // Lays the notification out, marks it presented and moves it in unless it is on screen.
    void presentedNotification(FLUserNotification *notification);
    // Stacks the visible banners under the top right corner of the main screen, newest first.
    void sortVisibleNotifications();
    // One tick of the check timer; skipped while a modal dialog or a popup menu is up.
    void checkMethod();

    bool userNotificationWillActivate(FLUserNotification *notification) override;
    void userNotificationDidActivateType(FLUserNotification *notification,
                                         qint64 activationType) override;

private:
    void adopt(FLUserNotification *notification);
    void forget(QObject *notification);
    bool isAnyDeliveredNotificationAnimating() const;
    void takeDownVisibleNotifications();
    bool takeDownExpiredBanners();
    bool presentDueScheduledNotification();
    bool presentDueRepeatingNotification();

    FLUserNotificationCenterDelegate *m_delegate = nullptr;
    QList<FLUserNotification *> m_delivered;
    QList<FLUserNotification *> m_scheduled;
    QTimer m_timer;
    FLBannerStack m_stack;
    qint64 m_centerType = FLUserNotificationCenterTypeAlert;
};
