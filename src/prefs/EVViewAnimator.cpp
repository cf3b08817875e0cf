#include "prefs/EVViewAnimator.h"

#include <QGraphicsOpacityEffect>
#include <QPropertyAnimation>
#include <QWidget>

namespace EVViewAnimator {
namespace {

const char *const fadeName = "EVViewAnimatorFade";
const char *const hidesProperty = "hidesAtEnd";

QPropertyAnimation *runningFade(QWidget *view)
{
    return view->findChild<QPropertyAnimation *>(QLatin1String(fadeName),
                                                 Qt::FindDirectChildrenOnly);
}

// Stops a fade under way where it is; answers the view's opacity at that moment.
qreal stopFade(QWidget *view)
{
    qreal opacity = 1.0;
    if (auto *effect = qobject_cast<QGraphicsOpacityEffect *>(view->graphicsEffect()))
        opacity = effect->opacity();
    delete runningFade(view);
    // The effect renders the whole view into a picture: it stays only while a fade runs.
    view->setGraphicsEffect(nullptr);
    return opacity;
}

void fade(QWidget *view, qreal from, qreal to, bool hideAtEnd)
{
    auto *effect = new QGraphicsOpacityEffect(view);
    effect->setOpacity(from);
    view->setGraphicsEffect(effect);
    auto *animation = new QPropertyAnimation(effect, "opacity", view);
    animation->setObjectName(QLatin1String(fadeName));
    animation->setProperty(hidesProperty, hideAtEnd);
    animation->setDuration(int(fadeDuration * qAbs(to - from)));
    animation->setStartValue(from);
    animation->setEndValue(to);
    QObject::connect(animation, &QPropertyAnimation::finished, view, [view, animation, hideAtEnd] {
        if (hideAtEnd)
            view->hide();
        view->setGraphicsEffect(nullptr);
        animation->deleteLater();
    });
    animation->start();
}

} // namespace

void setHidden(QWidget *view, bool hidden)
{
    if (!view)
        return;
    qreal opacity = hidden ? 1.0 : 0.0;
    if (QPropertyAnimation *running = runningFade(view)) {
        if (running->property(hidesProperty).toBool() == hidden)
            return;
        // Turned round half way: the new fade starts where the old one stopped.
        opacity = stopFade(view);
    } else if (view->isHidden() == hidden) {
        return;
    }
    if (!view->window()->isVisible()) {
        view->setHidden(hidden);
        return;
    }
    view->show();
    fade(view, opacity, hidden ? 0.0 : 1.0, hidden);
}

} // namespace EVViewAnimator
