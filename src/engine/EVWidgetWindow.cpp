#include "engine/EVWidgetWindow.h"

#include "platform/EVDesktopWindowHints.h"
#include "render/EVTallyView.h"

#include <QApplication>
#include <QBitmap>
#include <QMouseEvent>
#include <QPainter>
#include <QWindow>

namespace {
EVDesktopWindowHints::Level hintLevel(EVWidgetWindow::Level level)
{
    switch (level) {
    case EVWidgetWindow::Level::Below:
        return EVDesktopWindowHints::Level::Below;
    case EVWidgetWindow::Level::Above:
        return EVDesktopWindowHints::Level::Above;
    case EVWidgetWindow::Level::Normal:
        break;
    }
    return EVDesktopWindowHints::Level::Normal;
}
} // namespace

EVWidgetWindow::EVWidgetWindow(QWidget *parent)
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint)
{
    // An ordinary window, not a tool window: some window managers hide tool windows while
    // their application is inactive, and a desktop widget must stay. Task bars and pagers are
    // kept out by the workspace hints instead.
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_DeleteOnClose, false);
    setMouseTracking(true);
}

void EVWidgetWindow::setMovable(bool movable)
{
    m_movable = movable;
    if (!movable)
        m_pressed = false;
}

void EVWidgetWindow::setLevel(Level level)
{
    if (m_level == level)
        return;
    m_level = level;
    applyLevel();
}

void EVWidgetWindow::applyLevel()
{
    if (EVDesktopWindowHints::isAvailable()) {
        // Before the native window exists, showEvent() tells the window manager.
        if (windowHandle())
            EVDesktopWindowHints::setLevel(windowHandle(), hintLevel(m_level));
        return;
    }

    // Without X11 hints, Qt's own stacking flags do the job; changing them hides the window.
    Qt::WindowFlags flags =
        windowFlags() & ~(Qt::WindowStaysOnTopHint | Qt::WindowStaysOnBottomHint);
    if (m_level == Level::Above)
        flags |= Qt::WindowStaysOnTopHint;
    else if (m_level == Level::Below)
        flags |= Qt::WindowStaysOnBottomHint;
    if (flags == windowFlags())
        return;
    const bool wasVisible = isVisible();
    setWindowFlags(flags);
    if (wasVisible)
        show();
}

void EVWidgetWindow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    updateCornerMask();
}

void EVWidgetWindow::updateCornerMask()
{
    // Without a compositing manager the see-through corners would show black: the window is
    // cut to the widget's rounded shape instead.
    if (EVDesktopWindowHints::hasCompositingManager()) {
        clearMask();
        return;
    }
    QBitmap shape(size());
    shape.fill(Qt::color0);
    QPainter painter(&shape);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::color1);
    painter.drawRoundedRect(rect(), EVTallyView::cornerRadius, EVTallyView::cornerRadius);
    painter.end();
    setMask(shape);
}

void EVWidgetWindow::showEvent(QShowEvent *event)
{
    updateCornerMask();
    // The native window exists by now but is not mapped yet: the hints reach the window
    // manager before it first places the window.
    EVDesktopWindowHints::applyWorkspaceHints(windowHandle());
    applyLevel();
    QWidget::showEvent(event);
}

void EVWidgetWindow::mousePressEvent(QMouseEvent *event)
{
    press(event, 1);
}

void EVWidgetWindow::mouseDoubleClickEvent(QMouseEvent *event)
{
    // Some paths deliver the second click as a press and a double click, others as a double
    // click alone: it is counted once either way.
    if (m_pressed && event->timestamp() == m_pressTimestamp)
        return;
    press(event, 2);
}

void EVWidgetWindow::press(QMouseEvent *event, int atLeastClicks)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    m_pressed = true;
    m_dragging = false;
    m_pressTimestamp = event->timestamp();
    m_pressPosition = event->globalPosition().toPoint();
    m_pressOffset = m_pressPosition - frameGeometry().topLeft();
    Q_EMIT mouseDown(m_clicks.press(event->timestamp(), m_pressPosition, atLeastClicks));
}

void EVWidgetWindow::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_pressed || !m_movable || !(event->buttons() & Qt::LeftButton))
        return;
    const QPoint global = event->globalPosition().toPoint();
    // The drag starts only past the drag distance, so that clicks never move the widget. The
    // window is moved by hand rather than by the window manager: a move handed over to it
    // starts from where the pointer is then and leaves the grabbed point behind.
    if (!m_dragging &&
        (global - m_pressPosition).manhattanLength() < QApplication::startDragDistance())
        return;
    m_dragging = true;
    move(global - m_pressOffset);
}

void EVWidgetWindow::mouseReleaseEvent(QMouseEvent *event)
{
    Q_UNUSED(event);
    m_pressed = false;
    m_dragging = false;
}
