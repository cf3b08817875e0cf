#include "render/EVTallyView.h"

#include "render/EVTransparentPicture.h"
#include "store/EVCustomStyle.h"
#include "store/EVWidgetEntry.h"

#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <cmath>

namespace {

// The alphas are single-precision values (0.949999988079071 and 0.699999988079071 once
// widened); QColor takes them as they are.
constexpr float opaqueAlpha = 1.0f;
constexpr float translucentThumbnailAlpha = 0.95f;
constexpr float translucentBackgroundAlpha = 0.7f;

struct BuiltinStyle
{
    float red;
    float green;
    float blue;
    bool translucent;
};

// Style 9 is the gradient; its row is never read.
constexpr BuiltinStyle builtinStyles[EVTallyView::builtinStyleCount] = {
    {0.1f, 0.1f, 0.1f, true},     {0.0f, 0.2f, 0.25f, true},
    {0.1f, 0.1f, 0.1f, false},    {0.2f, 0.0f, 0.0f, true},
    {0.05f, 0.2f, 0.05f, true},   {0.7f, 0.7f, 0.0f, false},
    {0.25f, 0.15f, 0.65f, false}, {1.0f, 64.0f / 255.0f, 1.0f, true},
    {0.4f, 0.4f, 0.4f, false},    {0.0f, 0.0f, 0.0f, false},
    {0.5f, 0.7f, 0.0f, false},    {118.0f / 255.0f, 77.0f / 255.0f, 36.0f / 255.0f, true},
};

enum class BuiltinUse { Thumbnail, Background };

bool isSolidBuiltinStyle(quint64 style)
{
    return style < EVTallyView::builtinStyleCount && style != EVTallyView::gradientStyle;
}

QPainterPath roundedShape(const QSize &size)
{
    QPainterPath shape;
    shape.addRoundedRect(QRectF(QPointF(0, 0), QSizeF(size)), EVTallyView::cornerRadius,
                         EVTallyView::cornerRadius);
    return shape;
}

// Grey at a bright spot three quarters of the way up from the middle, black at the circle that
// encloses the picture.
QRadialGradient gradientStyle(const QSize &size)
{
    const QRectF bounds(QPointF(0, 0), QSizeF(size));
    const QPointF brightSpot(bounds.center().x(), bounds.center().y() - 0.75 * bounds.height() / 2);
    const qreal rimRadius = std::hypot(bounds.width(), bounds.height()) / 2;
    QRadialGradient gradient(bounds.center(), rimRadius, brightSpot);
    gradient.setColorAt(0.0, QColor::fromRgbF(0.35f, 0.35f, 0.35f, opaqueAlpha));
    gradient.setColorAt(1.0, QColor::fromRgbF(0.0f, 0.0f, 0.0f, opaqueAlpha));
    return gradient;
}

QImage drawBuiltinStyle(quint64 style, const QSizeF &size, BuiltinUse use)
{
    QImage picture = EVTransparentPicture::ofSize(size);
    if (picture.isNull())
        return picture;
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPainterPath shape = roundedShape(picture.size());
    if (isSolidBuiltinStyle(style)) {
        const BuiltinStyle &colors = builtinStyles[style];
        const float translucentAlpha =
            use == BuiltinUse::Thumbnail ? translucentThumbnailAlpha : translucentBackgroundAlpha;
        const float alpha = colors.translucent ? translucentAlpha : opaqueAlpha;
        painter.fillPath(shape, QColor::fromRgbF(colors.red, colors.green, colors.blue, alpha));
    } else {
        painter.fillPath(shape, gradientStyle(picture.size()));
    }
    return picture;
}

// Keyed by the style number's low 32 bits, never by size, and never emptied.
QImage cachedBuiltinStyle(QHash<qint32, QImage> &cache, quint64 style, const QSizeF &size,
                          BuiltinUse use)
{
    const auto key = static_cast<qint32>(static_cast<quint32>(style));
    const auto cached = cache.constFind(key);
    if (cached != cache.constEnd())
        return *cached;
    const QImage picture = drawBuiltinStyle(style, size, use);
    // An empty request (a view not laid out yet) must not fix the style as empty for good.
    if (!picture.isNull())
        cache.insert(key, picture);
    return picture;
}

} // namespace

QImage EVTallyView::imageForStyle(quint64 style, const QSizeF &size)
{
    static QHash<qint32, QImage> thumbnails;
    return cachedBuiltinStyle(thumbnails, style, size, BuiltinUse::Thumbnail);
}

QImage EVTallyView::buildinBackgroundForStyle(quint64 style, const QSizeF &size)
{
    static QHash<qint32, QImage> backgrounds;
    return cachedBuiltinStyle(backgrounds, style, size, BuiltinUse::Background);
}

QImage EVTallyView::createBackgroundFromColorOrImage(const ColorOrImage &colorOrImage,
                                                     const QSizeF &size)
{
    QImage picture = EVTransparentPicture::ofSize(size);
    if (picture.isNull())
        return picture;
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPainterPath shape = roundedShape(picture.size());
    if (const auto *color = std::get_if<QColor>(&colorOrImage)) {
        if (color->isValid())
            painter.fillPath(shape, *color);
    } else if (const auto *image = std::get_if<QImage>(&colorOrImage)) {
        // Filling the shape with the stretched picture clips it with smooth corners.
        if (!image->isNull())
            painter.fillPath(shape, QBrush(image->scaled(picture.size(), Qt::IgnoreAspectRatio,
                                                         Qt::SmoothTransformation)));
    }
    return picture;
}

QImage EVTallyView::imageFromColorOrImage(const ColorOrImage &colorOrImage, float alpha,
                                          const QSizeF &size)
{
    const QImage opaque = createBackgroundFromColorOrImage(colorOrImage, size);
    QImage thumbnail = EVTransparentPicture::ofSize(size);
    if (thumbnail.isNull())
        return thumbnail;
    QPainter painter(&thumbnail);
    painter.setOpacity(alpha);
    painter.drawImage(0, 0, opaque);
    return thumbnail;
}

EVTallyView::ColorOrImage EVTallyView::colorOrImageOfCustomStyle(EVCustomStyle &style)
{
    if (style.type() != 0)
        return QImage::fromData(style.imageData());
    return style.color();
}

EVBackgroundImage EVTallyView::backgroundImageForWidget(const EVWidgetEntry &entry,
                                                        const QSizeF &size)
{
    const int styleIndex = entry.styleIndex();
    if (styleIndex < builtinStyleCount) {
        // Negative numbers read as large unsigned ones and give the gradient, as numbers above
        // 11 do.
        const auto style = static_cast<quint64>(static_cast<qint64>(styleIndex));
        return EVBackgroundImage(buildinBackgroundForStyle(style, size), 1.0);
    }
    EVCustomStyle *style = customStyleOfWidget(entry);
    if (!style)
        return EVBackgroundImage();
    return EVBackgroundImage(
        createBackgroundFromColorOrImage(colorOrImageOfCustomStyle(*style), size),
        static_cast<double>(style->opacity()));
}

EVCustomStyle *EVTallyView::customStyleOfWidget(const EVWidgetEntry &entry)
{
    const qsizetype position = qsizetype(entry.styleIndex()) - builtinStyleCount;
    const QList<EVCustomStyle *> &styles = entry.customStyles();
    if (position < 0 || position >= styles.size())
        return nullptr;
    return styles.at(position);
}

QImage EVTallyView::thumbnailForCustomStyle(EVCustomStyle &style, const QSizeF &size)
{
    return imageFromColorOrImage(colorOrImageOfCustomStyle(style), style.opacity(), size);
}
