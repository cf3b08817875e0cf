#include "controls/OnOffSwitchControlCell.h"

#include "controls/EVPaintScale.h"
#include "controls/EVShadow.h"
#include "core/EVClock.h"
#include "render/EVFontFamily.h"

#include <QAbstractButton>
#include <QFontMetricsF>
#include <QImage>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace {

// Several constants of the switch's look are single-precision values; they are kept as such
// so that the geometry and colours come out exactly as the switch has always drawn them.
const double thumbWidthFraction = double(0.45f);
const double innerShadowAlpha = double(0.35f);
const double thumbGradientBottom = double(0.9f);
const double tintAlpha = double(0.6f);

constexpr double cornerRadius = 2.5;
constexpr double innerShadowHeight = 4.0;
constexpr double thumbShadowAlpha = 0.5;
constexpr double thumbShadowBlurRadius = 3.0;
// The keyboard focus ring reaches this far beyond the thumb.
constexpr double focusRingWidth = 3.0;
// Translucent, as desktop focus rings are, so that the track shows through.
constexpr float focusRingAlpha = 0.75f;
constexpr double disabledWashAlpha = 2.0 / 3.0;

QPainterPath roundedRect(const QRectF &rect)
{
    QPainterPath path;
    path.addRoundedRect(rect, cornerRadius, cornerRadius);
    return path;
}

QColor white(double level, double alpha = 1.0)
{
    return QColor::fromRgbF(float(level), float(level), float(level), float(alpha));
}

// Every gradient of the switch runs from its first colour at the top to its second at the
// bottom.
QLinearGradient topToBottom(const QRectF &rect, const QColor &top, const QColor &bottom)
{
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    gradient.setColorAt(0.0, top);
    gradient.setColorAt(1.0, bottom);
    return gradient;
}

// Like std::clamp, but a range that is empty because the frame is tiny gives its lower end
// instead of undefined behaviour.
double clampToRange(double value, double lowest, double highest)
{
    return std::max(lowest, std::min(highest, value));
}

// A cell tracks the mouse only for a button, the kind of control that drives it.
bool isControl(const QWidget *view)
{
    return qobject_cast<const QAbstractButton *>(view) != nullptr;
}

// Seconds, from the application's one clock, so that tests can pin the click clock.
double currentTime()
{
    return double(EVClock::now().toMSecsSinceEpoch()) / 1000.0;
}

int pointSizeFor(OnOffSwitchControlCell::ControlSize controlSize)
{
    switch (controlSize) {
    case OnOffSwitchControlCell::SmallControlSize:
        return 11;
    case OnOffSwitchControlCell::MiniControlSize:
        return 9;
    case OnOffSwitchControlCell::RegularControlSize:
        break;
    }
    return 13;
}

} // namespace

void OnOffSwitchControlCell::setState(int value)
{
    if (value > 0 || (value < 0 && !m_allowsMixedState))
        m_state = OnState;
    else if (value == 0)
        m_state = OffState;
    else
        m_state = MixedState;
}

void OnOffSwitchControlCell::setAllowsMixedState(bool allowsMixedState)
{
    m_allowsMixedState = allowsMixedState;
    setState(m_state);
}

int OnOffSwitchControlCell::nextState() const
{
    switch (m_state) {
    case OffState:
        return m_allowsMixedState ? MixedState : OnState;
    case MixedState:
        return OnState;
    default:
        return OffState;
    }
}

void OnOffSwitchControlCell::setOnOffSwitchCustomOnColor(const QColor &onColor,
                                                         const QColor &offColor)
{
    m_customOffColor = offColor;
    m_customOnColor = onColor;
}

QRectF OnOffSwitchControlCell::thumbRectInFrame(const QRectF &cellFrame) const
{
    const double innerWidth = cellFrame.width() - 2.0;
    const double width = innerWidth * thumbWidthFraction;
    double x = cellFrame.x() + 1.0;
    if (m_state == OnState)
        x = cellFrame.x() + 1.0 + innerWidth - width;
    else if (m_state == MixedState)
        // Measured from 0 rather than from the frame's left edge; switches have always placed
        // a mixed thumb this way.
        x = innerWidth * 0.5 - width * 0.5;
    return QRectF(x, cellFrame.y() + 1.0, width, cellFrame.height() - 2.0);
}

double OnOffSwitchControlCell::centerXForThumbWithFrame(const QRectF &cellFrame) const
{
    const QRectF thumb = thumbRectInFrame(cellFrame);
    if (!m_tracking)
        return thumb.x() + thumb.width() / 2.0;
    const double movedX =
        clampToRange(thumb.x() + m_trackingPoint.x() - m_initialTrackingPoint.x(), cellFrame.x(),
                     cellFrame.x() + cellFrame.width() - thumb.width());
    return movedX + thumb.width() / 2.0;
}

QFont OnOffSwitchControlCell::labelFont() const
{
    QFont font(EVFontFamily::forName(QStringLiteral("LucidaGrande")));
    font.setPixelSize(pointSizeFor(m_controlSize));
    font.setBold(true);
    return font;
}

