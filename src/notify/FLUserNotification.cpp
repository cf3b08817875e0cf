#include "notify/FLUserNotification.h"

#include "core/EVClock.h"
#include "notify/FLBannerTextField.h"
#include "notify/FLBannerWindow.h"
#include "notify/FLUserNotificationCenter.h"
#include "notify/FLUserNotificationDelegate.h"
#include "notify/FLViewLayer.h"
#include "notify/QoAnimationUtility.h"
#include "platform/EVMainScreen.h"

#include <QAbstractButton>
#include <QPropertyAnimation>
#include <QPushButton>

#include <numbers>

namespace {

// The banner's top edge lies this far below the top of the screen when it has moved in.
constexpr qreal topMargin = 20.0;

// The swing starts edge-on; the angle is kept at single precision, as layer values are.
constexpr float edgeOn = std::numbers::pi_v<float> / 2;

// The pace of an ease-in: slow at first, then faster to the end.
QEasingCurve easeIn()
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(QPointF(0.42, 0.0), QPointF(1.0, 1.0), QPointF(1.0, 1.0));
    return curve;
}

} // namespace

FLUserNotification::FLUserNotification(QObject *parent)
    : QObject(parent)
    , m_window(std::make_unique<FLBannerWindow>())
{
    for (QAbstractButton *button :
         {m_window->bgButton(), static_cast<QAbstractButton *>(m_window->actionButton()),
          static_cast<QAbstractButton *>(m_window->otherButton())}) {
        connect(button, &QAbstractButton::clicked, this, [this, button] { buttonClick(button); });
    }
}

FLUserNotification::~FLUserNotification()
{
    // Animations go before the window they move.
    qDeleteAll(findChildren<QAbstractAnimation *>(Qt::FindDirectChildrenOnly));
}

void FLUserNotification::presentedNotification()
{
    m_presented = true;
    m_actualDeliveryDate = EVClock::now();
}

void FLUserNotification::setup(qint64 centerType)
{
    FLBannerWindow *window = m_window.get();
    // Nothing of an earlier layout stays.
    window->titleField()->setText(QString());
    window->subtitleField()->setText(QString());
    window->informativeField()->setText(QString());
    window->actionButton()->setText(FLActionButtonDefaultTitle);
    window->otherButton()->setText(FLOtherButtonDefaultTitle);
    window->actionButton()->setHidden(false);
    window->otherButton()->setHidden(false);
    window->setTextFieldsWidened(false);

    if (!m_title.isNull())
        window->titleField()->setText(m_title);
    if (!m_subtitle.isNull())
        window->subtitleField()->setText(m_subtitle);
    if (!m_informativeText.isNull())
        window->informativeField()->setText(m_informativeText);
    if (!m_actionButtonTitle.isNull())
        window->actionButton()->setText(m_actionButtonTitle);
    if (!m_otherButtonTitle.isNull())
        window->otherButton()->setText(m_otherButtonTitle);
    if (!m_hasActionButton)
        window->actionButton()->setHidden(true);

    if (centerType == FLUserNotificationCenterTypeBanner) {
        window->actionButton()->setHidden(true);
        window->otherButton()->setHidden(true);
        window->setTextFieldsWidened(true);
    }
}

void FLUserNotification::buttonClick(QObject *sender)
{
    // The buttons toggle on each click; none of them is meant to stay pressed.
    if (auto *button = qobject_cast<QAbstractButton *>(sender))
        button->setChecked(false);
    if (!m_delegate || !m_delegate->userNotificationWillActivate(this))
        return;
    if (sender == m_window->actionButton())
        m_activationType = FLUserNotificationActivationTypeActionButtonClicked;
    else if (sender == m_window->bgButton())
        m_activationType = FLUserNotificationActivationTypeContentsClicked;
    else
        m_activationType = FLUserNotificationActivationTypeNone;
    m_delegate->userNotificationDidActivateType(this, m_activationType);
}

QPointF FLUserNotification::bannerOrigin(const QSizeF &size)
{
    const QRectF screen = EVMainScreen::frame();
    return QPointF(screen.x() + screen.width() - size.width(), screen.y() + topMargin);
}

