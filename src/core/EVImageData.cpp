#include "core/EVImageData.h"

#include <QBuffer>
#include <QHash>
#include <QImageWriter>

namespace EVImageData {

QByteArray tiffRepresentation(const QImage &image)
{
    if (image.isNull())
        return QByteArray();
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "tiff");
    if (!writer.write(image))
        return QByteArray();
    return data;
}

QImage sharedImage(const QByteArray &data)
{
    if (data.isNull())
        return QImage();
    static QHash<QByteArray, QImage> inUse;
    const auto found = inUse.constFind(data);
    if (found != inUse.constEnd())
        return *found;
    // A picture held by nobody but this table is no longer in use.
    inUse.removeIf(
        [](QHash<QByteArray, QImage>::iterator kept) { return kept.value().isDetached(); });
    const QImage image = QImage::fromData(data);
    if (!image.isNull())
        inUse.insert(data, image);
    return image;
}

} // namespace EVImageData