OnOffSwitchControlCell::SchemeColors OnOffSwitchControlCell::schemeColors() const
{
    const QColor blue = QColor::fromRgbF(0.0f, 0.3f, 1.0f, float(tintAlpha));
    const QColor darkRed = QColor::fromRgbF(0.7f, 0.0f, 0.0f, float(tintAlpha));
    SchemeColors colors;
    switch (m_onOffSwitchControlColors) {
    case CustomColors:
        colors = {m_customOnColor, m_customOffColor};
        break;
    case BlueColors:
        colors = {blue, QColor::fromRgbF(1.0f, 0.0f, 0.0f, 0.0f)};
        break;
    case GreenRedColors:
        colors = {QColor::fromRgbF(0.0f, 0.7f, 0.0f, float(tintAlpha)), darkRed};
        break;
    case BlueRedColors:
        colors = {blue, darkRed};
        break;
    default:
        break;
    }
    if (!colors.on.isValid() || !colors.off.isValid())
        return SchemeColors();
    return colors;
}

void OnOffSwitchControlCell::drawWithFrame(QPainter &painter, const QRectF &cellFrame,
                                           const QWidget *view)
{
    if (m_tracking)
        m_trackingCellFrame = cellFrame;
    if (cellFrame.isEmpty())
        return;

    // The whole switch is drawn into a layer of its own first, so that the disabled wash
    // lightens the switch only, never what lies behind it.
    const double scale = EVPaintScale::devicePixelsPerPoint(painter);
    QImage layer(QSize(int(std::ceil(cellFrame.width() * scale)),
                       int(std::ceil(cellFrame.height() * scale))),
                 QImage::Format_ARGB32_Premultiplied);
    layer.fill(Qt::transparent);
    layer.setDevicePixelRatio(scale);
    QPainter layerPainter(&layer);
    layerPainter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    layerPainter.translate(-cellFrame.topLeft());

    const QPainterPath track = roundedRect(cellFrame.adjusted(1.0, 1.0, -1.0, -1.0));
    layerPainter.strokePath(track, QPen(white(0.125), 1.0));
    layerPainter.fillPath(track, topToBottom(track.boundingRect(), white(0.5), white(2.0 / 3.0)));

    layerPainter.save();
    layerPainter.setClipPath(roundedRect(cellFrame), Qt::IntersectClip);
    // A switch with a middle position has no side that is plainly on or off to tint or label.
    if (!m_allowsMixedState)
        tintBackgroundWithFrame(layerPainter, cellFrame);
    const QRectF innerShadow(cellFrame.x(), cellFrame.y(), cellFrame.width(), innerShadowHeight);
    layerPainter.fillRect(innerShadow,
                          topToBottom(innerShadow, white(0.0, innerShadowAlpha), white(0.0, 0.0)));
    layerPainter.restore();

    drawInteriorWithFrame(layerPainter, cellFrame, view);

    if (view && !view->isEnabled()) {
        layerPainter.setCompositionMode(QPainter::CompositionMode_Lighten);
        layerPainter.fillRect(cellFrame, white(1.0, disabledWashAlpha));
    }
    layerPainter.end();
    painter.drawImage(cellFrame.topLeft(), layer);
}

void OnOffSwitchControlCell::drawInteriorWithFrame(QPainter &painter, const QRectF &cellFrame,
                                                   const QWidget *view)
{
    QRectF thumb = thumbRectInFrame(cellFrame);
    painter.save();
    const QRectF inner = cellFrame.adjusted(1.0, 1.0, -1.0, -1.0);
    painter.setClipPath(roundedRect(inner), Qt::IntersectClip);
    if (m_tracking) {
        thumb.moveLeft(clampToRange(thumb.x() + m_trackingPoint.x() - m_initialTrackingPoint.x(),
                                    inner.x(), inner.x() + inner.width() - thumb.width()));
        m_trackingThumbCenterX = centerXForThumbWithFrame(inner);
    }

    const QPainterPath thumbPath = roundedRect(thumb);
    EVShadow(white(0.0, thumbShadowAlpha), thumbShadowBlurRadius).drawForPath(painter, thumbPath);
    const bool showsFirstResponder = view && view->hasFocus();
    if (showsFirstResponder && m_focusRingType != FocusRingTypeNone) {
        // Drawn below the thumb: only the part beyond the thumb's edge shows.
        QColor ringColor = view->palette().color(QPalette::Highlight);
        ringColor.setAlphaF(focusRingAlpha);
        painter.strokePath(thumbPath, QPen(ringColor, 2.0 * focusRingWidth));
    }
    painter.fillPath(thumbPath, Qt::white);
    painter.fillPath(thumbPath, topToBottom(thumb, white(1.0), white(thumbGradientBottom)));
    painter.restore();
}

