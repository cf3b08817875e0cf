// Measures what delivered notifications hold in memory. The notification center keeps every
// delivered notification, with its banner window, for the life of the process, so each
// reminder adds to the application's size for good. Delivers a thousand reminders in one go,
// as one pass over a thousand due widgets does, lets the banners leave, and reports the heap
// and resident memory they still hold: once for a center that only records them (no window
// ever shown) and once for the banner center the application uses.
#include "notify/FLUserNotification.h"
#include "notify/FLUserNotificationCenter.h"
#include "notify/FLViewAnimation.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QVariantAnimation>

#include <cstdio>
#include <malloc.h>

namespace {

struct Usage
{
    double heapKiB;
    double residentKiB;
};

Usage usageNow()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    malloc_trim(0);
    const struct mallinfo2 heap = mallinfo2();
    double resident = 0;
    QFile status(QStringLiteral("/proc/self/status"));
    if (status.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("VmRSS:"))
                resident = line.mid(6).trimmed().split(' ').first().toDouble();
        }
    }
    return Usage{double(heap.uordblks + heap.hblkhd) / 1024.0, resident};
}

void finish(QAbstractAnimation *animation)
{
    if (animation && animation->state() == QAbstractAnimation::Running)
        animation->setCurrentTime(animation->totalDuration());
}

void finishAll(const FLUserNotificationCenter &center)
{
    for (FLUserNotification *notification : center.deliveredNotifications()) {
        finish(notification->viewAnimation());
        finish(notification->rotationAnimation());
    }
}

FLUserNotification *reminder(int index)
{
    auto *notification = new FLUserNotification;
    notification->setTitle(QStringLiteral("Event %1").arg(index));
    notification->setSubtitle(QStringLiteral("2024-03-01 12:00:00"));
    notification->setInformativeText(
        QStringLiteral("A note of some length for event %1").arg(index));
    return notification;
}

// Delivers count reminders to a center of the type, takes every banner down again and
// returns what is left held, per notification.
void measure(const char *label, qint64 type, int count)
{
    const Usage before = usageNow();
    FLUserNotificationCenter center;
    center.setCenterType(type);
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < count; ++i)
        center.deliverNotification(reminder(i));
    const double deliverMs = double(timer.nsecsElapsed()) / 1e6;
    finishAll(center);
    for (FLUserNotification *notification : center.deliveredNotifications())
        notification->moveOutAnimation();
    finishAll(center);
    const Usage after = usageNow();
    std::printf("%-34s %6d  deliver %7.1f ms  heap %8.1f KiB (%5.1f per)  resident %8.0f KiB "
                "(%5.1f per)\n",
                label, count, deliverMs, after.heapKiB - before.heapKiB,
                (after.heapKiB - before.heapKiB) / count, after.residentKiB - before.residentKiB,
                (after.residentKiB - before.residentKiB) / count);
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const int count = argc > 1 ? std::max(1, atoi(argv[1])) : 1000;
    std::printf("platform %s\n", qPrintable(QGuiApplication::platformName()));
    // Fonts, the panel picture and the platform's first window are made once per process.
    measure("warm-up", FLUserNotificationCenterTypeBanner, 2);
    measure("recorded only (type 0)", FLUserNotificationCenterTypeNone, count);
    measure("shown and taken down (type 1)", FLUserNotificationCenterTypeBanner, count);
    return 0;
}
