#pragma once

#include "engine/EVReminderCheck.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVariant>

class EVCoreDataDelegate;
class EVCustomStyle;
class EVWidgetEntry;
class EVWindowController;
class FLUserNotificationCenter;

// Keeps the desktop in step with the store: one window controller per widget entry, refreshed
// by a pass once a second; the one way to add and remove widgets and custom styles, to save,
// and to hide or show all widgets at once.
class EVWidgetsManager : public QObject
{
    Q_OBJECT

public:
    // The process-wide manager on the process-wide store, made and started on first use.
    static EVWidgetsManager *shareWidgetsMananger();

    explicit EVWidgetsManager(EVCoreDataDelegate *store, QObject *parent = nullptr);
    ~EVWidgetsManager() override;

    // The store the manager keeps the desktop in step with.
    EVCoreDataDelegate *store() const { return m_store; }

    // Starts the one-second timer and runs the first pass at once.
    void start();
    // Brings the earlier generation's widgets over from the settings, once.
    void setup();
    // The earlier generation's widgets as decoded from the settings; none when absent.
    QVariant transferOldData() const;
    // Stops the timer and closes every widget window.
    void teardown();
    bool isRunning() const { return m_updateWidgetsTimer.isActive(); }

    // The store's entries, oldest first, fetched anew only after an entry was added or removed.
    QList<EVWidgetEntry *> widgetEntries();

    EVWidgetEntry *addNewWidgetEntry();
    EVCustomStyle *addCustomStyle(EVWidgetEntry *entry);
    void removeWidgetAtIndex(int index);
    void removeWidgetWithEntry(EVWidgetEntry *entry);
    // Removes the style at that position and puts the widget back on the default style.
    void removeCustomStyleAtIndex(int index, EVWidgetEntry *entry);

    EVWindowController *widgetWindowController(const EVWidgetEntry *entry) const;
    void addNewWidgetWindowController(EVWidgetEntry *entry);
    const QHash<QString, EVWindowController *> &widgetControllers() const
    {
        return m_widgetControllers;
    }

    // Runs the pass at once.
    void refreshAll();
    void refreshWidgetController(const QString &uuid);

    // Copies every window's frame into its entry, then saves the store.
    void save();
    // 0 makes every widget invisible, 1 shows them again.
    void setAllDesktopWidgetState(int state);
    // Posts "EVNotificationWidgetDidDisplayed" one second from now.
    void notificationUpdate();

    // The reminder's date text of the entry.
    QString eventDate(const EVWidgetEntry *entry) const;

    // Delivers the entry's reminder when it is armed and due, then disarms it: each reminder
    // fires once.
    void checkRemindMeForNotificationCenter(EVWidgetEntry *entry);
    // Where reminders go; the process-wide center unless another is set.
    void setUserNotificationCenter(FLUserNotificationCenter *center)
    {
        m_reminderCheck.setUserNotificationCenter(center);
    }

private Q_SLOTS:
    // The pass: a window for every entry that has none, a refresh and a reminder check for
    // every one.
    void update_timer_callback();
    void onUpdateWidgetsTimer();

private:
    void scheduleNextTick();

    EVCoreDataDelegate *m_store;
    // Nothing is cached before the first fetch.
    bool m_refetchWidgetEntries = true;
    QTimer m_updateWidgetsTimer;
    QHash<QString, EVWindowController *> m_widgetControllers;
    QList<EVWidgetEntry *> m_curWidgetEntries;
    EVReminderCheck m_reminderCheck;
};
