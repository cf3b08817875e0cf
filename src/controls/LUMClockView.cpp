#include "controls/LUMClockView.h"

#include <QPainter>

LUMClockView::LUMClockView(QWidget *parent)
    : QWidget(parent)
{}

void LUMClockView::setTime(const QTime &time)
{
    if (!time.isValid() || time == m_time)
        return;
    m_time = time;
    update();
}

void LUMClockView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal side = qMin(width(), height()) - 2;
    painter.translate(width() / 2.0, height() / 2.0);
    painter.scale(side / 100.0, side / 100.0);

    const QPalette &colors = palette();
    const QColor ink = colors.color(QPalette::WindowText);
    painter.setPen(QPen(colors.color(QPalette::Mid), 1.5));
    painter.setBrush(colors.color(QPalette::Base));
    painter.drawEllipse(QPointF(0, 0), 49, 49);

    for (int tick = 0; tick < 12; ++tick) {
        painter.setPen(QPen(ink, tick % 3 == 0 ? 3 : 1.5, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(0, -43), QPointF(0, tick % 3 == 0 ? -36 : -39));
        painter.rotate(30);
    }

    const auto hand = [&painter](qreal degrees, qreal length, const QPen &pen) {
        painter.save();
        painter.rotate(degrees);
        painter.setPen(pen);
        painter.drawLine(QPointF(0, 6), QPointF(0, -length));
        painter.restore();
    };
    const qreal seconds = m_time.second();
    const qreal minutes = m_time.minute() + seconds / 60;
    const qreal hours = m_time.hour() % 12 + minutes / 60;
    hand(hours * 30, 24, QPen(ink, 4, Qt::SolidLine, Qt::RoundCap));
    hand(minutes * 6, 36, QPen(ink, 2.5, Qt::SolidLine, Qt::RoundCap));
    hand(seconds * 6, 40, QPen(QColor(0xd9, 0x47, 0x3c), 1, Qt::SolidLine, Qt::RoundCap));
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    painter.drawEllipse(QPointF(0, 0), 2.5, 2.5);
}
