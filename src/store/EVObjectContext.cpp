#include "store/EVObjectContext.h"

#include "store/EVCustomStyle.h"
#include "store/EVWidgetEntry.h"

#include <algorithm>

EVObjectContext::EVObjectContext(EVStoreFile *file)
    : m_file(file)
{}

EVObjectContext::~EVObjectContext()
{
    // Entries let go of their styles as they go, so they must go while the styles still exist.
    m_entries.clear();
    m_deletedEntries.clear();
}

bool EVObjectContext::load(EVError *error)
{
    EVStoreFile::Records records;
    if (!m_file->load(&records, error))
        return false;
    m_entries = std::move(records.entries);
    m_styles = std::move(records.styles);
    m_deletedEntryRows.append(records.replacedEntryRows);
    m_deletedStyleRows.append(records.replacedStyleRows);
    return true;
}

EVWidgetEntry *EVObjectContext::insertWidgetEntry()
{
    m_entries.push_back(std::make_unique<EVWidgetEntry>());
    return m_entries.back().get();
}

EVCustomStyle *EVObjectContext::insertCustomStyle()
{
    m_styles.push_back(std::make_unique<EVCustomStyle>());
    return m_styles.back().get();
}

void EVObjectContext::deleteObject(EVWidgetEntry *entry)
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [entry](const auto &owned) { return owned.get() == entry; });
    if (found == m_entries.end())
        return;

    const QList<EVCustomStyle *> styles = entry->customStyles();
    for (EVCustomStyle *style : styles) {
        const auto owned = std::find_if(m_styles.begin(), m_styles.end(),
                                        [style](const auto &s) { return s.get() == style; });
        if (owned == m_styles.end())
            continue;
        if (style->m_rowId > 0)
            m_deletedStyleRows.append(style->m_rowId);
        m_deletedStyles.push_back(std::move(*owned));
        m_styles.erase(owned);
    }
    if (entry->m_rowId > 0)
        m_deletedEntryRows.append(entry->m_rowId);
    m_deletedEntries.push_back(std::move(*found));
    m_entries.erase(found);
}

QList<EVWidgetEntry *> EVObjectContext::widgetEntries() const
{
    QList<EVWidgetEntry *> entries;
    entries.reserve(qsizetype(m_entries.size()));
    for (const auto &entry : m_entries)
        entries.append(entry.get());
    std::stable_sort(entries.begin(), entries.end(),
                     [](const EVWidgetEntry *a, const EVWidgetEntry *b) {
                         return a->eventCreationDate() < b->eventCreationDate();
                     });
    return entries;
}

QList<EVCustomStyle *> EVObjectContext::customStyles() const
{
    QList<EVCustomStyle *> styles;
    styles.reserve(qsizetype(m_styles.size()));
    for (const auto &style : m_styles)
        styles.append(style.get());
    return styles;
}

bool EVObjectContext::hasChanges() const
{
    const auto changed = [](const auto &record) {
        return record->m_rowId <= 0 || record->hasChanges();
    };
    return !m_deletedEntryRows.isEmpty() || !m_deletedStyleRows.isEmpty() ||
           std::any_of(m_entries.begin(), m_entries.end(), changed) ||
           std::any_of(m_styles.begin(), m_styles.end(), changed);
}

bool EVObjectContext::save(EVError *error)
{
    if (!hasChanges())
        return true;
    const EVStoreFile::Changes changes{widgetEntries(), customStyles(), m_deletedEntryRows,
                                       m_deletedStyleRows};
    if (!m_file->save(changes, error))
        return false;
    m_deletedEntryRows.clear();
    m_deletedStyleRows.clear();
    return true;
}

QSet<QString> EVObjectContext::usedUuids() const
{
    QSet<QString> used;
    for (const EVWidgetEntry *entry : widgetEntries())
        used.insert(entry->uuid());
    for (const EVCustomStyle *style : customStyles())
        used.insert(style->uuid());
    return used;
}
