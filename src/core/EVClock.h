#pragma once

#include <QDateTime>

// The one source of "now" in the program. Tests pin it to make time-dependent behaviour exact.
class EVClock
{
public:
    static QDateTime now();
    // The same instant in milliseconds since 1970, without the cost of a local time.
    static qint64 nowMSecsSinceEpoch();

    static void pin(const QDateTime &instant);
    static void advance(qint64 milliseconds);
    static void unpin();
};
