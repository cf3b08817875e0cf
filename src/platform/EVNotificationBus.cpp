#include "platform/EVNotificationBus.h"

#include "core/EVProcessObjects.h"

#include <QPointer>

EVNotificationBus *EVNotificationBus::defaultCenter()
{
    static QPointer<EVNotificationBus> bus;
    if (!bus)
        bus = EVProcessObjects::keep(new EVNotificationBus);
    return bus;
}

void EVNotificationBus::postNotificationName(const QString &name, QObject *object)
{
    Q_EMIT notificationPosted(name, object);
}
