#include "notify/FLUserNotificationCenter.h"

#include "core/EVClock.h"
#include "core/EVProcessObjects.h"
#include "notify/FLUserNotification.h"
#include "notify/FLUserNotificationCenterDelegate.h"

#include <QApplication>
#include <QCoreApplication>
#include <QPointer>

#include <algorithm>

namespace {

// A banner of the banner type stays up at least this long.
constexpr double bannerLifetime = 5.0;
// Shorter repeat lengths do not repeat.
constexpr double shortestRepeat = 60.0;
constexpr double longestRepeatMSecs = 1.0e16;
// Seconds from now to the date; a missing date counts as now.
double secondsFromNow(const QDateTime &date)
{
    return double(EVClock::now().msecsTo(date)) / 1000.0;
}

// A product of 64-bit integers that wraps instead of overflowing.
qint64 wrappingProduct(qint64 a, qint64 b)
{
    return qint64(quint64(a) * quint64(b));
}

// The seconds between repeats. A weekday counts as seven hours, not a week: that is how this
// center has always reckoned it, and repeating notifications rely on it. Months and years do
// not count.
double repeatLength(const FLDateComponents &interval)
{
    double length = 0.0;
    const auto add = [&length](const std::optional<qint64> &component, qint64 seconds) {
        if (component)
            length += double(wrappingProduct(*component, seconds));
    };
    add(interval.weekday, 25200);
    add(interval.day, 86400);
    add(interval.hour, 3600);
    add(interval.minute, 60);
    add(interval.second, 1);
    return length;
}

// Modal dialogs and menus run loops of their own, in which the check waits.
bool isModalLoopRunning()
{
    return QApplication::activeModalWidget() || QApplication::activePopupWidget();
}

} // namespace

FLUserNotificationCenter *FLUserNotificationCenter::defaultUserNotificationCenter()
{
    static QPointer<FLUserNotificationCenter> center;
    if (!center) {
        center = EVProcessObjects::keep(new FLUserNotificationCenter);
        center->start();
    }
    return center;
}

FLUserNotificationCenter::FLUserNotificationCenter(QObject *parent)
    : QObject(parent)
{
    connect(&m_timer, &QTimer::timeout, this, [this] {
        // The first tick came at once; a tick a second from then on.
        if (m_timer.interval() != checkInterval)
            m_timer.setInterval(checkInterval);
        checkMethod();
    });
}

void FLUserNotificationCenter::start()
{
    m_timer.start(0);
}

FLUserNotificationCenter::~FLUserNotificationCenter()
{
    // Banners that outlive the center must not report to it.
    for (const QList<FLUserNotification *> *list : {&m_delivered, &m_scheduled}) {
        for (FLUserNotification *notification : *list) {
            if (notification->delegate() == this)
                notification->setDelegate(nullptr);
        }
    }
}

void FLUserNotificationCenter::setCenterType(qint64 centerType)
{
    m_centerType = centerType;
    if (centerType == FLUserNotificationCenterTypeNone ||
        centerType == FLUserNotificationCenterTypeBanner)
        takeDownVisibleNotifications();
}

void FLUserNotificationCenter::setScheduledNotifications(
    const QList<FLUserNotification *> &notifications)
{
    m_scheduled.clear();
    for (FLUserNotification *notification : notifications) {
        if (notification) {
            adopt(notification);
            m_scheduled.append(notification);
        }
    }
}

void FLUserNotificationCenter::scheduleNotification(FLUserNotification *notification)
{
    if (!notification || m_scheduled.contains(notification))
        return;
    adopt(notification);
    m_scheduled.append(notification);
}

void FLUserNotificationCenter::removeScheduledNotification(FLUserNotification *notification)
{
    m_scheduled.removeAll(notification);
}

void FLUserNotificationCenter::deliverNotification(FLUserNotification *notification)
{
    if (!notification)
        return;
    if (m_centerType == FLUserNotificationCenterTypeNone) {
        if (!m_delivered.contains(notification)) {
            adopt(notification);
            m_delivered.append(notification);
        }
        return;
    }
    if (m_centerType == FLUserNotificationCenterTypeBanner)
        takeDownVisibleNotifications();
    presentedNotification(notification);
}

void FLUserNotificationCenter::removeDeliveredNotification(FLUserNotification *notification)
{
    m_delivered.removeAll(notification);
}

void FLUserNotificationCenter::removeAllDeliveredNotifications()
{
    m_delivered.clear();
}

