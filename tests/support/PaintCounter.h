#pragma once

#include <QEvent>
#include <QObject>
#include <QWidget>

// Counts the paint events a widget receives.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget *widget)
        : QObject(widget)
    {
        widget->installEventFilter(this);
    }

    int count() const { return m_count; }
    void reset() { m_count = 0; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            ++m_count;
        return QObject::eventFilter(watched, event);
    }

private:
    int m_count = 0;
};
