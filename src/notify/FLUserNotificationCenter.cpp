#include "notify/FLUserNotificationCenter.h"

#include "core/EVClock.h"
#include "core/EVProcessObjects.h"
#include "notify/FLBannerWindow.h"
#include "notify/FLUserNotification.h"
#include "notify/FLUserNotificationCenterDelegate.h"
#include "platform/EVMainScreen.h"

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
// Banners lie this far below the top of the screen, and overlap their neighbours by this much.
constexpr double stackTop = 20.0;
constexpr double stackOverlap = 10.0;

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

// How far below the newest banner the banner at that place of the stack lies: full steps for
// the first six, then 5 points more for the next two, and every further one where the eighth is.
double stackOffset(qsizetype index, double bannerHeight)
{
    const double step = bannerHeight - stackOverlap;
    if (index <= 5)
        return double(index) * step;
    if (index <= 7)
        return 5 * step + 5 * double(index - 5);
    return 5 * step + 15;
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
    // Collected from the end of the list, so that of banners presented within the same
    // millisecond the one delivered last still counts as the newest.
    QList<FLUserNotification *> visible;
    for (auto it = m_delivered.crbegin(); it != m_delivered.crend(); ++it) {
        if ((*it)->isVisible())
            visible.append(*it);
    }
    std::stable_sort(visible.begin(), visible.end(),
                     [](const FLUserNotification *a, const FLUserNotification *b) {
                         return a->actualDeliveryDate() > b->actualDeliveryDate();
                     });
    if (visible.isEmpty())
        return;

    const QRectF screen = EVMainScreen::frame();
    const qsizetype count = visible.size();
    for (qsizetype index = 0; index < count; ++index) {
        FLUserNotification *notification = visible.at(index);
        FLBannerWindow *window = notification->showWindow();
        window->setLevel(FLBannerWindow::statusWindowLevel + int(count - index));
        const double x = screen.x() + screen.width() - window->width();
        const double y = screen.y() + stackTop + stackOffset(index, window->height());
        notification->moveAnimation(QPointF(x, y));
    }
    raiseInLevelOrder(visible);
}

void FLUserNotificationCenter::raiseInLevelOrder(const QList<FLUserNotification *> &newestFirst)
{
    // The window system stacks the banners by their levels: from the bottom up, each is raised
    // over the ones before. Those at the bottom that already lie in order stay where they are,
    // so that a new banner costs one raise, not one for every banner on screen.
    QList<QPointer<FLBannerWindow>> bottomUp;
    for (auto it = newestFirst.crbegin(); it != newestFirst.crend(); ++it) {
        if ((*it)->showWindow()->isVisible())
            bottomUp.append((*it)->showWindow());
    }
    qsizetype inPlace = 0;
    while (inPlace < bottomUp.size() && inPlace < m_raisedBottomUp.size() &&
           bottomUp.at(inPlace) == m_raisedBottomUp.at(inPlace))
        ++inPlace;
    for (qsizetype index = inPlace; index < bottomUp.size(); ++index)
        bottomUp.at(index)->raise();
    m_raisedBottomUp = bottomUp;
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
