#pragma once

#include "core/EVError.h"

#include <QList>
#include <QObject>
#include <QString>

#include <memory>

class EVCustomStyle;
class EVObjectContext;
class EVStoreFile;
class EVWidgetEntry;

// Owner of the one widget store: the store file, and the context in which every widget entry
// and custom style lives. Failures to open, read or save the store are reported through
// errorReported; the application shell turns them into its fatal report to the user. A store
// that cannot be opened or read is reported once: every later use quietly finds no store,
// and nothing is ever loaded in part.
class EVCoreDataDelegate : public QObject
{
    Q_OBJECT

public:
    // The process-wide store, made on first use.
    static EVCoreDataDelegate *shareCoreDataDelegate();

    explicit EVCoreDataDelegate(QObject *parent = nullptr);
    ~EVCoreDataDelegate() override;

    // The folder of the store file (not created here).
    QString applicationFilesDirectory() const;
    QString storeFilePath() const;

    // Built on first use and kept; none after a failure, which has been reported, and none
    // from then on.
    EVStoreFile *persistentStoreCoordinator();
    EVObjectContext *managedObjectContext();

    // Every entry, oldest created first; empty when the store cannot be used.
    QList<EVWidgetEntry *> fetchWidgetEntries();
    // A new entry with every default; not saved until save().
    EVWidgetEntry *addWidgetEntry();
    // A new custom style appended to the entry; not saved until save().
    EVCustomStyle *addCustomStyle(EVWidgetEntry *entry);
    // Deletes the entry's pictures, then the entry with its custom styles.
    void removeWidgetEntry(EVWidgetEntry *entry);
    // Deletes the style's picture and detaches it from the entry; the style record stays in
    // the store, attached to no entry.
    void removeCustomStyle(EVCustomStyle *style, EVWidgetEntry *entry);
    // Writes every change since the last save in one transaction.
    void save();

Q_SIGNALS:
    // Emitted for the first failure to open or read the store, and for every failed save.
    void errorReported(const EVError &error);

private:
    void reportOpenFailure(const EVError &error);

    bool m_openFailed = false;
    std::unique_ptr<EVStoreFile> m_coordinator;
    std::unique_ptr<EVObjectContext> m_context;
};
