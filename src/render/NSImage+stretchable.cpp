#include "render/NSImage+stretchable.h"

#include "render/EVTransparentPicture.h"

#include <QPainter>

#include <array>
#include <cmath>

namespace {

// The grid of a rectangle by the insets, row by row from the top-left corner.
std::array<QRectF, 9> ninePartDivision(const QRectF &rect, const QMarginsF &insets)
{
    const qreal left = rect.x();
    const qreal middle = rect.x() + insets.left();
    const qreal right = rect.x() + rect.width() - insets.right();
    const qreal top = rect.y();
    const qreal centre = rect.y() + insets.top();
    const qreal bottom = rect.y() + rect.height() - insets.bottom();
    const qreal middleWidth = rect.width() - insets.left() - insets.right();
    const qreal centreHeight = rect.height() - insets.top() - insets.bottom();
    return {
        QRectF(left, top, insets.left(), insets.top()),
        QRectF(middle, top, middleWidth, insets.top()),
        QRectF(right, top, insets.right(), insets.top()),
        QRectF(left, centre, insets.left(), centreHeight),
        QRectF(middle, centre, middleWidth, centreHeight),
        QRectF(right, centre, insets.right(), centreHeight),
        QRectF(left, bottom, insets.left(), insets.bottom()),
        QRectF(middle, bottom, middleWidth, insets.bottom()),
        QRectF(right, bottom, insets.right(), insets.bottom()),
    };
}

bool hasArea(const QRectF &rect)
{
    return std::isfinite(rect.x()) && std::isfinite(rect.y()) && std::isfinite(rect.width()) &&
           std::isfinite(rect.height()) && rect.width() > 0 && rect.height() > 0;
}

QRect wholePixels(const QRectF &rect)
{
    const auto x = static_cast<int>(std::lround(rect.x()));
    const auto y = static_cast<int>(std::lround(rect.y()));
    return QRect(x, y, static_cast<int>(std::lround(rect.x() + rect.width())) - x,
                 static_cast<int>(std::lround(rect.y() + rect.height())) - y);
}

// Cuts sourcePart out of source, scales it to slot's size and draws it there once.
void placePart(QPainter &painter, const QImage &source, const QRectF &sourcePart,
               const QRectF &slot)
{
    if (!hasArea(sourcePart) || !hasArea(slot))
        return;
    const QRect cut = wholePixels(sourcePart);
    const QSize slotPixels = EVTransparentPicture::pixelSize(slot.size());
    if (cut.isEmpty() || slotPixels.isEmpty())
        return;
    const QImage part =
        source.copy(cut).scaled(slotPixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    painter.drawImage(slot, part);
}

} // namespace

namespace NSImageStretchable {

QImage drawStretchableInRect(const QImage &image, const QRectF &rect, const QMarginsF &edgeInsets)
{
    QImage result = EVTransparentPicture::ofSize(rect.size());
    if (result.isNull() || image.isNull())
        return result;
    const std::array<QRectF, 9> sourceParts =
        ninePartDivision(QRectF(QPointF(0, 0), QSizeF(image.size())), edgeInsets);
    const std::array<QRectF, 9> slots = ninePartDivision(rect, edgeInsets);
    QPainter painter(&result);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (std::size_t part = 0; part < sourceParts.size(); ++part)
        placePart(painter, image, sourceParts[part], slots[part]);
    return result;
}

QImage image(const QImage &strip, float leftCapWidth, float middleWidth, float rightCapWidth)
{
    const auto sourceWidth = static_cast<float>(strip.width());
    const auto height = static_cast<float>(strip.height());
    const float middleSourceWidth = sourceWidth - (leftCapWidth + rightCapWidth);
    const float width = middleWidth + leftCapWidth + rightCapWidth;
    QImage result = EVTransparentPicture::ofSize(QSizeF(width, height));
    if (result.isNull())
        return result;
    QPainter painter(&result);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    placePart(painter, strip, QRectF(0, 0, leftCapWidth, height),
              QRectF(0, 0, leftCapWidth, height));
    placePart(painter, strip, QRectF(leftCapWidth, 0, middleSourceWidth, height),
              QRectF(leftCapWidth, 0, middleWidth, height));
    placePart(painter, strip, QRectF(sourceWidth - rightCapWidth, 0, rightCapWidth, height),
              QRectF(width - rightCapWidth, 0, rightCapWidth, height));
    return result;
}

} // namespace NSImageStretchable
