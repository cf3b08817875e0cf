#include "prefs/ImageBrowserCell.h"

#include "prefs/ImageBrowserView.h"

#include <QPainter>

QRect ImageBrowserCell::imageFrame(const QRect &cellFrame)
{
    const QSize size = ImageBrowserView::thumbnailSize;
    return QRect(cellFrame.x() + (cellFrame.width() - size.width()) / 2, cellFrame.y() + 10,
                 size.width(), size.height());
}

QRect ImageBrowserCell::titleFrame(const QRect &cellFrame)
{
    const QRect image = imageFrame(cellFrame);
    return QRect(cellFrame.x() + 2, image.bottom() + 3, cellFrame.width() - 4, 16);
}

QRect ImageBrowserCell::myBackgroundFrame(const QRect &cellFrame, const QRect &imageFrame)
{
    return QRect(cellFrame.x(), imageFrame.y() - 8, cellFrame.width(), imageFrame.height() + 28);
}

void ImageBrowserCell::paint(QPainter *painter, const QStyleOptionViewItem &option,
                             const QModelIndex &index) const
{
    const QRect cell = option.rect;
    const QRect image = imageFrame(cell);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (option.state & QStyle::State_Selected) {
        const QRectF frame = QRectF(myBackgroundFrame(cell, image))
                                 .adjusted(selectionBorderWidth / 2, selectionBorderWidth / 2,
                                           -selectionBorderWidth / 2, -selectionBorderWidth / 2);
        painter->setPen(QPen(selectionBorderColor(), selectionBorderWidth));
        painter->setBrush(selectionBackgroundColor());
        painter->drawRect(frame);
    }
    const QImage picture = index.data(Qt::DecorationRole).value<QImage>();
    if (!picture.isNull()) {
        QSize size = picture.size();
        size.scale(image.size(), Qt::KeepAspectRatio);
        QRect target(QPoint(), size);
        target.moveCenter(image.center());
        painter->setRenderHint(QPainter::SmoothPixmapTransform);
        painter->drawImage(target, picture);
    }
    // Titles are white on the dark metal, with a faint shadow that keeps them readable.
    QFont font = option.font;
    font.setPixelSize(11);
    painter->setFont(font);
    const QString title = QFontMetrics(font).elidedText(index.data().toString(), Qt::ElideRight,
                                                        titleFrame(cell).width());
    painter->setPen(QColor(0, 0, 0, 140));
    painter->drawText(titleFrame(cell).translated(0, 1), Qt::AlignHCenter | Qt::AlignTop, title);
    painter->setPen(Qt::white);
    painter->drawText(titleFrame(cell), Qt::AlignHCenter | Qt::AlignTop, title);
    // The keyboard's place in the grid.
    if (option.state & QStyle::State_HasFocus) {
        painter->setPen(QPen(selectionBorderColor(), 1, Qt::DotLine));
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(QRectF(myBackgroundFrame(cell, image)).adjusted(3.5, 3.5, -3.5, -3.5));
    }
    painter->restore();
}

QSize ImageBrowserCell::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return ImageBrowserView::cellSize;
}
