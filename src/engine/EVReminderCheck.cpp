#include "engine/EVReminderCheck.h"

#include "core/EVClock.h"
#include "engine/EVDateText.h"
#include "notify/FLUserNotification.h"
#include "notify/FLUserNotificationCenter.h"
#include "store/EVReminderLead.h"
#include "store/EVWidgetEntry.h"

#include <QDateTime>

void EVReminderCheck::check(EVWidgetEntry *entry) const
{
    if (!entry || !entry->soundAlert())
        return;
    const qint64 unitSeconds = EVReminderLead::unitSeconds(entry->intervalAlertUnit());
    // The Note tab stores nothing else; a unit from elsewhere cannot be timed.
    if (unitSeconds == 0)
        return;
    const double lead = double(qint64(entry->intervalBeforeAlert()) * unitSeconds);
    const QDateTime now = EVClock::now();
    const double remaining = double(now.msecsTo(entry->eventDate())) / 1000.0;
    if (!(lead > remaining))
        return;

    auto *notification = new FLUserNotification;
    notification->setTitle(entry->eventTitle());
    notification->setSubtitle(eventDate(entry));
    if (!entry->note().isNull())
        notification->setInformativeText(entry->note());
    notification->setHasActionButton(true);
    notification->setDeliveryDate(now);
    FLUserNotificationCenter *center =
        m_center ? m_center : FLUserNotificationCenter::defaultUserNotificationCenter();
    center->deliverNotification(notification);
    entry->setSoundAlert(false);
}

QString EVReminderCheck::eventDate(const EVWidgetEntry *entry)
{
    return entry ? EVDateText::reminderDateText(*entry) : QString();
}
