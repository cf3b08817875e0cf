#include "controls/EVColorWell.h"

#include "core/EVColorPanel.h"

#include <QPainter>
#include <QStyleOptionButton>
#include <QStylePainter>

EVColorWell::EVColorWell(QWidget *parent)
    : QPushButton(parent)
{
    connect(this, &QPushButton::clicked, this, &EVColorWell::activate);
}

void EVColorWell::setColor(const QColor &color)
{
    m_color = color;
    update();
}

void EVColorWell::activate()
{
    const QColor chosen = EVColorPanel::getColor(m_color, window(), tr("Colors"));
    if (!chosen.isValid())
        return;
    setColor(chosen);
    Q_EMIT colorActivated(chosen);
}

QSize EVColorWell::sizeHint() const
{
    return QSize(52, QPushButton::sizeHint().height());
}

void EVColorWell::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    painter.drawControl(QStyle::CE_PushButtonBevel, option);
    // The swatch sits inside the button's bevel, framed so that white and black both show.
    const QRect swatch = style()
                             ->subElementRect(QStyle::SE_PushButtonContents, &option, this)
                             .adjusted(2, 2, -2, -2);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(
        palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::Mid));
    QColor fill = m_color;
    if (!isEnabled())
        fill.setAlphaF(fill.alphaF() * 0.35f);
    painter.setBrush(fill);
    painter.drawRect(swatch.adjusted(0, 0, -1, -1));
}
