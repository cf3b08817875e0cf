#pragma once

#include <QList>
#include <QListView>
#include <QRect>

class ImageBrowserBackgroundLayer;

// A grid of thumbnails over a tiled background, as the style browser shows them. More than
// one item can be selected; Delete asks for the selected items to be removed.
class ImageBrowserView : public QListView
{
    Q_OBJECT

public:
    // One cell of the grid, and the thumbnail's size in it.
    static constexpr QSize cellSize{84, 80};
    static constexpr QSize thumbnailSize{60, 40};

    explicit ImageBrowserView(QWidget *parent = nullptr);

    // Takes the layer over and draws it under the thumbnails; none draws the plain base.
    void setBackgroundLayer(ImageBrowserBackgroundLayer *layer);
    ImageBrowserBackgroundLayer *backgroundLayer() const { return m_backgroundLayer; }

    // The selected items, in ascending order.
    QList<int> selectionIndexes() const;
    // Selects exactly the items, or adds them to the selection.
    void setSelectionIndexes(const QList<int> &indexes, bool byExtendingSelection);
    void scrollIndexToVisible(int index);

    // The part of the content shown when the background was last drawn.
    QRect lastVisibleRect() const { return m_lastVisibleRect; }
    // The part of the content on screen now, in the content's coordinates.
    QRect visibleRect() const;

Q_SIGNALS:
    // The user asked to delete the selected items (the indexes of the selection then).
    void removeItemsRequested(const QList<int> &indexes);
    // The selection changed, by the user or by the program.
    void selectionDidChange();

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void selectionChanged(const QItemSelection &selected,
                          const QItemSelection &deselected) override;

private:
    ImageBrowserBackgroundLayer *m_backgroundLayer = nullptr;
    QRect m_lastVisibleRect;
};
