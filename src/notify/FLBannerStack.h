#pragma once

#include <QList>
#include <QPointer>

class FLBannerWindow;
class FLUserNotification;

// The visible banners as a stack under the top right corner of the main screen: newest on top
// and frontmost, each older one a step lower, their window levels and stacking order in step.
class FLBannerStack
{
public:
    // Banners overlap their neighbours by this much.
    static constexpr double stackOverlap = 10.0;

    // How far below the newest banner the banner at that place of the stack lies: full steps
    // for the first six, then 5 points more for the next two, and every further one where the
    // eighth is.
    static double stackOffset(qsizetype index, double bannerHeight);

    // Moves each visible banner of the list to its place, newest (latest presented) first, and
    // raises their windows into that order.
    void arrange(const QList<FLUserNotification *> &delivered);

private:
    void raiseInLevelOrder(const QList<FLUserNotification *> &newestFirst);

    // The banner windows as they were last stacked, from the bottom up.
    QList<QPointer<FLBannerWindow>> m_raisedBottomUp;
};
