#pragma once

#include <QColor>
#include <QStyledItemDelegate>

// Draws one item of the style browser: the thumbnail, its title under it, and round both a
// pink frame with a white border while the item is selected.
class ImageBrowserCell : public QStyledItemDelegate
{
    Q_OBJECT

public:
    static constexpr qreal selectionBorderWidth = 2.0;
    static QColor selectionBackgroundColor() { return QColor::fromRgbF(1.0f, 0.0f, 0.5f, 0.1f); }
    static QColor selectionBorderColor() { return QColor(Qt::white); }

    using QStyledItemDelegate::QStyledItemDelegate;

    // Where the thumbnail goes in a cell.
    static QRect imageFrame(const QRect &cellFrame);
    // Where the title goes in a cell.
    static QRect titleFrame(const QRect &cellFrame);
    // The selection frame: the cell's width, from 8 points above the thumbnail to 20 below it.
    static QRect myBackgroundFrame(const QRect &cellFrame, const QRect &imageFrame);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
