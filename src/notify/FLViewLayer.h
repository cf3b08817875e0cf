#pragma once

#include <QGraphicsEffect>
#include <QPointF>
#include <QSizeF>
#include <QTransform>

// What a view is drawn through while it is animated: the view with all its children, turned
// about the horizontal axis through the layer's anchor point, in perspective. Install it with
// QWidget::setGraphicsEffect(); removing it draws the view plainly again.
class FLViewLayer : public QGraphicsEffect
{
    Q_OBJECT
    Q_PROPERTY(qreal rotationX READ rotationX WRITE setRotationX)

public:
    // A layer over a view of that size, anchored at its centre.
    explicit FLViewLayer(const QSizeF &bounds, QObject *parent = nullptr);

    QSizeF bounds() const { return m_bounds; }

    // The point the layer turns about, in fractions of its bounds: (0, 0) is the top-left
    // corner, (0.5, 1) the middle of the bottom edge.
    QPointF anchorPoint() const { return m_anchorPoint; }
    void setAnchorPoint(const QPointF &anchorPoint);

    // Where the anchor point lies in the view's coordinates.
    QPointF position() const { return m_position; }
    void setPosition(const QPointF &position);

    // The turn about the horizontal axis in radians: 0 lies flat, pi/2 is edge-on. A positive
    // angle tips the part above the anchor away from the viewer.
    qreal rotationX() const { return m_rotationX; }
    void setRotationX(qreal radians);

    // Maps the view's points to where the layer draws them.
    QTransform transform() const;

Q_SIGNALS:
    // The layer now draws through another transform.
    void transformChanged(const QTransform &transform);

protected:
    void draw(QPainter *painter) override;

private:
    void changed();

    QSizeF m_bounds;
    QPointF m_anchorPoint{0.5, 0.5};
    QPointF m_position;
    qreal m_rotationX = 0.0;
};