void OnOffSwitchControlCell::tintBackgroundWithFrame(QPainter &painter,
                                                     const QRectF &cellFrame) const
{
    painter.save();
    painter.setClipPath(roundedRect(cellFrame), Qt::IntersectClip);
    const QRectF thumb = thumbRectInFrame(cellFrame);
    const double centerX = centerXForThumbWithFrame(cellFrame);
    const double onWidth = clampToRange(centerX - cellFrame.x(), 0.0, cellFrame.width());
    const QRectF onSide(cellFrame.x(), cellFrame.y(), onWidth, cellFrame.height());
    const QRectF offSide(cellFrame.x() + onWidth, cellFrame.y(), cellFrame.width() - onWidth,
                         cellFrame.height());
    const SchemeColors colors = schemeColors();
    if (colors.on.isValid() && colors.off.isValid()) {
        const QRectF onTint = onSide.adjusted(1.0, 1.0, -1.0, -1.0);
        const QRectF offTint = offSide.adjusted(1.0, 1.0, -1.0, -1.0);
        if (!onTint.isEmpty())
            painter.fillRect(onTint, colors.on);
        if (!offTint.isEmpty())
            painter.fillRect(offTint, colors.off);
    }
    painter.restore();

    if (!m_showsOnOffLabels)
        return;
    // The labels ride with the thumb, a dragged one included, and the track cuts them off.
    const double thumbLeft = m_tracking ? centerX - thumb.width() / 2.0 : thumb.x();
    const double thumbRight = m_tracking ? centerX + thumb.width() / 2.0 : thumb.right();
    const double third = cellFrame.width() / 3.0;
    drawText(painter, m_onSwitchLabel,
             QRectF(thumbLeft - third + 2.0, cellFrame.y(), third + 2.0, cellFrame.height()));
    drawText(painter, m_offSwitchLabel,
             QRectF(thumbRight - 2.0, cellFrame.y(), third - 2.0, cellFrame.height()));
}

void OnOffSwitchControlCell::drawText(QPainter &painter, const QString &text,
                                      const QRectF &box) const
{
    const QFont font = labelFont();
    const QFontMetricsF metrics(font);
    const double textWidth = metrics.horizontalAdvance(text);
    const double textHeight = metrics.height();
    painter.save();
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRectF((box.width() - textWidth) / 2.0 + box.x(),
                            (box.height() - textHeight) / 2.0 + box.y(), textWidth, textHeight),
                     Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine | Qt::TextDontClip, text);
    painter.restore();
}

unsigned OnOffSwitchControlCell::hitTestForEvent(const QMouseEvent &event, const QRectF &cellFrame,
                                                 const QWidget *view) const
{
    const QPointF point = view ? view->mapFromGlobal(event.globalPosition()) : event.position();
    // Half-open, as rectangles contain points on the desktop: the far edges are outside.
    const bool inside = point.x() >= cellFrame.left() && point.x() < cellFrame.right() &&
                        point.y() >= cellFrame.top() && point.y() < cellFrame.bottom();
    return inside ? CellHitContentArea | CellHitTrackableArea : CellHitNone;
}

bool OnOffSwitchControlCell::startTrackingAt(const QPointF &startPoint, const QWidget *view)
{
    m_tracking = true;
    m_initialTrackingPoint = startPoint;
    m_trackingPoint = startPoint;
    m_initialTrackingTime = currentTime();
    m_trackingTime = m_initialTrackingTime;
    return isControl(view);
}

bool OnOffSwitchControlCell::continueTracking(const QPointF &currentPoint, QWidget *view)
{
    if (!isControl(view)) {
        m_tracking = false;
        return false;
    }
    m_trackingPoint = currentPoint;
    // Every movement restarts the click clock: a press that wanders and then rests long
    // enough is a drag, however quick its start was.
    m_initialTrackingTime = currentTime();
    m_trackingTime = m_initialTrackingTime;
    // Drawn at once rather than later: the drawing records where the thumb is, and the
    // release decides by that.
    view->repaint();
    return true;
}

void OnOffSwitchControlCell::stopTracking(const QPointF &stopPoint, const QWidget *view)
{
    m_tracking = false;
    m_trackingTime = currentTime();
    if (!isControl(view))
        return;
    // A switch that was never drawn while tracking (a hidden one) has no thumb position to go
    // by; the button's own step decides.
    if (m_trackingCellFrame.width() <= 0.0)
        return;
    const double position = m_trackingThumbCenterX / m_trackingCellFrame.width();

    // Signed differences, with y counted upwards: moving left or down never spoils a click.
    const bool isClick = m_trackingTime - m_initialTrackingTime < m_clickTimeout &&
                         stopPoint.x() - m_initialTrackingPoint.x() < m_maxDist.width() &&
                         m_initialTrackingPoint.y() - stopPoint.y() < m_maxDist.height();
    if (isClick)
        return;

    int wanted = OffState;
    if (!m_allowsMixedState)
        wanted = position >= 0.5 ? OnState : OffState;
    else if (position >= 2.0 / 3.0)
        wanted = OnState;
    else if (position >= 1.0 / 3.0)
        wanted = MixedState;
    // The button advances one step after the release and sends its action; start it from
    // the state before the wanted one so that the step lands there and the action goes once.
    switch (wanted) {
    case OffState:
        m_state = OnState;
        break;
    case MixedState:
        m_state = OffState;
        break;
    default:
        m_state = m_allowsMixedState ? MixedState : OffState;
        break;
    }
}
