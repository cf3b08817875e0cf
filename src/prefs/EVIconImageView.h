#pragma once

#include <QFrame>
#include <QImage>

class QMenu;

// The widget's icon in a sunken well. A double click, or "Choose..." in its context menu,
// picks a picture file; "Default" puts the clock back and "Clear" leaves no icon. Every change
// of the picture is sent with imageChanged().
class EVIconImageView : public QFrame
{
    Q_OBJECT

public:
    // The width that chosen pictures are scaled down to.
    static constexpr int thumbnailWidth = 200;

    explicit EVIconImageView(QWidget *parent = nullptr);

    QImage image() const { return m_image; }
    // Shows the picture (or none), then sends it with imageChanged().
    void setImage(const QImage &image);
    // Shows the picture without sending anything, as when a widget is selected.
    void showImage(const QImage &image);

    QMenu *contextMenu() const { return m_menu; }

    QSize sizeHint() const override { return QSize(72, 72); }

public Q_SLOTS:
    void onOpen();
    void onReset();
    void onClear();

Q_SIGNALS:
    // The picture changed; a null picture when there is none.
    void imageChanged(const QImage &image);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QMenu *rightMenu();

    QImage m_image;
    QMenu *m_menu;
};
