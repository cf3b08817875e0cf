#include "prefs/ImageBrowserView.h"

#include "prefs/ImageBrowserBackgroundLayer.h"
#include "prefs/ImageBrowserCell.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

ImageBrowserView::ImageBrowserView(QWidget *parent)
    : QListView(parent)
{
    setViewMode(QListView::IconMode);
    setMovement(QListView::Static);
    setResizeMode(QListView::Adjust);
    setFlow(QListView::LeftToRight);
    setWrapping(true);
    setUniformItemSizes(true);
    setGridSize(cellSize);
    setIconSize(thumbnailSize);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setDragEnabled(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    verticalScrollBar()->setSingleStep(cellSize.height() / 4);
    setItemDelegate(new ImageBrowserCell(this));
}

void ImageBrowserView::setBackgroundLayer(ImageBrowserBackgroundLayer *layer)
{
    if (layer == m_backgroundLayer)
        return;
    delete m_backgroundLayer;
    m_backgroundLayer = layer;
    if (m_backgroundLayer)
        m_backgroundLayer->setParent(this);
    viewport()->update();
}

QList<int> ImageBrowserView::selectionIndexes() const
{
    QList<int> indexes;
    if (!selectionModel())
        return indexes;
    const QModelIndexList selected = selectionModel()->selectedIndexes();
    for (const QModelIndex &index : selected)
        indexes.append(index.row());
    std::sort(indexes.begin(), indexes.end());
    return indexes;
}

void ImageBrowserView::setSelectionIndexes(const QList<int> &indexes, bool byExtendingSelection)
{
    if (!model() || !selectionModel())
        return;
    QItemSelection selection;
    for (int row : indexes) {
        const QModelIndex index = model()->index(row, 0);
        if (index.isValid())
            selection.select(index, index);
    }
    selectionModel()->select(selection, byExtendingSelection ? QItemSelectionModel::Select
                                                             : QItemSelectionModel::ClearAndSelect);
    if (!indexes.isEmpty())
        selectionModel()->setCurrentIndex(model()->index(indexes.last(), 0),
                                          QItemSelectionModel::NoUpdate);
}

void ImageBrowserView::scrollIndexToVisible(int index)
{
    if (model())
        scrollTo(model()->index(index, 0));
}

QRect ImageBrowserView::visibleRect() const
{
    return QRect(QPoint(horizontalOffset(), verticalOffset()), viewport()->size());
}

void ImageBrowserView::paintEvent(QPaintEvent *event)
{
    if (m_backgroundLayer) {
        // The background is made again only when another part of the content is on screen.
        const QRect visible = visibleRect();
        if (visible != m_lastVisibleRect) {
            m_backgroundLayer->setNeedsDisplay();
            m_lastVisibleRect = visible;
        }
        const QRect bounds(QPoint(0, 0), contentsSize().expandedTo(viewport()->size()));
        QPainter painter(viewport());
        m_backgroundLayer->draw(painter, visible, bounds);
    }
    QListView::paintEvent(event);
}

void ImageBrowserView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace) {
        Q_EMIT removeItemsRequested(selectionIndexes());
        return;
    }
    QListView::keyPressEvent(event);
}

void ImageBrowserView::selectionChanged(const QItemSelection &selected,
                                        const QItemSelection &deselected)
{
    QListView::selectionChanged(selected, deselected);
    Q_EMIT selectionDidChange();
}
