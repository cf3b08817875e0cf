#include "core/EVAppImage.h"

#include "core/EVImageData.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QPainter>
#include <QSvgRenderer>

namespace EVAppImage {

namespace {

// The artwork's file in the resources: a picture asked for by a raster name ("status_icon.png")
// is drawn from the vector artwork of the same name where there is one.
QString resourcePath(const QString &name)
{
    const QString base = QFileInfo(name).completeBaseName();
    const QString svgPath = QStringLiteral(":/images/%1.svg").arg(base);
    return QFile::exists(svgPath) ? svgPath : QStringLiteral(":/images/%1").arg(name);
}

} // namespace

QImage named(const QString &name)
{
    const QString path = resourcePath(name);
    if (path.endsWith(QLatin1String(".svg"))) {
        QSvgRenderer renderer(path);
        QImage image(renderer.defaultSize(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        renderer.render(&painter);
        return image;
    }
    return QImage(path);
}

QIcon icon(const QString &name)
{
    return QIcon(resourcePath(name));
}

QIcon applicationIcon()
{
    return QIcon(QStringLiteral(":/icons/com.velto.tallyvane.svg"));
}

QByteArray tiffDataNamed(const QString &name)
{
    static QHash<QString, QByteArray> cache;
    auto cached = cache.constFind(name);
    if (cached != cache.constEnd())
        return *cached;

    const QByteArray data = EVImageData::tiffRepresentation(named(name));
    cache.insert(name, data);
    return data;
}

} // namespace EVAppImage
