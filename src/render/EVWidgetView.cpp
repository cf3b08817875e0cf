#include "render/EVWidgetView.h"

#include "core/EVAppImage.h"
#include "core/EVValues.h"
#include "render/EVFontFamily.h"
#include "render/EVTransparentPicture.h"

#include <QFontMetricsF>
#include <QPaintEvent>
#include <QPainter>

#include <optional>

namespace {

using TextElement = EVWidgetLayout::TextElement;

bool isBold(TextElement element)
{
    return element == TextElement::Title || element == TextElement::MajorCountdown;
}

// Whether a text surely fits a width without being laid out: its characters' own advances,
// with room to spare for kerning, stay well inside. Laying out to shorten a text costs more
// than drawing it.
bool fitsSurely(const QString &text, const QFontMetricsF &metrics, qreal width)
{
    qreal advances = 0;
    for (const QChar character : text) {
        if (character.isSurrogate() || character.unicode() >= 0x300)
            return false;
        advances += metrics.horizontalAdvance(character);
    }
    return advances * 1.1 + 2 < width;
}

} // namespace

EVWidgetView::EVWidgetView(QWidget *parent)
    : QWidget(parent)
    , m_textColor(Qt::white)
    , m_textFontName(QStringLiteral("LucidaGrande"))
{}

EVWidgetView::EVWidgetView(const QRectF &frame, QWidget *parent)
    : QWidget(parent)
    , m_icon(EVAppImage::named(QStringLiteral("clock")))
    , m_textColor(Qt::white)
{
    setGeometry(frame.toRect());
}

void EVWidgetView::paintEvent(QPaintEvent *event)
{
    // Each layer over the ones before, each only where it reaches the part being painted: the
    // every-second repaint of a clock countdown draws the background behind the two countdown
    // lines and the lines, and lays out no other text.
    const QRect dirty = event->rect();
    QPainter painter(this);
    drawBackground(painter);
    drawIcon(painter, dirty);
    drawText(painter, TextElement::Title, m_title, dirty);
    drawText(painter, TextElement::Date, m_date, dirty);
    drawText(painter, TextElement::MajorCountdown, m_majorCountdown, dirty);
    drawText(painter, TextElement::SecondCountdown, m_secondCountdown, dirty);
}

QRect EVWidgetView::countdownLinesRect() const
{
    const QRectF bounds(rect());
    const bool withIcon = !m_icon.isNull();
    const QRectF lines =
        EVWidgetLayout::textBox(TextElement::MajorCountdown, bounds, withIcon)
            .united(EVWidgetLayout::textBox(TextElement::SecondCountdown, bounds, withIcon));
    // Glyphs may reach a little past their boxes; the margin takes in what they touch.
    return lines.toAlignedRect().adjusted(-2, -2, 2, 2).intersected(rect());
}

const EVWidgetView::TextFont &EVWidgetView::textFont(TextElement element, const QString &family,
                                                     int pixelSize)
{
    std::optional<TextFont> &kept = m_textFonts[std::size_t(element)];
    const QFont widgetFont = this->font();
    if (kept && isIdentical(kept->family, family) && kept->pixelSize == pixelSize &&
        kept->widgetFont == widgetFont)
        return *kept;
    // Without a family the widget's own font applies.
    QFont font = widgetFont;
    if (!family.isNull()) {
        font = QFont(family);
        font.setPixelSize(pixelSize);
        font.setBold(isBold(element));
    }
    kept = TextFont{family, pixelSize, widgetFont, font, QFontMetricsF(font)};
    return *kept;
}

void EVWidgetView::drawBackground(QPainter &painter) const
{
    const QImage image = m_background.image();
    if (image.isNull())
        return;
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setOpacity(m_background.transparent());
    painter.drawImage(QRectF(rect()), image);
    painter.restore();
}

void EVWidgetView::drawIcon(QPainter &painter, const QRect &dirty)
{
    if (m_icon.isNull())
        return;
    const QRectF target = EVWidgetLayout::iconRect(rect(), m_icon.deviceIndependentSize());
    if (!target.intersects(QRectF(dirty)))
        return;
    // Scaled beforehand with area averaging: a large icon drawn small stays smooth.
    const qreal pixelRatio = painter.device()->devicePixelRatioF();
    const QSize pixels = EVTransparentPicture::pixelSize(target.size() * pixelRatio);
    if (m_scaledIcon.icon != m_icon.cacheKey() || m_scaledIcon.pixels != pixels ||
        m_scaledIcon.pixelRatio != pixelRatio) {
        QImage scaled = m_icon.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        scaled.setDevicePixelRatio(pixelRatio);
        m_scaledIcon = {m_icon.cacheKey(), pixels, pixelRatio, scaled};
    }
    if (m_scaledIcon.image.isNull())
        return;
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, m_scaledIcon.image);
    painter.restore();
}

void EVWidgetView::drawText(QPainter &painter, TextElement element, const QString &text,
                            const QRect &dirty)
{
    if (text.isNull())
        return;
    const QRectF bounds(rect());
    const QRectF box = EVWidgetLayout::textBox(element, bounds, !m_icon.isNull());

    // Attributes as far as they can be made: without a font the widget's own font and palette
    // apply, without a colour the palette's colour; only with both is the text centred and
    // shortened in the middle when it is too wide.
    const QString family = EVFontFamily::forName(m_textFontName);
    int pixelSize = 0;
    if (!family.isNull()) {
        pixelSize = qRound(EVWidgetLayout::fontPixelSize(element, bounds, text));
        // No font can be that small; asking Qt for one would only warn on every repaint.
        if (pixelSize <= 0)
            return;
    }
    const TextFont &chosen = textFont(element, family, pixelSize);
    const bool withColor = !family.isNull() && m_textColor.isValid();
    const QFontMetricsF &metrics = chosen.metrics;
    // Every line is centred by the title's height, so that all four sit alike.
    const qreal titleHeight = m_title.isEmpty() ? 0.0 : metrics.height();
    const QRectF line = EVWidgetLayout::lineRect(box, titleHeight);
    // Glyphs may reach a little past their line, as past their boxes.
    if (!line.adjusted(-2, -2, 2, 2).intersects(QRectF(dirty)))
        return;

    painter.save();
    painter.setFont(chosen.font);
    painter.setPen(withColor ? m_textColor : palette().color(foregroundRole()));
    // Lines never wrap; with no title the line has no height, and the text is still drawn
    // across its middle.
    int flags = Qt::TextSingleLine | Qt::TextDontClip | Qt::AlignVCenter;
    QString shown = text;
    if (withColor) {
        flags |= Qt::AlignHCenter;
        if (!fitsSurely(text, metrics, box.width()))
            shown = metrics.elidedText(text, Qt::ElideMiddle, box.width());
    } else {
        flags |= Qt::AlignLeft;
    }
    painter.drawText(line, flags, shown);
    painter.restore();
}
