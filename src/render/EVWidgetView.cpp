#include "render/EVWidgetView.h"

#include "core/EVAppImage.h"
#include "render/EVFontFamily.h"
#include "render/EVTransparentPicture.h"

#include <QFontMetricsF>
#include <QPainter>

#include <optional>

namespace {

using TextElement = EVWidgetLayout::TextElement;

bool isBold(TextElement element)
{
    return element == TextElement::Title || element == TextElement::MajorCountdown;
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

void EVWidgetView::paintEvent(QPaintEvent *)
{
    // Always the whole view, each layer over the ones before. Background, icon, title and date
    // change seldom; they are kept as one picture, so that the every-second repaint of a clock
    // countdown draws only the two countdown lines afresh.
    QPainter painter(this);
    painter.drawImage(QPointF(0, 0), stillLayers(painter.device()->devicePixelRatioF()));
    drawText(painter, TextElement::MajorCountdown, m_majorCountdown);
    drawText(painter, TextElement::SecondCountdown, m_secondCountdown);
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

const QImage &EVWidgetView::stillLayers(qreal pixelRatio)
{
    const StillLayersKey key{m_background.image().cacheKey(),
                             m_background.transparent(),
                             m_icon.cacheKey(),
                             m_title,
                             m_title.isNull(),
                             m_date,
                             m_date.isNull(),
                             m_textColor,
                             m_textFontName,
                             font(),
                             size(),
                             pixelRatio};
    if (m_stillLayersKey && *m_stillLayersKey == key)
        return m_stillLayers;

    m_stillLayers = QImage(EVTransparentPicture::pixelSize(QSizeF(size()) * pixelRatio),
                           QImage::Format_ARGB32_Premultiplied);
    m_stillLayers.setDevicePixelRatio(pixelRatio);
    m_stillLayers.fill(Qt::transparent);
    QPainter painter(&m_stillLayers);
    drawBackground(painter);
    drawIcon(painter);
    drawText(painter, TextElement::Title, m_title);
    drawText(painter, TextElement::Date, m_date);
    painter.end();
    m_stillLayersKey = key;
    return m_stillLayers;
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

void EVWidgetView::drawIcon(QPainter &painter) const
{
    if (m_icon.isNull())
        return;
    const QRectF target = EVWidgetLayout::iconRect(rect(), m_icon.deviceIndependentSize());
    // Scaled beforehand with area averaging: a large icon drawn small stays smooth.
    const qreal pixelRatio = painter.device()->devicePixelRatioF();
    QImage scaled = m_icon.scaled(EVTransparentPicture::pixelSize(target.size() * pixelRatio),
                                  Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    if (scaled.isNull())
        return;
    scaled.setDevicePixelRatio(pixelRatio);
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, scaled);
    painter.restore();
}

void EVWidgetView::drawText(QPainter &painter, TextElement element, const QString &text) const
{
    if (text.isNull())
        return;
    const QRectF bounds(rect());
    const QRectF box = EVWidgetLayout::textBox(element, bounds, !m_icon.isNull());

    // Attributes as far as they can be made: without a font the widget's own font and palette
    // apply, without a colour the palette's colour; only with both is the text centred and
    // shortened in the middle when it is too wide.
    std::optional<QFont> chosenFont;
    std::optional<QColor> chosenColor;
    const QString family = EVFontFamily::forName(m_textFontName);
    if (!family.isNull()) {
        const int pixelSize = qRound(EVWidgetLayout::fontPixelSize(element, bounds, text));
        // No font can be that small; asking Qt for one would only warn on every repaint.
        if (pixelSize <= 0)
            return;
        QFont font(family);
        font.setPixelSize(pixelSize);
        font.setBold(isBold(element));
        chosenFont = font;
        if (m_textColor.isValid())
            chosenColor = m_textColor;
    }

    const QFont font = chosenFont.value_or(this->font());
    const QFontMetricsF metrics(font);
    // Every line is centred by the title's height, so that all four sit alike.
    const qreal titleHeight = m_title.isEmpty() ? 0.0 : metrics.height();
    const QRectF line = EVWidgetLayout::lineRect(box, titleHeight);

    painter.save();
    painter.setFont(font);
    painter.setPen(chosenColor.value_or(palette().color(foregroundRole())));
    // Lines never wrap; with no title the line has no height, and the text is still drawn
    // across its middle.
    int flags = Qt::TextSingleLine | Qt::TextDontClip | Qt::AlignVCenter;
    QString shown = text;
    if (chosenColor) {
        flags |= Qt::AlignHCenter;
        shown = metrics.elidedText(text, Qt::ElideMiddle, box.width());
    } else {
        flags |= Qt::AlignLeft;
    }
    painter.drawText(line, flags, shown);
    painter.restore();
}