void FLUserNotificationCenter::presentedNotification(FLUserNotification *notification)
{
    if (!notification)
        return;
    adopt(notification);
    if (!m_delivered.contains(notification))
        m_delivered.append(notification);
    m_scheduled.removeAll(notification);

    const bool wasVisible = notification->isVisible();
    notification->setup(m_centerType);
    if (wasVisible) {
        // Still on screen: new texts and date, no second entrance and no report.
        notification->presentedNotification();
        sortVisibleNotifications();
        return;
    }
    notification->setDelegate(this);
    notification->presentedNotification();
    notification->moveInAnimation();
    sortVisibleNotifications();
    if (m_delegate && m_delegate->implementedOperations().testFlag(
                          FLUserNotificationCenterDelegate::Operation::DidDeliverNotification))
        m_delegate->userNotificationCenterDidDeliverNotification(this, notification);
}

void FLUserNotificationCenter::sortVisibleNotifications()
{
    m_stack.arrange(m_delivered);
}

void FLUserNotificationCenter::checkMethod()
{
    if (isModalLoopRunning())
        return;
    if (isAnyDeliveredNotificationAnimating())
        return;
    if (m_centerType == FLUserNotificationCenterTypeNone)
        return;
    if (m_centerType == FLUserNotificationCenterTypeBanner && !takeDownExpiredBanners())
        return;
    if (presentDueScheduledNotification())
        return;
    presentDueRepeatingNotification();
}

bool FLUserNotificationCenter::userNotificationWillActivate(FLUserNotification *)
{
    return !isAnyDeliveredNotificationAnimating();
}

void FLUserNotificationCenter::userNotificationDidActivateType(FLUserNotification *notification,
                                                               qint64 activationType)
{
    if (m_centerType == FLUserNotificationCenterTypeBanner) {
        notification->moveOutAnimation();
    } else if (activationType == FLUserNotificationActivationTypeNone ||
               activationType == FLUserNotificationActivationTypeActionButtonClicked) {
        notification->fadeOutAnimation();
        sortVisibleNotifications();
    }
    if (m_delegate && m_delegate->implementedOperations().testFlag(
                          FLUserNotificationCenterDelegate::Operation::DidActivateNotification))
        m_delegate->userNotificationCenterDidActivateNotification(this, notification);
}

void FLUserNotificationCenter::adopt(FLUserNotification *notification)
{
    if (notification->parent() == this)
        return;
    notification->setParent(this);
    connect(notification, &QObject::destroyed, this, &FLUserNotificationCenter::forget,
            Qt::UniqueConnection);
}

void FLUserNotificationCenter::forget(QObject *notification)
{
    // Only the address is compared: the object is already half destroyed.
    const auto isGone = [notification](const FLUserNotification *listed) {
        return static_cast<const QObject *>(listed) == notification;
    };
    m_delivered.removeIf(isGone);
    m_scheduled.removeIf(isGone);
}

bool FLUserNotificationCenter::isAnyDeliveredNotificationAnimating() const
{
    return std::any_of(m_delivered.cbegin(), m_delivered.cend(),
                       [](const FLUserNotification *n) { return n->isAnimating(); });
}

void FLUserNotificationCenter::takeDownVisibleNotifications()
{
    const QList<FLUserNotification *> delivered = m_delivered;
    for (FLUserNotification *notification : delivered) {
        if (notification->isVisible())
            notification->moveOutAnimation();
    }
}

bool FLUserNotificationCenter::takeDownExpiredBanners()
{
    const QList<FLUserNotification *> delivered = m_delivered;
    for (FLUserNotification *notification : delivered) {
        if (!notification->isVisible())
            continue;
        // A banner up for less than its lifetime holds everything else back.
        if (secondsFromNow(notification->actualDeliveryDate()) > -bannerLifetime)
            return false;
        notification->moveOutAnimation();
    }
    return true;
}

bool FLUserNotificationCenter::presentDueScheduledNotification()
{
    const QList<FLUserNotification *> scheduled = m_scheduled;
    for (FLUserNotification *notification : scheduled) {
        if (secondsFromNow(notification->deliveryDate()) <= 0.0) {
            presentedNotification(notification);
            return true;
        }
    }
    return false;
}

bool FLUserNotificationCenter::presentDueRepeatingNotification()
{
    const QList<FLUserNotification *> delivered = m_delivered;
    for (FLUserNotification *notification : delivered) {
        const std::optional<FLDateComponents> interval = notification->deliveryRepeatInterval();
        if (!interval)
            continue;
        const double length = repeatLength(*interval);
        if (length < shortestRepeat)
            continue;
        // Lengths beyond any date the calendar holds are kept in its range.
        const qint64 milliseconds = qint64(std::min(length * 1000.0, longestRepeatMSecs));
        const QDateTime last = notification->actualDeliveryDate();
        const QDateTime next = last.isValid() ? last.addMSecs(milliseconds) : last;
        if (secondsFromNow(next) <= 0.0) {
            presentedNotification(notification);
            return true;
        }
    }
    return false;
}
