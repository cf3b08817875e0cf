#include "notify/FLBannerStack.h"

#include "notify/FLBannerWindow.h"
#include "notify/FLUserNotification.h"

#include <algorithm>

double FLBannerStack::stackOffset(qsizetype index, double bannerHeight)
{
    const double step = bannerHeight - stackOverlap;
    if (index <= 5)
        return double(index) * step;
    if (index <= 7)
        return 5 * step + 5 * double(index - 5);
    return 5 * step + 15;
}

void FLBannerStack::arrange(const QList<FLUserNotification *> &delivered)
{
    // Collected from the end of the list, so that of banners presented within the same
    // millisecond the one delivered last still counts as the newest.
    QList<FLUserNotification *> visible;
    for (auto it = delivered.crbegin(); it != delivered.crend(); ++it) {
        if ((*it)->isVisible())
            visible.append(*it);
    }
    std::stable_sort(visible.begin(), visible.end(),
                     [](const FLUserNotification *a, const FLUserNotification *b) {
                         return a->actualDeliveryDate() > b->actualDeliveryDate();
                     });
    if (visible.isEmpty())
        return;

    const qsizetype count = visible.size();
    for (qsizetype index = 0; index < count; ++index) {
        FLUserNotification *notification = visible.at(index);
        FLBannerWindow *window = notification->showWindow();
        window->setLevel(FLBannerWindow::statusWindowLevel + int(count - index));
        const QPointF topRight = FLUserNotification::bannerOrigin(window->size());
        notification->moveAnimation(
            QPointF(topRight.x(), topRight.y() + stackOffset(index, window->height())));
    }
    raiseInLevelOrder(visible);
}

void FLBannerStack::raiseInLevelOrder(const QList<FLUserNotification *> &newestFirst)
{
    // The window system stacks the banners by their levels: from the bottom up, each is raised
    // over the ones before. Those at the bottom that already lie in order stay where they are,
    // so that a new banner costs one raise, not one for every banner on screen.
    QList<QPointer<FLBannerWindow>> bottomUp;
    for (auto it = newestFirst.crbegin(); it != newestFirst.crend(); ++it) {
        if ((*it)->showWindow()->isVisible())
            bottomUp.append((*it)->showWindow());
    }
    qsizetype inPlace = 0;
    while (inPlace < bottomUp.size() && inPlace < m_raisedBottomUp.size() &&
           bottomUp.at(inPlace) == m_raisedBottomUp.at(inPlace))
        ++inPlace;
    for (qsizetype index = inPlace; index < bottomUp.size(); ++index)
        bottomUp.at(index)->raise();
    m_raisedBottomUp = bottomUp;
}
