#include "notify/FLViewAnimation.h"

#include <QWidget>

FLViewAnimation::FLViewAnimation(QWidget *target, const QRectF &startFrame, const QRectF &endFrame,
                                 Effect effect, QObject *parent)
    : QVariantAnimation(parent)
    , m_target(target)
    , m_startFrame(startFrame)
    , m_endFrame(endFrame)
    , m_effect(effect)
{
    setStartValue(0.0);
    setEndValue(1.0);
    setEasingCurve(QEasingCurve::InOutSine);
}

void FLViewAnimation::updateCurrentValue(const QVariant &value)
{
    if (!m_target)
        return;
    const qreal progress = value.toReal();
    const QPointF topLeft =
        m_startFrame.topLeft() + (m_endFrame.topLeft() - m_startFrame.topLeft()) * progress;
    const QSizeF size = m_startFrame.size() + (m_endFrame.size() - m_startFrame.size()) * progress;
    m_target->setGeometry(QRectF(topLeft, size).toRect());
    if (m_effect == Effect::FadeIn)
        m_target->setWindowOpacity(progress);
    else if (m_effect == Effect::FadeOut)
        m_target->setWindowOpacity(1.0 - progress);
}
