#pragma once

#include <QImage>
#include <QList>
#include <QObject>
#include <QPixmap>
#include <QPointer>
#include <QRectF>
#include <QWidget>

class QPainter;

// The style browser's background: the brushed-metal tile, repeated over what the browser
// shows and fixed to its content, so that the pattern scrolls along with the thumbnails. It is
// drawn again only when told that it needs to be.
class ImageBrowserBackgroundLayer : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // The tile, read once from the application's resources; null when it cannot be read.
    static QImage tile();

    // Where tiles of tileSize go in a layer that covers visible, the part of content bounds
    // that is on screen, in the layer's own coordinates. Rows start at the top of the content
    // and columns at its left edge.
    static QList<QRectF> tileRects(const QSizeF &tileSize, const QRectF &visible,
                                   const QRectF &bounds);

    // The browser whose visible part the layer covers; not owned.
    QWidget *owner() const { return m_owner; }
    void setOwner(QWidget *owner) { m_owner = owner; }

    void setNeedsDisplay() { m_needsDisplay = true; }
    // Draws the layer, covering visible of bounds, at the painter's origin; it is made again
    // first when it needs display or the visible size changed.
    void draw(QPainter &painter, const QRectF &visible, const QRectF &bounds);

private:
    QPointer<QWidget> m_owner;
    QPixmap m_contents;
    bool m_needsDisplay = true;
};
