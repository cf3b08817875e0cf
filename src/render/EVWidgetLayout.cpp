#include "render/EVWidgetLayout.h"

#include <cmath>
#include <optional>

namespace {

struct Fractions
{
    qreal x;
    qreal y;
    qreal width;
    qreal height;
};

Fractions textFractions(EVWidgetLayout::TextElement element)
{
    switch (element) {
    case EVWidgetLayout::TextElement::Title:
        return {0.13, 0.0, 0.85, 0.2};
    case EVWidgetLayout::TextElement::Date:
        return {0.2, 0.18, 0.75, 0.2};
    case EVWidgetLayout::TextElement::MajorCountdown:
        return {0.23, 0.4, 0.65, 0.4};
    case EVWidgetLayout::TextElement::SecondCountdown:
        break;
    }
    return {0.23, 0.78, 0.65, 0.2};
}

// The box's height less this is the font's size.
constexpr qreal fontSizeInset = 13.0;
// A major line in clock form ("12:30:05") is longer, so its font is this much smaller.
constexpr qreal clockFormReduction = 8.0;
constexpr qreal iconDrop = 10.0;

// A length in whole points, toward zero, as the 32-bit integer the icon sizes are compared as.
std::optional<qint32> wholePoints(qreal length)
{
    if (!(std::abs(length) < 2147483648.0))
        return std::nullopt;
    return static_cast<qint32>(length);
}

} // namespace

QRectF EVWidgetLayout::textBox(TextElement element, const QRectF &bounds, bool withIcon)
{
    const Fractions box = textFractions(element);
    const qreal width = box.width * bounds.width();
    const qreal x =
        withIcon ? bounds.x() + box.x * bounds.width() : bounds.x() + (bounds.width() - width) / 2;
    return QRectF(x, bounds.y() + box.y * bounds.height(), width, box.height * bounds.height());
}

qreal EVWidgetLayout::fontPixelSize(TextElement element, const QRectF &bounds, const QString &text)
{
    const qreal size = textFractions(element).height * bounds.height() - fontSizeInset;
    if (element == TextElement::MajorCountdown && text.contains(QLatin1Char(':')))
        return size - clockFormReduction;
    return size;
}

QRectF EVWidgetLayout::lineRect(const QRectF &box, qreal lineHeight)
{
    return QRectF(box.x(), box.y() + (box.height() - lineHeight) / 2, box.width(), lineHeight);
}

QRectF EVWidgetLayout::iconColumn(const QRectF &bounds)
{
    return QRectF(bounds.x() + 0.06 * bounds.width(), bounds.y(), 0.15 * bounds.width(),
                  bounds.height());
}

QRectF EVWidgetLayout::iconRect(const QRectF &bounds, const QSizeF &iconSize)
{
    const QRectF column = iconColumn(bounds);
    QRectF drawn = column;
    if (wholePoints(column.width()) != wholePoints(iconSize.width()) ||
        wholePoints(column.height()) != wholePoints(iconSize.height())) {
        const qreal heightRatio = column.height() / iconSize.height();
        const qreal widthRatio = column.width() / iconSize.width();
        const QSizeF fitted = heightRatio > widthRatio
                                  ? QSizeF(column.width(), iconSize.height() * widthRatio)
                                  : QSizeF(iconSize.width() * heightRatio, column.height());
        drawn = QRectF(column.x() + (column.width() - fitted.width()) / 2,
                       column.y() + (column.height() - fitted.height()) / 2, fitted.width(),
                       fitted.height());
    }
    return drawn.translated(0, iconDrop);
}