void FLUserNotification::moveInAnimation()
{
    if (m_animating)
        return;
    m_animating = true;
    m_visible = true;

    const QRectF screen = EVMainScreen::frame();
    const QSizeF size = m_window->size();
    // From just above the top edge of the screen, flush right, down to the top position.
    const QRectF endFrame(bannerOrigin(size), size);
    const QRectF startFrame(QPointF(endFrame.x(), screen.y() - size.height()), size);
    m_window->setGeometry(startFrame.toRect());
    m_window->setWindowOpacity(0.0);
    m_window->show();
    m_window->raise();

    // The banner turns about the middle of its bottom edge, from edge-on to flat.
    setLayerBacked(true);
    QWidget *content = m_window->contentView();
    QoAnimationUtility::setAnchorPoint(QPointF(0.5, 1.0), content);
    auto *rotation = new QPropertyAnimation(content->graphicsEffect(), "rotationX", this);
    rotation->setStartValue(qreal(edgeOn));
    rotation->setEndValue(0.0);
    rotation->setDuration(animationDuration);
    rotation->setEasingCurve(easeIn());
    connect(rotation, &QAbstractAnimation::finished, this, [this] { animationFinished(nullptr); });
    m_rotationAnimation = rotation;
    rotation->start();

    startViewAnimation(startFrame, endFrame, FLViewAnimation::Effect::FadeIn);
}

void FLUserNotification::moveAnimation(const QPointF &point)
{
    if (m_animating)
        return;
    m_animating = true;
    const QRectF frame(m_window->geometry());
    const QRectF endFrame(point, frame.size());
    if (endFrame == frame) {
        m_animating = false;
        return;
    }
    startViewAnimation(frame, endFrame, FLViewAnimation::Effect::None);
}

void FLUserNotification::moveOutAnimation()
{
    if (m_animating)
        return;
    m_animating = true;
    m_visible = false;
    const QRectF screen = EVMainScreen::frame();
    const QRectF frame(m_window->geometry());
    // Half of the banner ends past the right edge of the screen.
    const QRectF endFrame(QPointF(screen.x() + screen.width() - frame.width() * 0.5, frame.y()),
                          frame.size());
    startViewAnimation(frame, endFrame, FLViewAnimation::Effect::FadeOut);
}

void FLUserNotification::fadeOutAnimation()
{
    if (m_animating)
        return;
    m_animating = true;
    m_visible = false;
    const QRectF frame(m_window->geometry());
    startViewAnimation(frame, frame, FLViewAnimation::Effect::FadeOut);
}

void FLUserNotification::animationFinished(FLViewAnimation *animation)
{
    if (m_rotationAnimation) {
        // Possibly the animation that is ending now: it goes once its report is done.
        m_rotationAnimation->stop();
        m_rotationAnimation->deleteLater();
        m_rotationAnimation = nullptr;
    }
    setLayerBacked(false);
    m_animating = false;
    if (animation && animation->effect() == FLViewAnimation::Effect::FadeOut)
        m_window->hide();
}

void FLUserNotification::startViewAnimation(const QRectF &startFrame, const QRectF &endFrame,
                                            FLViewAnimation::Effect effect)
{
    // Only the latest is kept; one that still runs finishes its course first.
    if (m_viewAnimation) {
        if (m_viewAnimation->state() == QAbstractAnimation::Stopped)
            m_viewAnimation->deleteLater();
        else
            connect(m_viewAnimation, &QAbstractAnimation::finished, m_viewAnimation,
                    &QObject::deleteLater);
    }
    auto *animation = new FLViewAnimation(m_window.get(), startFrame, endFrame, effect, this);
    animation->setDuration(animationDuration);
    connect(animation, &QAbstractAnimation::finished, this,
            [this, animation] { animationFinished(animation); });
    m_viewAnimation = animation;
    animation->start();
}

void FLUserNotification::setLayerBacked(bool layerBacked)
{
    QWidget *content = m_window->contentView();
    // Replacing or removing a view's effect deletes the one it had.
    if (!layerBacked) {
        content->setGraphicsEffect(nullptr);
        m_window->fitShapeTo(QTransform());
        return;
    }
    auto *layer = new FLViewLayer(content->size());
    connect(layer, &FLViewLayer::transformChanged, m_window.get(), &FLBannerWindow::fitShapeTo);
    content->setGraphicsEffect(layer);
}
