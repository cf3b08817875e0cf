#pragma once

#include <QColor>
#include <QPointF>

class QPainter;
class QPainterPath;

// A soft shadow cast by a filled shape: the shape in the shadow's colour, blurred by the blur
// radius and moved by the offset, painted before the shape itself so that the shape covers it.
class EVShadow
{
public:
    EVShadow(const QColor &color, double blurRadius, const QPointF &offset = QPointF());

    void drawForPath(QPainter &painter, const QPainterPath &path) const;

private:
    QColor m_color;
    double m_blurRadius;
    QPointF m_offset;
};
