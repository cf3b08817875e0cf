#pragma once

#include <QPoint>
#include <QtGlobal>

// Counts the clicks of a series, as a desktop does: a press soon after the previous one and
// close to it continues the series (2 for a double click, 3 for a triple click, ...).
class EVClickCounter
{
public:
    // The press at the given time (milliseconds) and place; returns its click count. A press
    // the system already knows to be a double click counts at least 2.
    int press(qint64 milliseconds, const QPoint &position, int atLeast = 1);

private:
    qint64 m_lastPress = 0;
    QPoint m_lastPosition;
    int m_count = 0;
};
