#pragma once

#include <QPointer>
#include <QRectF>
#include <QVariantAnimation>
#include <QWidget>

// Moves a window from one frame to another, fading it in or out on the way when asked. Runs
// with an ease-in-out pace, as window animations of the desktop do.
class FLViewAnimation : public QVariantAnimation
{
    Q_OBJECT

public:
    enum class Effect { None, FadeIn, FadeOut };

    FLViewAnimation(QWidget *target, const QRectF &startFrame, const QRectF &endFrame,
                    Effect effect, QObject *parent = nullptr);

    QWidget *target() const { return m_target; }
    QRectF startFrame() const { return m_startFrame; }
    QRectF endFrame() const { return m_endFrame; }
    Effect effect() const { return m_effect; }

protected:
    void updateCurrentValue(const QVariant &value) override;

private:
    QPointer<QWidget> m_target;
    QRectF m_startFrame;
    QRectF m_endFrame;
    Effect m_effect;
};
