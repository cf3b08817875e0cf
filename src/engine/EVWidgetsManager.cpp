#include "engine/EVWidgetsManager.h"

#include "core/EVProcessObjects.h"
#include "core/EVUserDefaults.h"
#include "engine/EVLegacyImport.h"
#include "engine/EVWindowController.h"
#include "platform/EVNotificationBus.h"
#include "render/EVTallyView.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVCustomStyle.h"
#include "store/EVWidgetEntry.h"

#include <QDateTime>
#include <QPointer>

#include <utility>

EVWidgetsManager *EVWidgetsManager::shareWidgetsMananger()
{
    static QPointer<EVWidgetsManager> manager;
    if (!manager) {
        manager = EVProcessObjects::keep(
            new EVWidgetsManager(EVCoreDataDelegate::shareCoreDataDelegate()));
        manager->start();
    }
    return manager;
}

EVWidgetsManager::EVWidgetsManager(EVCoreDataDelegate *store, QObject *parent)
    : QObject(parent)
    , m_store(store)
{
    // Qt timers keep firing while menus and modal dialogs run their own loops.
    m_updateWidgetsTimer.setTimerType(Qt::PreciseTimer);
    m_updateWidgetsTimer.setSingleShot(false);
    connect(&m_updateWidgetsTimer, &QTimer::timeout, this, &EVWidgetsManager::onUpdateWidgetsTimer);
}

// The controllers are children of the manager and go with it.
EVWidgetsManager::~EVWidgetsManager() = default;

void EVWidgetsManager::start()
{
    scheduleNextTick();
    update_timer_callback();
}

void EVWidgetsManager::scheduleNextTick()
{
    // Ticks land just after each full second of the wall clock, so that every widget's seconds
    // change together and in time with the system clock.
    const qint64 intoSecond = QDateTime::currentMSecsSinceEpoch() % 1000;
    m_updateWidgetsTimer.start(int(1000 - intoSecond) + 5);
}

void EVWidgetsManager::setup()
{
    EVUserDefaults defaults;
    EVLegacyImport::setup(*this, defaults);
}

QVariant EVWidgetsManager::transferOldData() const
{
    return EVLegacyImport::transferOldData(EVUserDefaults());
}

void EVWidgetsManager::teardown()
{
    m_updateWidgetsTimer.stop();
    qDeleteAll(std::exchange(m_widgetControllers, {}));
    m_refetchWidgetEntries = true;
}

QList<EVWidgetEntry *> EVWidgetsManager::widgetEntries()
{
    if (!m_refetchWidgetEntries)
        return m_curWidgetEntries;
    m_curWidgetEntries = m_store->fetchWidgetEntries();
    m_refetchWidgetEntries = false;
    return m_curWidgetEntries;
}

EVWidgetEntry *EVWidgetsManager::addNewWidgetEntry()
{
    EVWidgetEntry *entry = m_store->addWidgetEntry();
    if (entry)
        addNewWidgetWindowController(entry);
    return entry;
}

EVCustomStyle *EVWidgetsManager::addCustomStyle(EVWidgetEntry *entry)
{
    EVCustomStyle *style = m_store->addCustomStyle(entry);
    if (style)
        style->setWidget(entry);
    return style;
}

void EVWidgetsManager::removeWidgetAtIndex(int index)
{
    const QList<EVWidgetEntry *> entries = widgetEntries();
    if (index < 0 || index >= entries.size())
        return;
    removeWidgetWithEntry(entries.at(index));
}

void EVWidgetsManager::removeWidgetWithEntry(EVWidgetEntry *entry)
{
    if (!entry)
        return;
    if (EVWindowController *controller = m_widgetControllers.take(entry->uuid())) {
        controller->destroy();
        controller->deleteLater();
    }
    m_store->removeWidgetEntry(entry);
    m_refetchWidgetEntries = true;
}

void EVWidgetsManager::removeCustomStyleAtIndex(int index, EVWidgetEntry *entry)
{
    if (!entry || index < 0 || index >= entry->customStyles().size())
        return;
    m_store->removeCustomStyle(entry->customStyles().at(index), entry);
    entry->setStyleIndex(EVTallyView::gradientStyle);
}

EVWindowController *EVWidgetsManager::widgetWindowController(const EVWidgetEntry *entry) const
{
    return entry ? m_widgetControllers.value(entry->uuid()) : nullptr;
}

void EVWidgetsManager::addNewWidgetWindowController(EVWidgetEntry *entry)
{
    EVWindowController *controller = EVWindowController::windowController(this);
    controller->display(false);
    controller->setWidgetData(entry);
    if (EVWindowController *replaced = m_widgetControllers.value(entry->uuid()))
        replaced->deleteLater();
    m_widgetControllers.insert(entry->uuid(), controller);
    m_refetchWidgetEntries = true;
}

void EVWidgetsManager::refreshAll()
{
    update_timer_callback();
}

void EVWidgetsManager::refreshWidgetController(const QString &uuid)
{
    if (EVWindowController *controller = m_widgetControllers.value(uuid))
        controller->update();
}

void EVWidgetsManager::save()
{
    for (EVWindowController *controller : std::as_const(m_widgetControllers))
        controller->save();
    m_store->save();
}

void EVWidgetsManager::setAllDesktopWidgetState(int state)
{
    for (EVWindowController *controller : std::as_const(m_widgetControllers))
        controller->setAlphaValue(double(state));
}

void EVWidgetsManager::notificationUpdate()
{
    QTimer::singleShot(1000, this, [] {
        EVNotificationBus::defaultCenter()->postNotificationName(EVNotificationWidgetDidDisplayed);
    });
}

QString EVWidgetsManager::eventDate(const EVWidgetEntry *entry) const
{
    return EVReminderCheck::eventDate(entry);
}

void EVWidgetsManager::checkRemindMeForNotificationCenter(EVWidgetEntry *entry)
{
    m_reminderCheck.check(entry);
}

void EVWidgetsManager::onUpdateWidgetsTimer()
{
    scheduleNextTick();
    update_timer_callback();
}

void EVWidgetsManager::update_timer_callback()
{
    bool added = false;
    // A copy: making a controller marks the cache stale but must not change this pass's list.
    const QList<EVWidgetEntry *> entries = widgetEntries();
    for (EVWidgetEntry *entry : entries) {
        if (EVWindowController *controller = widgetWindowController(entry)) {
            controller->update();
        } else {
            addNewWidgetWindowController(entry);
            added = true;
        }
        checkRemindMeForNotificationCenter(entry);
    }
    if (added)
        notificationUpdate();
}
