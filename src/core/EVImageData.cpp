#include "core/EVImageData.h"

#include <QBuffer>
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

} // namespace EVImageData
