#include "platform/EVNotificationBus.h"

EVNotificationBus *EVNotificationBus::defaultCenter()
{
    static EVNotificationBus *bus = new EVNotificationBus;
    return bus;
}

void EVNotificationBus::postNotificationName(const QString &name, QObject *object)
{
    Q_EMIT notificationPosted(name, object);
}
