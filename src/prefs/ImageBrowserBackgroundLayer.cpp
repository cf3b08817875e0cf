#include "prefs/ImageBrowserBackgroundLayer.h"

#include <QImageReader>
#include <QPainter>

#include <cmath>

QImage ImageBrowserBackgroundLayer::tile()
{
    static const QImage loaded = [] {
        // The first picture of the file.
        QImageReader reader(QStringLiteral(":/images/metal_background.tif"));
        return reader.read();
    }();
    return loaded;
}

QList<QRectF> ImageBrowserBackgroundLayer::tileRects(const QSizeF &tileSize, const QRectF &visible,
                                                     const QRectF &bounds)
{
    QList<QRectF> rects;
    const float tw = float(tileSize.width());
    const float th = float(tileSize.height());
    if (tw <= 0 || th <= 0)
        return rects;
    // Counted upwards from the content's bottom, the visible part's top is
    // bounds.height - (visible.y + visible.height); the same distance counted downwards from
    // the content's top is how far the content has scrolled.
    const float scrolled = float(visible.top() - bounds.top());
    const float offset = std::fmod(scrolled, th);
    for (float y = -offset; y < float(visible.height()); y += th) {
        for (float x = 0; x < float(visible.x() + visible.width()); x += tw)
            rects.append(QRectF(x, y, tw, th));
    }
    return rects;
}

void ImageBrowserBackgroundLayer::draw(QPainter &painter, const QRectF &visible,
                                       const QRectF &bounds)
{
    const QSize size = visible.size().toSize();
    if (size.isEmpty())
        return;
    if (m_needsDisplay || m_contents.size() != size) {
        m_contents = QPixmap(size);
        m_contents.fill(Qt::transparent);
        const QImage picture = tile();
        if (!picture.isNull()) {
            QPainter tiles(&m_contents);
            for (const QRectF &rect : tileRects(picture.size(), visible, bounds))
                tiles.drawImage(rect, picture);
        }
        m_needsDisplay = false;
    }
    painter.drawPixmap(0, 0, m_contents);
}
