#include "notify/QoAnimationUtility.h"

#include "notify/FLViewLayer.h"

#include <QWidget>

void QoAnimationUtility::setAnchorPoint(const QPointF &anchorPoint, QWidget *view)
{
    auto *layer = view ? qobject_cast<FLViewLayer *>(view->graphicsEffect()) : nullptr;
    if (!layer)
        return;
    const qreal width = view->width();
    const qreal height = view->height();
    const QPointF oldAnchor = layer->anchorPoint();
    const QPointF position = layer->position();
    // The position follows the anchor across the bounds, so the drawing stays where it was.
    layer->setPosition(QPointF(position.x() - width * oldAnchor.x() + width * anchorPoint.x(),
                               position.y() - height * oldAnchor.y() + height * anchorPoint.y()));
    layer->setAnchorPoint(anchorPoint);
}
