#include "render/EVTransparentPicture.h"

#include <cmath>

namespace {
// Far above any screen, far below what would exhaust memory by accident.
constexpr double largestSide = 16384.0;

int wholePixels(double length)
{
    if (!std::isfinite(length) || length < 0.5 || length > largestSide)
        return 0;
    return static_cast<int>(std::lround(length));
}
} // namespace

namespace EVTransparentPicture {

QSize pixelSize(const QSizeF &size)
{
    const QSize pixels(wholePixels(size.width()), wholePixels(size.height()));
    return pixels.isEmpty() ? QSize() : pixels;
}

QImage ofSize(const QSizeF &size)
{
    const QSize pixels = pixelSize(size);
    if (pixels.isEmpty())
        return QImage();
    QImage picture(pixels, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    return picture;
}

} // namespace EVTransparentPicture
