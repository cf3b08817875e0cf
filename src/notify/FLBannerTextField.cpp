#include "notify/FLBannerTextField.h"

#include "core/EVValues.h"
#include "render/EVFontFamily.h"

#include <QPainter>

namespace {
// Text starts this far in from the field's left edge, as in a plain desktop text field.
constexpr int textInset = 2;
} // namespace

FLBannerTextField::FLBannerTextField(int pixelSize, const QColor &textColor, QWidget *parent)
    : QWidget(parent)
    , m_textColor(textColor)
{
    QFont textFont(EVFontFamily::forName(QStringLiteral("LucidaGrande")));
    textFont.setPixelSize(pixelSize);
    setFont(textFont);
}

void FLBannerTextField::setText(const QString &text)
{
    if (isIdentical(m_text, text))
        return;
    m_text = text;
    update();
}

QString FLBannerTextField::displayedText() const
{
    return fontMetrics().elidedText(m_text, Qt::ElideRight, width() - textInset);
}

void FLBannerTextField::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(m_textColor);
    painter.drawText(rect().adjusted(textInset, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                     displayedText());
}
