#pragma once

#include <QStyledItemDelegate>

// Draws the widget list's rows: the preview picture scaled down to fit its cell, centred and
// never enlarged, and the title centred vertically.
class EVWidgetListDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    // Room left around a preview inside its cell.
    static constexpr int previewMargin = 4;

    // Where a picture of size picture is drawn in the cell rect.
    static QRect previewRect(const QSize &picture, const QRect &cell);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
