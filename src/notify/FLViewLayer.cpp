#include "notify/FLViewLayer.h"

#include <QPainter>

FLViewLayer::FLViewLayer(const QSizeF &bounds, QObject *parent)
    : QGraphicsEffect(parent)
    , m_bounds(bounds)
    , m_position(bounds.width() / 2, bounds.height() / 2)
{}

void FLViewLayer::setAnchorPoint(const QPointF &anchorPoint)
{
    m_anchorPoint = anchorPoint;
    changed();
}

void FLViewLayer::setPosition(const QPointF &position)
{
    m_position = position;
    changed();
}

void FLViewLayer::setRotationX(qreal radians)
{
    m_rotationX = radians;
    changed();
}

void FLViewLayer::changed()
{
    update();
    Q_EMIT transformChanged(transform());
}

QTransform FLViewLayer::transform() const
{
    // Read from the last step to the first: the anchor goes to the origin, the layer turns
    // there, and the anchor goes to its position.
    QTransform transform;
    transform.translate(m_position.x(), m_position.y());
    transform.rotateRadians(m_rotationX, Qt::XAxis);
    transform.translate(-m_anchorPoint.x() * m_bounds.width(),
                        -m_anchorPoint.y() * m_bounds.height());
    return transform;
}

void FLViewLayer::draw(QPainter *painter)
{
    const QTransform layerTransform = transform();
    // Edge-on, the layer covers no area at all.
    if (!layerTransform.isInvertible())
        return;
    QPoint offset;
    const QPixmap content = sourcePixmap(Qt::LogicalCoordinates, &offset, QGraphicsEffect::NoPad);
    painter->save();
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->setTransform(layerTransform, true);
    painter->drawPixmap(offset, content);
    painter->restore();
}
