#pragma once

#include "platform/EVNotificationBus.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

// Keeps every named notification of one name posted while it exists.
class NotificationRecorder : public QObject
{
public:
    explicit NotificationRecorder(const QString &name)
        : m_name(name)
    {
        connect(EVNotificationBus::defaultCenter(), &EVNotificationBus::notificationPosted, this,
                [this](const QString &posted, QObject *object) {
                    if (posted == m_name)
                        m_objects.append(object);
                });
    }

    qsizetype count() const { return m_objects.size(); }
    QObject *objectAt(qsizetype i) const { return m_objects.at(i); }

private:
    QString m_name;
    QList<QPointer<QObject>> m_objects;
};
