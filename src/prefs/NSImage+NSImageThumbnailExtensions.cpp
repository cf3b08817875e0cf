#include "prefs/NSImage+NSImageThumbnailExtensions.h"

#include <QFileInfo>
#include <QImageReader>
#include <QPainter>

namespace NSImageThumbnailExtensions {

QImage iteThumbnailImageWithContentsOfURL(const QUrl &url, qreal width)
{
    if (!url.isLocalFile())
        return QImage();
    QImageReader reader(url.toLocalFile());
    reader.setAutoTransform(true);
    const QImage loaded = reader.read();
    if (loaded.isNull())
        return QImage();
    if (width > loaded.width())
        return loaded;

    const qreal aspect = qreal(loaded.width()) / loaded.height();
    const QSize size(qRound(width), qMax(1, qRound(width / aspect)));
    QImage scaled(size, QImage::Format_ARGB32_Premultiplied);
    scaled.fill(Qt::transparent);
    QPainter painter(&scaled);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.drawImage(QRect(QPoint(), size), loaded);
    painter.end();
    scaled.setText(QStringLiteral("Description"), QFileInfo(url.toLocalFile()).completeBaseName());
    return scaled;
}

} // namespace NSImageThumbnailExtensions
