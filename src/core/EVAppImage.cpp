#include "core/EVAppImage.h"

#include <QBuffer>
#include <QFile>
#include <QHash>
#include <QImageWriter>
#include <QPainter>
#include <QSvgRenderer>

namespace EVAppImage {

QImage named(const QString &name)
{
    const QString svgPath = QStringLiteral(":/images/%1.svg").arg(name);
    if (QFile::exists(svgPath)) {
        QSvgRenderer renderer(svgPath);
        QImage image(renderer.defaultSize(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        renderer.render(&painter);
        return image;
    }
    return QImage(QStringLiteral(":/images/%1").arg(name));
}

QByteArray tiffDataNamed(const QString &name)
{
    static QHash<QString, QByteArray> cache;
    auto cached = cache.constFind(name);
    if (cached != cache.constEnd())
        return *cached;

    QByteArray data;
    const QImage image = named(name);
    if (!image.isNull()) {
        QBuffer buffer(&data);
        buffer.open(QIODevice::WriteOnly);
        QImageWriter writer(&buffer, "tiff");
        if (!writer.write(image))
            data.clear();
    }
    cache.insert(name, data);
    return data;
}

} // namespace EVAppImage
