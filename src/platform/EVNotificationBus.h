#pragma once

#include <QObject>
#include <QString>

// Names of the notifications that parts of the application post to each other.
inline const QString EVNotificationWidgetDoubleClick =
    QStringLiteral("EVNotificationWidgetDoubleClick");
inline const QString EVNotificationWidgetDidDisplayed =
    QStringLiteral("EVNotificationWidgetDidDisplayed");

// The process-wide bus of named notifications: whoever posts does not know who listens.
class EVNotificationBus : public QObject
{
    Q_OBJECT

public:
    static EVNotificationBus *defaultCenter();

    void postNotificationName(const QString &name, QObject *object = nullptr);

Q_SIGNALS:
    void notificationPosted(const QString &name, QObject *object);

private:
    EVNotificationBus() = default;
};
