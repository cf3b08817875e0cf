#include "engine/EVClickCounter.h"

#include <QGuiApplication>
#include <QStyleHints>

#include <algorithm>

int EVClickCounter::press(qint64 milliseconds, const QPoint &position, int atLeast)
{
    const QStyleHints *hints = QGuiApplication::styleHints();
    const bool continues =
        m_count > 0 && milliseconds - m_lastPress <= hints->mouseDoubleClickInterval() &&
        (position - m_lastPosition).manhattanLength() <= hints->mouseDoubleClickDistance();
    m_count = std::max(continues ? m_count + 1 : 1, atLeast);
    m_lastPress = milliseconds;
    m_lastPosition = position;
    return m_count;
}
