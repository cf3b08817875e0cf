#include "controls/OnOffSwitchControl.h"

#include "controls/EVBeep.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {
// Room above and below the label text inside the track.
constexpr int labelPadding = 3;
// Room between a label and the thumb at the natural size.
constexpr double labelGap = 2.0;
} // namespace

OnOffSwitchControl::OnOffSwitchControl(QWidget *parent)
    : QAbstractButton(parent)
{
    // Checked mirrors "on", so that accessibility tools and button groups read the switch as
    // the toggle it is.
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void OnOffSwitchControl::setState(int state)
{
    m_cell.setState(state);
    publishState();
}

void OnOffSwitchControl::setAllowsMixedState(bool allowsMixedState)
{
    m_cell.setAllowsMixedState(allowsMixedState);
    publishState();
}

void OnOffSwitchControl::setShowsOnOffLabels(bool showsOnOffLabels)
{
    m_cell.setShowsOnOffLabels(showsOnOffLabels);
    update();
}

void OnOffSwitchControl::setOnOffSwitchControlColors(int scheme)
{
    m_cell.setOnOffSwitchControlColors(scheme);
    update();
}

void OnOffSwitchControl::setCustomOnColor(const QColor &color)
{
    m_cell.setCustomOnColor(color);
    update();
}

void OnOffSwitchControl::setCustomOffColor(const QColor &color)
{
    m_cell.setCustomOffColor(color);
    update();
}

void OnOffSwitchControl::setOnSwitchLabel(const QString &label)
{
    m_cell.setOnSwitchLabel(label);
    updateGeometry();
    update();
}

void OnOffSwitchControl::setOffSwitchLabel(const QString &label)
{
    m_cell.setOffSwitchLabel(label);
    updateGeometry();
    update();
}

void OnOffSwitchControl::setControlSize(OnOffSwitchControlCell::ControlSize controlSize)
{
    m_cell.setControlSize(controlSize);
    updateGeometry();
    update();
}

QSize OnOffSwitchControl::sizeHint() const
{
    const QFontMetricsF metrics(m_cell.labelFont());
    const double labelWidth = std::max(metrics.horizontalAdvance(m_cell.onSwitchLabel()),
                                       metrics.horizontalAdvance(m_cell.offSwitchLabel()));
    // A label is centred a sixth of the width, less 3 points, beyond the thumb's edge; at this
    // width its near end keeps the gap from the thumb.
    const int width = int(std::ceil(3.0 * (labelWidth + 2.0 * labelGap) + 18.0));
    const int height = int(std::ceil(metrics.height())) + 2 * labelPadding;
    return QSize(std::max(width, 2 * height), height);
}

QSize OnOffSwitchControl::minimumSizeHint() const
{
    return sizeHint();
}

void OnOffSwitchControl::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    m_cell.drawWithFrame(painter, QRectF(rect()), this);
}

void OnOffSwitchControl::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton ||
        !(m_cell.hitTestForEvent(*event, QRectF(rect()), this) &
          OnOffSwitchControlCell::CellHitTrackableArea)) {
        event->ignore();
        return;
    }
    m_stateAtPress = state();
    setDown(true);
    m_cell.startTrackingAt(event->position(), this);
    // Drawn at once: the drawing records the frame and the thumb that a quick release uses.
    repaint();
    event->accept();
}

void OnOffSwitchControl::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_cell.isTracking()) {
        event->ignore();
        return;
    }
    m_cell.continueTracking(event->position(), this);
    event->accept();
}

void OnOffSwitchControl::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_cell.isTracking()) {
        event->ignore();
        return;
    }
    m_cell.stopTracking(event->position(), this);
    setDown(false);
    if (hitButton(event->position().toPoint())) {
        // The button's own step from where the release left the state, and its action, once.
        click();
    } else {
        // Let go off the switch: nothing happens, as with any button.
        m_cell.setState(m_stateAtPress);
        publishState();
    }
    event->accept();
}

void OnOffSwitchControl::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right) {
        // Taken here, so that they never move the focus on; the release moves the switch.
        event->accept();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

void OnOffSwitchControl::keyReleaseEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right) {
        // A held key moves the switch once, when it is let go.
        if (!event->isAutoRepeat())
            moveByArrowKey(event->key() == Qt::Key_Right);
        event->accept();
        return;
    }
    QAbstractButton::keyReleaseEvent(event);
}

void OnOffSwitchControl::moveByArrowKey(bool towardsOn)
{
    const int end = towardsOn ? OnOffSwitchControlCell::OnState : OnOffSwitchControlCell::OffState;
    const int otherEnd =
        towardsOn ? OnOffSwitchControlCell::OffState : OnOffSwitchControlCell::OnState;
    const int current = state();
    if (current == end) {
        EVBeep::beep();
    } else if (current == otherEnd) {
        m_cell.setState(allowsMixedState() ? int(OnOffSwitchControlCell::MixedState) : end);
    } else if (current == OnOffSwitchControlCell::MixedState) {
        m_cell.setState(end);
    }
    // No action: whoever needs the new state reads it when it needs it.
    publishState();
}

void OnOffSwitchControl::nextCheckState()
{
    m_cell.setNextState();
    publishState();
}

void OnOffSwitchControl::checkStateSet()
{
    if (m_publishing)
        return;
    m_cell.setState(isChecked() ? OnOffSwitchControlCell::OnState
                                : OnOffSwitchControlCell::OffState);
    publishState();
}

void OnOffSwitchControl::publishState()
{
    m_publishing = true;
    setChecked(m_cell.state() == OnOffSwitchControlCell::OnState);
    m_publishing = false;
    update();
    if (m_cell.state() == m_publishedState)
        return;
    m_publishedState = m_cell.state();
    Q_EMIT stateChanged(m_publishedState);
}
