#include "NotificationTools.h"

#include <QTimeZone>

#include "notify/FLUserNotification.h"
#include "notify/FLUserNotificationCenter.h"
#include "notify/FLViewAnimation.h"

#include <QString>

namespace {

QtMessageHandler previousHandler = nullptr;

void dropOffscreenWindowNotes(QtMsgType type, const QMessageLogContext &context,
                              const QString &message)
{
    if (message == QLatin1String("This plugin does not support raise()") ||
        message == QLatin1String("This plugin does not support setting window opacity") ||
        message == QLatin1String("This plugin does not support setting window masks") ||
        message == QLatin1String("This plugin does not support grabbing the keyboard") ||
        message == QLatin1String("This plugin does not support propagateSizeHints()"))
        return;
    if (previousHandler)
        previousHandler(type, context, message);
}

void finishAnimation(QAbstractAnimation *animation)
{
    if (animation && animation->state() == QAbstractAnimation::Running)
        animation->setCurrentTime(animation->totalDuration());
}

} // namespace

void finishAnimations(FLUserNotification *notification)
{
    finishAnimation(notification->viewAnimation());
    finishAnimation(notification->rotationAnimation());
}

void finishAnimations(FLUserNotificationCenter *center)
{
    for (FLUserNotification *notification : center->findChildren<FLUserNotification *>())
        finishAnimations(notification);
}

OffscreenWindowNotesFilter::OffscreenWindowNotesFilter()
    : m_previous(qInstallMessageHandler(dropOffscreenWindowNotes))
{
    previousHandler = m_previous;
}

OffscreenWindowNotesFilter::~OffscreenWindowNotesFilter()
{
    qInstallMessageHandler(m_previous);
    previousHandler = nullptr;
}

bool bannerSceneSetUp()
{
    return setOffscreenScreenSize(bannerSceneScreenSize.width(), bannerSceneScreenSize.height());
}

BannerScene::BannerScene()
    : m_clock(QDateTime(QDate(2024, 3, 1), QTime(12, 0), QTimeZone::utc()))
{}

QList<FLUserNotification *> visibleNotifications(const FLUserNotificationCenter &center)
{
    QList<FLUserNotification *> visible;
    for (FLUserNotification *notification : center.deliveredNotifications()) {
        if (notification->isVisible())
            visible.append(notification);
    }
    return visible;
}
