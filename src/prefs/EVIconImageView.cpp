#include "prefs/EVIconImageView.h"

#include "core/EVOpenPanel.h"
#include "prefs/NSImage+NSImageThumbnailExtensions.h"
#include "core/EVAppImage.h"

#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>

EVIconImageView::EVIconImageView(QWidget *parent)
    : QFrame(parent)
    , m_menu(rightMenu())
{
    setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    setFocusPolicy(Qt::StrongFocus);
    setToolTip(tr("Double-click to choose a picture; right-click for more"));
}

QMenu *EVIconImageView::rightMenu()
{
    auto *menu = new QMenu(QStringLiteral("MainMenu"), this);
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setItalic(true);
    font.setPixelSize(13);
    menu->setFont(font);
    menu->addAction(QStringLiteral("Choose..."), this, &EVIconImageView::onOpen);
    menu->addAction(QStringLiteral("Default"), this, &EVIconImageView::onReset);
    menu->addAction(QStringLiteral("Clear"), this, &EVIconImageView::onClear);
    return menu;
}

void EVIconImageView::setImage(const QImage &image)
{
    showImage(image);
    Q_EMIT imageChanged(m_image);
}

void EVIconImageView::showImage(const QImage &image)
{
    m_image = image;
    update();
}

void EVIconImageView::onOpen()
{
    EVOpenPanel panel;
    panel.title = QStringLiteral("Choose icon picture...");
    panel.allowedFileTypes = {QStringLiteral("png"), QStringLiteral("jpg"), QStringLiteral("jpeg"),
                              QStringLiteral("bmp"), QStringLiteral("tif")};
    panel.canChooseFiles = true;
    panel.canChooseDirectories = false;
    panel.allowsMultipleSelection = false;
    panel.window = window();
    if (panel.runModal() != EVOpenPanel::okButton)
        return;
    // A file that cannot be read leaves no icon, which the widget then shows.
    setImage(NSImageThumbnailExtensions::iteThumbnailImageWithContentsOfURL(panel.URLs().last(),
                                                                            thumbnailWidth));
}

void EVIconImageView::onReset()
{
    setImage(EVAppImage::named(QStringLiteral("clock")));
}

void EVIconImageView::onClear()
{
    setImage(QImage());
}

void EVIconImageView::paintEvent(QPaintEvent *event)
{
    QFrame::paintEvent(event);
    if (m_image.isNull())
        return;
    const QRect room = contentsRect().adjusted(4, 4, -4, -4);
    QSize size = m_image.size();
    if (size.width() > room.width() || size.height() > room.height())
        size.scale(room.size(), Qt::KeepAspectRatio);
    QRect target(QPoint(), size);
    target.moveCenter(room.center());
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, m_image);
}

void EVIconImageView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        onOpen();
}

void EVIconImageView::contextMenuEvent(QContextMenuEvent *event)
{
    m_menu->popup(event->globalPos());
}

void EVIconImageView::keyPressEvent(QKeyEvent *event)
{
    // From the keyboard: Space or Return chooses a picture, Delete clears it.
    switch (event->key()) {
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        onOpen();
        break;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        onClear();
        break;
    default:
        QFrame::keyPressEvent(event);
    }
}
