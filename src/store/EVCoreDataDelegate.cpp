#include "store/EVCoreDataDelegate.h"

#include "core/EVProcessObjects.h"
#include "platform/EVPaths.h"
#include "store/EVCustomStyle.h"
#include "store/EVObjectContext.h"
#include "store/EVStoreFile.h"
#include "store/EVWidgetEntry.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>

EVCoreDataDelegate *EVCoreDataDelegate::shareCoreDataDelegate()
{
    static QPointer<EVCoreDataDelegate> instance;
    if (!instance)
        instance = EVProcessObjects::keep(new EVCoreDataDelegate);
    return instance;
}

EVCoreDataDelegate::EVCoreDataDelegate(QObject *parent)
    : QObject(parent)
{}

EVCoreDataDelegate::~EVCoreDataDelegate()
{
    m_context.reset();
    m_coordinator.reset();
}

QString EVCoreDataDelegate::applicationFilesDirectory() const
{
    return EVPaths::applicationFilesDirectory();
}

QString EVCoreDataDelegate::storeFilePath() const
{
    return applicationFilesDirectory() + QStringLiteral("/TallyWidgets.storedata");
}

void EVCoreDataDelegate::reportOpenFailure(const EVError &error)
{
    // The report ends the application; a store that fails again at every later use must not
    // raise a report each time.
    if (m_openFailed)
        return;
    m_openFailed = true;
    Q_EMIT errorReported(error);
}

EVStoreFile *EVCoreDataDelegate::persistentStoreCoordinator()
{
    if (m_coordinator || m_openFailed)
        return m_coordinator.get();

    const QString directory = applicationFilesDirectory();
    const QFileInfo info(directory);
    if (info.exists() && !info.isDir()) {
        reportOpenFailure(EVError{
            EVStoreErrorDomain, 101,
            QStringLiteral("Expected a folder to store application data, found a file (%1).")
                .arg(directory),
            QString()});
        return nullptr;
    }
    if (!info.exists() && !QDir().mkpath(directory)) {
        reportOpenFailure(EVError{
            EVFileErrorDomain, 1,
            QStringLiteral("The folder \"%1\" could not be created.").arg(directory), QString()});
        return nullptr;
    }

    auto coordinator = std::make_unique<EVStoreFile>(storeFilePath());
    EVError error;
    if (!coordinator->open(&error)) {
        reportOpenFailure(error);
        return nullptr;
    }
    m_coordinator = std::move(coordinator);
    return m_coordinator.get();
}

EVObjectContext *EVCoreDataDelegate::managedObjectContext()
{
    if (m_context || m_openFailed)
        return m_context.get();

    EVStoreFile *coordinator = persistentStoreCoordinator();
    if (!coordinator) {
        // The coordinator reports its own failures; under the rule of one report this is told
        // only should it ever fail without one.
        reportOpenFailure(EVError{EVStoreErrorDomain, 9999,
                                  QStringLiteral("Failed to initialize the store"),
                                  QStringLiteral("There was an error building up the data file.")});
        return nullptr;
    }
    auto context = std::make_unique<EVObjectContext>(coordinator);
    EVError error;
    if (!context->load(&error)) {
        reportOpenFailure(error);
        return nullptr;
    }
    m_context = std::move(context);
    return m_context.get();
}

QList<EVWidgetEntry *> EVCoreDataDelegate::fetchWidgetEntries()
{
    EVObjectContext *context = managedObjectContext();
    return context ? context->widgetEntries() : QList<EVWidgetEntry *>();
}

EVWidgetEntry *EVCoreDataDelegate::addWidgetEntry()
{
    EVObjectContext *context = managedObjectContext();
    if (!context)
        return nullptr;
    EVWidgetEntry *entry = context->insertWidgetEntry();
    entry->resetDefault();
    return entry;
}

EVCustomStyle *EVCoreDataDelegate::addCustomStyle(EVWidgetEntry *entry)
{
    EVObjectContext *context = managedObjectContext();
    if (!context || !entry)
        return nullptr;
    EVCustomStyle *style = context->insertCustomStyle();
    style->resetDefault();
    style->setSid(int(entry->customStyles().size()) + 1);
    entry->addCustomStylesObject(style);
    return style;
}

void EVCoreDataDelegate::removeWidgetEntry(EVWidgetEntry *entry)
{
    EVObjectContext *context = managedObjectContext();
    if (!context || !entry)
        return;
    entry->setIconfileData(QByteArray());
    for (EVCustomStyle *style : entry->customStyles())
        style->setImageData(QByteArray());
    context->deleteObject(entry);
}

void EVCoreDataDelegate::removeCustomStyle(EVCustomStyle *style, EVWidgetEntry *entry)
{
    if (!style || !entry)
        return;
    style->setImageData(QByteArray());
    const qsizetype position = entry->customStyles().indexOf(style);
    if (position < 0)
        return;
    entry->removeObjectFromCustomStylesAtIndex(position);
}

void EVCoreDataDelegate::save()
{
    EVObjectContext *context = managedObjectContext();
    if (!context)
        return;
    EVError error;
    if (!context->save(&error))
        Q_EMIT errorReported(error);
}
