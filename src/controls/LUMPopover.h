#pragma once

#include <QPointer>
#include <QSize>
#include <QWidget>

class QPainterPath;

// A small window that opens beside a view, with an arrow pointing at it, and closes as soon as
// the user clicks anywhere outside it or presses Escape.
class LUMPopover : public QWidget
{
    Q_OBJECT

public:
    static constexpr int arrowDepth = 8;
    static constexpr int arrowHalfWidth = 8;
    // Room kept between the popover and the edges of the screen.
    static constexpr int screenMargin = 4;

    explicit LUMPopover(QWidget *parent = nullptr);

    // The popover takes the content over; it is shown at contentSize().
    QWidget *contentViewController() const { return m_content; }
    void setContentViewController(QWidget *content);
    QSize contentSize() const { return m_contentSize; }
    void setContentSize(const QSize &size);

    // Opens beside rect (in view's coordinates) at preferredEdge of it, or at the opposite
    // edge when the screen has no room there.
    void showRelativeToRect(const QRect &rect, QWidget *view, Qt::Edge preferredEdge);
    // The edge of the rect the popover opened at.
    Qt::Edge shownEdge() const { return m_edge; }
    // Where the content sits in the popover.
    QRect contentRect() const;

    // A click on this button while the popover is open only closes the popover: the button,
    // which opens it, does not get the click too.
    void setAnchorButton(QWidget *button) { m_anchorButton = button; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    QRect bodyRect() const;
    // The body with its arrow, shrunk by inset on every side.
    QPainterPath outline(qreal inset) const;
    QSize windowSize(Qt::Edge edge) const;
    QRect placement(const QRect &anchor, Qt::Edge edge) const;
    void layoutContent();

    QWidget *m_content = nullptr;
    QSize m_contentSize;
    Qt::Edge m_edge = Qt::RightEdge;
    // Where the arrow's tip is along the side that faces the anchor.
    int m_arrowPosition = 0;
    QPointer<QWidget> m_anchorButton;
};
