#include "core/EVClock.h"

namespace {
QDateTime &pinnedInstant()
{
    static QDateTime instant;
    return instant;
}
} // namespace

QDateTime EVClock::now()
{
    const QDateTime &pinned = pinnedInstant();
    return pinned.isValid() ? pinned : QDateTime::currentDateTime();
}

qint64 EVClock::nowMSecsSinceEpoch()
{
    const QDateTime &pinned = pinnedInstant();
    return pinned.isValid() ? pinned.toMSecsSinceEpoch() : QDateTime::currentMSecsSinceEpoch();
}

void EVClock::pin(const QDateTime &instant)
{
    pinnedInstant() = instant;
}

void EVClock::advance(qint64 milliseconds)
{
    QDateTime &pinned = pinnedInstant();
    if (pinned.isValid())
        pinned = pinned.addMSecs(milliseconds);
}

void EVClock::unpin()
{
    pinnedInstant() = QDateTime();
}
