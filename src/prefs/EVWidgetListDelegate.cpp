#include "prefs/EVWidgetListDelegate.h"

#include "prefs/EVWidgetListModel.h"

#include <QApplication>
#include <QImage>
#include <QPainter>

QRect EVWidgetListDelegate::previewRect(const QSize &picture, const QRect &cell)
{
    const QRect room = cell.adjusted(previewMargin, previewMargin, -previewMargin, -previewMargin);
    if (picture.isEmpty() || room.isEmpty())
        return QRect();
    QSize size = picture;
    if (size.width() > room.width() || size.height() > room.height())
        size.scale(room.size(), Qt::KeepAspectRatio);
    QRect rect(QPoint(), size);
    rect.moveCenter(room.center());
    return rect;
}

void EVWidgetListDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                 const QModelIndex &index) const
{
    if (index.column() != EVWidgetListModel::PreviewColumn) {
        QStyleOptionViewItem centred = option;
        centred.displayAlignment = Qt::AlignLeft | Qt::AlignVCenter;
        centred.textElideMode = Qt::ElideRight;
        QStyledItemDelegate::paint(painter, centred, index);
        return;
    }
    // The row's background and selection, then the picture over it.
    // The picture is taken once per paint: the item's own options would take a second one.
    QStyleOptionViewItem background = option;
    background.index = index;
    background.text.clear();
    background.icon = QIcon();
    background.features &=
        ~(QStyleOptionViewItem::HasDecoration | QStyleOptionViewItem::HasDisplay);
    const QWidget *widget = option.widget;
    QStyle *style = widget ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &background, painter, widget);

    const QImage picture = index.data(Qt::DecorationRole).value<QImage>();
    const QRect target = previewRect(picture.size(), option.rect);
    if (target.isEmpty())
        return;
    painter->save();
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawImage(target, picture);
    painter->restore();
}

QSize EVWidgetListDelegate::sizeHint(const QStyleOptionViewItem &option,
                                     const QModelIndex &index) const
{
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(EVWidgetListModel::rowHeight);
    return size;
}
