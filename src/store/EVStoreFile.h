#pragma once

#include "core/EVError.h"

#include <QHash>
#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <memory>
#include <utility>
#include <vector>

class EVCustomStyle;
class EVManagedRecord;
class EVRepairLog;
class EVWidgetEntry;
template <typename Record>
struct EVStoreColumn;

// The SQLite file that holds every widget entry and custom style. Each save is one
// transaction, so that a crash or kill while saving leaves the previous save intact.
class EVStoreFile
{
public:
    static constexpr int schemaVersion = 1;

    explicit EVStoreFile(const QString &path);
    ~EVStoreFile();
    EVStoreFile(const EVStoreFile &) = delete;
    EVStoreFile &operator=(const EVStoreFile &) = delete;

    QString path() const { return m_path; }

    // Opens the file, creating it when absent, and brings its schema up to date. A file that
    // is damaged, of an unknown schema version or not laid out as this version writes it is
    // refused before anything is written to it, so that it stays as it was for the user to
    // recover.
    bool open(EVError *error);

    struct Records
    {
        std::vector<std::unique_ptr<EVWidgetEntry>> entries;
        std::vector<std::unique_ptr<EVCustomStyle>> styles;
        // Rows whose ids are not positive: their records are written again as new rows, and
        // these rows must go in the same save, so that no record is ever written twice.
        QList<qint64> replacedEntryRows;
        QList<qint64> replacedStyleRows;
    };
    // Reads every record, whole or not at all; custom styles come attached to their entries in
    // their stored order. Values that cannot be used take their defaults, and every kind of
    // repair is logged once.
    bool load(Records *records, EVError *error);

    struct Changes
    {
        QList<EVWidgetEntry *> entries;
        QList<EVCustomStyle *> styles;
        QList<qint64> deletedEntryRows;
        QList<qint64> deletedStyleRows;
    };
    // Writes new and changed records and removes deleted ones, all or nothing. On success the
    // records are marked saved.
    bool save(const Changes &changes, EVError *error);

    // The columns a table of the file is read and written with, the row id first, each with
    // its SQL type.
    using ColumnType = std::pair<QString, QString>;
    static QList<ColumnType> tableColumnTypes(const QString &table);
    static QStringList tableColumns(const QString &table);

private:
    struct Placement
    {
        qint64 ownerRow = 0;
        qsizetype position = -1;
        bool operator==(const Placement &) const = default;
    };

    // Every field of each record, in the order of its columns.
    static const std::vector<EVStoreColumn<EVWidgetEntry>> &widgetEntryColumns();
    static const std::vector<EVStoreColumn<EVCustomStyle>> &customStyleColumns();

    bool readSchemaVersion(int *version, EVError *error);
    bool checkWhole(EVError *error);
    bool migrate(int version, EVError *error);
    bool checkTables(EVError *error);
    // Gives a record read from the file its row id and marks whether it must be written again:
    // when a field took its fallback, or when its row id is not positive.
    static void takeRowId(EVManagedRecord &record, qint64 row, bool asStored,
                          QList<qint64> *replacedRows, const QString &table, EVRepairLog *log);
    EVError sqlError(const QString &what, const QString &detail) const;

    QString m_path;
    QString m_connectionName;
    QSqlDatabase m_database;
    // Where each custom style was last written, to rewrite only styles that moved.
    QHash<const EVCustomStyle *, Placement> m_storedPlacements;
};
