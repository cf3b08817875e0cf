#include "engine/EVReminderCheck.h"

#include "core/EVClock.h"
#include "engine/EVDateText.h"
#include "notify/FLUserNotification.h"
#include "notify/FLUserNotificationCenter.h"
#include "store/EVWidgetEntry.h"

#include <QDateTime>

#include <array>

void EVReminderCheck::check(EVWidgetEntry *entry) const
{
    if (!entry || !entry->soundAlert())
        return;
    // Seconds per unit of the lead time: seconds, minutes, hours, days, weeks.
    static constexpr std::array<qint64, 5> unitSeconds{1, 60, 3600, 86400, 604800};
    const int unit = entry->intervalAlertUnit();
    // The Note tab stores nothing else; a unit from elsewhere cannot be timed.
    if (unit < 0 || unit >= int(unitSeconds.size()))
        return;
    const double lead = double(qint64(entry->intervalBeforeAlert()) * unitSeconds[unit]);
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
