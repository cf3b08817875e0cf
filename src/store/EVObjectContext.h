#pragma once

#include "core/EVError.h"
#include "store/EVStoreFile.h"

#include <QList>
#include <QSet>

#include <memory>
#include <vector>

class EVCustomStyle;
class EVWidgetEntry;

// Every record of the store in memory, with what changed since the last save. The file
// changes only when the context is saved.
class EVObjectContext
{
public:
    explicit EVObjectContext(EVStoreFile *file);
    ~EVObjectContext();
    EVObjectContext(const EVObjectContext &) = delete;
    EVObjectContext &operator=(const EVObjectContext &) = delete;

    // Reads the records of the file; false (with the error) when it cannot.
    bool load(EVError *error);

    EVWidgetEntry *insertWidgetEntry();
    EVCustomStyle *insertCustomStyle();

    // Deleted records stay valid objects for whoever still holds them, but are no longer
    // fetched and leave the file at the next save. An entry takes its custom styles with it.
    void deleteObject(EVWidgetEntry *entry);

    // Every entry, oldest created first.
    QList<EVWidgetEntry *> widgetEntries() const;
    // Every custom style, those attached to no entry included.
    QList<EVCustomStyle *> customStyles() const;
    // The uuids of every entry and custom style, which a new record must not take.
    QSet<QString> usedUuids() const;

    bool hasChanges() const;
    bool save(EVError *error);

private:
    EVStoreFile *m_file;
    std::vector<std::unique_ptr<EVWidgetEntry>> m_entries;
    std::vector<std::unique_ptr<EVCustomStyle>> m_styles;
    std::vector<std::unique_ptr<EVWidgetEntry>> m_deletedEntries;
    std::vector<std::unique_ptr<EVCustomStyle>> m_deletedStyles;
    QList<qint64> m_deletedEntryRows;
    QList<qint64> m_deletedStyleRows;
};
