#include "controls/LUMPopover.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>

namespace {

bool isHorizontal(Qt::Edge edge)
{
    return edge == Qt::LeftEdge || edge == Qt::RightEdge;
}

Qt::Edge opposite(Qt::Edge edge)
{
    switch (edge) {
    case Qt::LeftEdge:
        return Qt::RightEdge;
    case Qt::RightEdge:
        return Qt::LeftEdge;
    case Qt::TopEdge:
        return Qt::BottomEdge;
    case Qt::BottomEdge:
        break;
    }
    return Qt::TopEdge;
}

} // namespace

LUMPopover::LUMPopover(QWidget *parent)
    : QWidget(parent, Qt::Popup)
{
    setAttribute(Qt::WA_WindowPropagation);
    setContentSize(QSize(100, 100));
}

void LUMPopover::setContentViewController(QWidget *content)
{
    if (m_content == content)
        return;
    delete m_content;
    m_content = content;
    if (m_content) {
        m_content->setParent(this);
        m_content->show();
    }
    layoutContent();
}

void LUMPopover::setContentSize(const QSize &size)
{
    m_contentSize = size;
    setFixedSize(windowSize(m_edge));
    layoutContent();
}

QSize LUMPopover::windowSize(Qt::Edge edge) const
{
    // A one-point border round the content, and the arrow on the side that faces the anchor.
    const QSize body = m_contentSize + QSize(2, 2);
    return isHorizontal(edge) ? body + QSize(arrowDepth, 0) : body + QSize(0, arrowDepth);
}

QRect LUMPopover::bodyRect() const
{
    switch (m_edge) {
    case Qt::RightEdge:
        return rect().adjusted(arrowDepth, 0, 0, 0);
    case Qt::LeftEdge:
        return rect().adjusted(0, 0, -arrowDepth, 0);
    case Qt::BottomEdge:
        return rect().adjusted(0, arrowDepth, 0, 0);
    case Qt::TopEdge:
        break;
    }
    return rect().adjusted(0, 0, 0, -arrowDepth);
}

QRect LUMPopover::contentRect() const
{
    return QRect(bodyRect().topLeft() + QPoint(1, 1), m_contentSize);
}

void LUMPopover::layoutContent()
{
    if (m_content)
        m_content->setGeometry(contentRect());
}

QRect LUMPopover::placement(const QRect &anchor, Qt::Edge edge) const
{
    const QSize size = windowSize(edge);
    QPoint topLeft;
    switch (edge) {
    case Qt::RightEdge:
        topLeft = QPoint(anchor.right() + 1, anchor.center().y() - size.height() / 2);
        break;
    case Qt::LeftEdge:
        topLeft = QPoint(anchor.left() - size.width(), anchor.center().y() - size.height() / 2);
        break;
    case Qt::BottomEdge:
        topLeft = QPoint(anchor.center().x() - size.width() / 2, anchor.bottom() + 1);
        break;
    case Qt::TopEdge:
        topLeft = QPoint(anchor.center().x() - size.width() / 2, anchor.top() - size.height());
        break;
    }
    return QRect(topLeft, size);
}

void LUMPopover::showRelativeToRect(const QRect &rect, QWidget *view, Qt::Edge preferredEdge)
{
    const QRect anchor(view->mapToGlobal(rect.topLeft()), rect.size());
    const QScreen *screen = view->screen();
    const QRect room = screen->availableGeometry().adjusted(screenMargin, screenMargin,
                                                            -screenMargin, -screenMargin);
    // The preferred edge, unless the screen cuts the popover there and not at the other one.
    Qt::Edge edge = preferredEdge;
    if (!room.contains(placement(anchor, edge)) && room.contains(placement(anchor, opposite(edge))))
        edge = opposite(edge);
    QRect frame = placement(anchor, edge);
    // Slid along the anchor's side to stay on screen; the arrow keeps pointing at the anchor.
    if (isHorizontal(edge))
        frame.moveTop(
            qBound(room.top(), frame.top(), qMax(room.top(), room.bottom() - frame.height() + 1)));
    else
        frame.moveLeft(
            qBound(room.left(), frame.left(), qMax(room.left(), room.right() - frame.width() + 1)));

    m_edge = edge;
    const int along =
        isHorizontal(edge) ? anchor.center().y() - frame.top() : anchor.center().x() - frame.left();
    const int length = isHorizontal(edge) ? frame.height() : frame.width();
    m_arrowPosition = qBound(arrowHalfWidth + 2, along, length - arrowHalfWidth - 2);

    setFixedSize(frame.size());
    // The client area itself goes there: a popup has no frame of its own to place.
    setGeometry(frame);
    layoutContent();
    setMask(QRegion(outline(0).toFillPolygon().toPolygon()));
    show();
    // The keyboard goes to the content at once, as it would in any popup.
    if (m_content)
        focusNextPrevChild(true);
}

QPainterPath LUMPopover::outline(qreal inset) const
{
    const QRectF body = QRectF(bodyRect()).adjusted(inset, inset, -inset, -inset);
    QPainterPath path;
    path.addRect(body);
    QPolygonF arrow;
    const qreal position = m_arrowPosition;
    switch (m_edge) {
    case Qt::RightEdge:
        arrow << QPointF(body.left() + 1, position - arrowHalfWidth) << QPointF(inset, position)
              << QPointF(body.left() + 1, position + arrowHalfWidth);
        break;
    case Qt::LeftEdge:
        arrow << QPointF(body.right() - 1, position - arrowHalfWidth)
              << QPointF(width() - inset, position)
              << QPointF(body.right() - 1, position + arrowHalfWidth);
        break;
    case Qt::BottomEdge:
        arrow << QPointF(position - arrowHalfWidth, body.top() + 1) << QPointF(position, inset)
              << QPointF(position + arrowHalfWidth, body.top() + 1);
        break;
    case Qt::TopEdge:
        arrow << QPointF(position - arrowHalfWidth, body.bottom() - 1)
              << QPointF(position, height() - inset)
              << QPointF(position + arrowHalfWidth, body.bottom() - 1);
        break;
    }
    QPainterPath tip;
    tip.addPolygon(arrow);
    tip.closeSubpath();
    return path.united(tip).simplified();
}

void LUMPopover::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillPath(outline(0), palette().color(QPalette::Window));
    // The border runs through the middle of the outermost pixels.
    painter.setPen(QPen(palette().color(QPalette::Dark), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(outline(0.5));
}

void LUMPopover::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

void LUMPopover::mousePressEvent(QMouseEvent *event)
{
    const QPoint global = event->globalPosition().toPoint();
    const bool onAnchorButton =
        m_anchorButton && m_anchorButton->isVisible() &&
        m_anchorButton->rect().contains(m_anchorButton->mapFromGlobal(global));
    setAttribute(Qt::WA_NoMouseReplay, onAnchorButton);
    QWidget::mousePressEvent(event);
}
