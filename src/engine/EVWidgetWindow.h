#pragma once

#include "engine/EVClickCounter.h"

#include <QPoint>
#include <QWidget>

// The borderless, see-through desktop window of one widget. It shows on every workspace, stays
// out of task bars and pagers, stacks under, above or among ordinary windows, and can be
// dragged by its body while it is movable.
class EVWidgetWindow : public QWidget
{
    Q_OBJECT

public:
    enum class Level { Below, Normal, Above };

    explicit EVWidgetWindow(QWidget *parent = nullptr);

    bool isMovable() const { return m_movable; }
    void setMovable(bool movable);

    Level level() const { return m_level; }
    void setLevel(Level level);

Q_SIGNALS:
    // Every press of the left button, with its place in a series of clicks (2 = double click).
    void mouseDown(int clickCount);

protected:
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    void applyLevel();
    void updateCornerMask();
    void press(QMouseEvent *event, int atLeastClicks);

    bool m_movable = true;
    Level m_level = Level::Below;
    EVClickCounter m_clicks;
    bool m_pressed = false;
    quint64 m_pressTimestamp = 0;
    QPoint m_pressPosition;
    QPoint m_pressOffset;
    bool m_dragging = false;
};
