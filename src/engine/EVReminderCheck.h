#pragma once

#include <QString>

class EVWidgetEntry;
class FLUserNotificationCenter;

// The reminder of a widget: due once the time left to the event is shorter than the lead time
// the user chose; then delivered as a banner and disarmed, so that each reminder fires once.
class EVReminderCheck
{
public:
    // Where reminders go; the process-wide center unless another is set.
    void setUserNotificationCenter(FLUserNotificationCenter *center) { m_center = center; }

    // Delivers the entry's reminder when it is armed and due, then disarms it.
    void check(EVWidgetEntry *entry) const;

    // The date text the reminder shows.
    static QString eventDate(const EVWidgetEntry *entry);

private:
    FLUserNotificationCenter *m_center = nullptr;
};
