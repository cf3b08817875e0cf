#include "store/EVStoreFile.h"

#include "core/EVClock.h"
#include "store/EVCustomStyle.h"
#include "store/EVPictureFile.h"
#include "store/EVRecordRepair.h"
#include "store/EVRepairLog.h"
#include "store/EVStoreColumn.h"
#include "store/EVWidgetEntry.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <vector>

namespace {

// Each step brings the schema from the version before it to its own number.
const char *const schemaSteps[] = {
    // 1: the first schema.
    "CREATE TABLE widget_entry ("
    " id INTEGER PRIMARY KEY, uuid TEXT, countdown_unit INTEGER, dateformat INTEGER,"
    " event_creation_date INTEGER, event_date INTEGER, event_title TEXT, iconfile BLOB,"
    " icon_file_path TEXT, ignored_day_type INTEGER, interval_alert_unit INTEGER,"
    " interval_before_alert INTEGER, keep_top INTEGER, lock_widget INTEGER, note TEXT,"
    " priority INTEGER, sound_alert INTEGER, style_index INTEGER, textcolor_red REAL,"
    " textcolor_green REAL, textcolor_blue REAL, textcolor_alpha REAL, time_element INTEGER,"
    " widget_frame_desc TEXT);"
    "CREATE TABLE custom_style ("
    " id INTEGER PRIMARY KEY, uuid TEXT, color_red REAL, color_green REAL, color_blue REAL,"
    " color_alpha REAL, image BLOB, image_path TEXT, opacity REAL, sid INTEGER, type INTEGER,"
    " widget_id INTEGER, position INTEGER);"
    "CREATE INDEX custom_style_placement ON custom_style (widget_id, position);",
};
static_assert(std::size(schemaSteps) == EVStoreFile::schemaVersion);

QString placeholders(qsizetype count)
{
    QStringList marks;
    for (qsizetype i = 0; i < count; ++i)
        marks.append(QStringLiteral("?"));
    return marks.join(QStringLiteral(", "));
}

// The row id, then every column of the table's fields, then the extra columns, in order.
template <typename Record>
QList<EVStoreFile::ColumnType> columnTypes(const std::vector<EVStoreColumn<Record>> &fields,
                                           const QList<EVStoreFile::ColumnType> &extra = {})
{
    QList<EVStoreFile::ColumnType> columns{{QStringLiteral("id"), QStringLiteral("INTEGER")}};
    for (const EVStoreColumn<Record> &field : fields) {
        for (const QString &name : field.names)
            columns.append({name, field.sqlType});
    }
    return columns + extra;
}

// Reads every field of a row; each one that took its fallback is counted as a repair of its
// column. True when every field could be used as stored.
template <typename Record>
bool readFields(const std::vector<EVStoreColumn<Record>> &fields, const QString &table,
                const QSqlQuery &row, Record &record, EVRepairLog *log)
{
    bool asStored = true;
    int column = 1;
    for (const EVStoreColumn<Record> &field : fields) {
        if (!field.read(row, column, record)) {
            asStored = false;
            QString name = field.names.first();
            if (field.names.size() > 1)
                name.truncate(name.lastIndexOf(QLatin1Char('_'))); // a colour's components
            log->count(table + QLatin1Char('.') + name +
                       QStringLiteral(": %1 stored values were out of range or of the wrong "
                                      "kind and took the field's default"));
        }
        column += int(field.names.size());
    }
    return asStored;
}

// A picture's path field names a file inside the picture folder, or nothing.
bool isPictureFileName(const QString &path)
{
    return path.isNull() || EVPictureFile::isFileName(path);
}

template <typename Record>
void bindFields(const std::vector<EVStoreColumn<Record>> &fields, QSqlQuery &statement,
                const Record &record)
{
    for (const EVStoreColumn<Record> &field : fields)
        field.bind(statement, record);
}

QVariant rowColumn(qint64 row)
{
    return row > 0 ? QVariant(row) : QVariant();
}

// Where a custom style sits: the row of its entry and its place in the entry's list.
const QList<EVStoreFile::ColumnType> placementColumns{
    {QStringLiteral("widget_id"), QStringLiteral("INTEGER")},
    {QStringLiteral("position"), QStringLiteral("INTEGER")}};

} // namespace

EVStoreFile::EVStoreFile(const QString &path)
    : m_path(path)
    , m_connectionName(QStringLiteral("tallyvane-store-%1").arg(quintptr(this), 0, 16))
{}

EVStoreFile::~EVStoreFile()
{
    if (m_database.isValid()) {
        m_database.close();
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_connectionName);
    }
}

const std::vector<EVStoreColumn<EVWidgetEntry>> &EVStoreFile::widgetEntryColumns()
{
    using E = EVWidgetEntry;
    // Numbers whose every value has a documented meaning (a unit outside 1 to 4 counts in time,
    // a date format outside 0 to 5 takes the table's last row) keep any 32-bit value; indexes
    // into a fixed list keep only the list's. The uuid and the style index are judged with the
    // other records (EVRecordRepair), the frame where it is read (EVWidgetEntry::frame).
    static const std::vector<EVStoreColumn<E>> columns{
        storeColumn(QStringLiteral("uuid"), &E::m_uuid),
        storeColumn(QStringLiteral("countdown_unit"), &E::m_countdownUnit,
                    orElse<E>(std::optional<int>(E::defaultCountdownUnit))),
        storeColumn(QStringLiteral("dateformat"), &E::m_dateformat,
                    orElse<E>(std::optional<int>(E::defaultDateformat))),
        storeColumn(QStringLiteral("event_creation_date"), &E::m_eventCreationDate,
                    orElseFrom<E, QDateTime>([](const E &) { return EVClock::now(); })),
        storeColumn(QStringLiteral("event_date"), &E::m_eventDate,
                    orElseFrom<E, QDateTime>([](const E &entry) {
                        const QDateTime created = entry.eventCreationDate().isValid()
                                                      ? entry.eventCreationDate()
                                                      : EVClock::now();
                        return created.addSecs(E::defaultEventDistanceSeconds);
                    })),
        storeColumn(QStringLiteral("event_title"), &E::m_eventTitle,
                    orElse<E>(E::defaultEventTitle())),
        storeColumn(QStringLiteral("iconfile"), &E::m_iconfile),
        storeColumn(QStringLiteral("icon_file_path"), &E::m_iconFilePath,
                    EVStoreRule<E, QString>{isPictureFileName}),
        storeColumn(QStringLiteral("ignored_day_type"), &E::m_ignoredDayType, within<E>(0, 2, 0)),
        storeColumn(QStringLiteral("interval_alert_unit"), &E::m_intervalAlertUnit,
                    within<E>(0, 4, E::defaultIntervalAlertUnit)),
        storeColumn(QStringLiteral("interval_before_alert"), &E::m_intervalBeforeAlert,
                    orElse<E>(std::optional<int>(E::defaultIntervalBeforeAlert))),
        storeColumn(QStringLiteral("keep_top"), &E::m_keepTop, within<E>(0, 2, 0)),
        storeColumn(QStringLiteral("lock_widget"), &E::m_lockWidget,
                    orElse<E>(std::optional<bool>(false))),
        storeColumn(QStringLiteral("note"), &E::m_note, orElse<E>(QStringLiteral(""))),
        storeColumn(QStringLiteral("priority"), &E::m_priority, within<E>(0, 3, 0)),
        storeColumn(QStringLiteral("sound_alert"), &E::m_soundAlert,
                    orElse<E>(std::optional<bool>(false))),
        storeColumn(QStringLiteral("style_index"), &E::m_styleIndex,
                    orElse<E>(std::optional<int>(E::defaultStyleIndex))),
        storeColumn(QStringLiteral("textcolor"), &E::m_textcolor, orElse<E>(E::defaultTextcolor())),
        storeColumn(QStringLiteral("time_element"), &E::m_timeElement,
                    orElse<E>(std::optional<bool>(false))),
        storeColumn(QStringLiteral("widget_frame_desc"), &E::m_widgetFrameDesc),
    };
    return columns;
}

const std::vector<EVStoreColumn<EVCustomStyle>> &EVStoreFile::customStyleColumns()
{
    using S = EVCustomStyle;
    static const std::vector<EVStoreColumn<S>> columns{
        storeColumn(QStringLiteral("uuid"), &S::m_uuid),
        storeColumn(QStringLiteral("color"), &S::m_color, orElse<S>(S::defaultColor())),
        storeColumn(QStringLiteral("image"), &S::m_image),
        storeColumn(QStringLiteral("image_path"), &S::m_imagePath,
                    EVStoreRule<S, QString>{isPictureFileName}),
        // A fraction; outside 0 to 1 it is as unset as a new style's.
        storeColumn(QStringLiteral("opacity"), &S::m_opacity,
                    EVStoreRule<S, std::optional<float>>{[](const std::optional<float> &value) {
                        return !value || (*value >= 0.0f && *value <= 1.0f);
                    }}),
        storeColumn(QStringLiteral("sid"), &S::m_sid),
        storeColumn(QStringLiteral("type"), &S::m_type, within<S>(0, 1, 0)),
    };
    return columns;
}

QList<EVStoreFile::ColumnType> EVStoreFile::tableColumnTypes(const QString &table)
{
    if (table == QLatin1String("widget_entry"))
        return columnTypes(widgetEntryColumns());
    if (table == QLatin1String("custom_style"))
        return columnTypes(customStyleColumns(), placementColumns);
    return {};
}

QStringList EVStoreFile::tableColumns(const QString &table)
{
    QStringList names;
    for (const ColumnType &column : tableColumnTypes(table))
        names.append(column.first);
    return names;
}

EVError EVStoreFile::sqlError(const QString &what, const QString &detail) const
{
    return EVError{EVDatabaseErrorDomain, 1, QStringLiteral("%1 (%2).").arg(what, m_path), detail};
}

bool EVStoreFile::open(EVError *error)
{
    if (!m_database.isValid()) {
        m_database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
        m_database.setDatabaseName(m_path);
    }
    if (!m_database.isValid()) {
        *error =
            sqlError(QStringLiteral("The SQLite driver is missing"), m_database.lastError().text());
        return false;
    }
    if (!m_database.isOpen() && !m_database.open()) {
        *error = sqlError(QStringLiteral("The widget store cannot be opened"),
                          m_database.lastError().text());
        return false;
    }
    int version = 0;
    return readSchemaVersion(&version, error) && checkWhole(error) && migrate(version, error) &&
           checkTables(error);
}

bool EVStoreFile::readSchemaVersion(int *version, EVError *error)
{
    QSqlQuery query(m_database);
    if (!query.exec(QStringLiteral("PRAGMA user_version")) || !query.next()) {
        *error =
            sqlError(QStringLiteral("The widget store cannot be read"), query.lastError().text());
        return false;
    }
    *version = query.value(0).toInt();
    if (*version > schemaVersion) {
        *error = sqlError(QStringLiteral("The widget store was written by a newer Tallyvane"),
                          QStringLiteral("Its schema version is %1; this version reads up to %2.")
                              .arg(*version)
                              .arg(schemaVersion));
        return false;
    }
    if (*version < 0) {
        *error = sqlError(
            QStringLiteral("The widget store cannot be read"),
            QStringLiteral("Its schema version %1 is not one Tallyvane writes.").arg(*version));
        return false;
    }
    return true;
}

// Every page of the file is looked at before any record is read, so that a damaged file is
// refused whole rather than loaded in part.
bool EVStoreFile::checkWhole(EVError *error)
{
    QSqlQuery query(m_database);
    if (!query.exec(QStringLiteral("PRAGMA integrity_check(1)")) || !query.next()) {
        *error =
            sqlError(QStringLiteral("The widget store cannot be read"), query.lastError().text());
        return false;
    }
    const QString verdict = query.value(0).toString();
    if (verdict != QLatin1String("ok")) {
        *error = sqlError(QStringLiteral("The widget store is damaged"), verdict);
        return false;
    }
    return true;
}

bool EVStoreFile::migrate(int version, EVError *error)
{
    if (version == schemaVersion)
        return true;

    if (!m_database.transaction()) {
        *error = sqlError(QStringLiteral("The widget store cannot be written"),
                          m_database.lastError().text());
        return false;
    }
    QSqlQuery query(m_database);
    for (int step = version; step < schemaVersion; ++step) {
        const QStringList statements =
            QString::fromLatin1(schemaSteps[step]).split(QLatin1Char(';'), Qt::SkipEmptyParts);
        for (const QString &statement : statements) {
            if (!query.exec(statement)) {
                *error = sqlError(QStringLiteral("The widget store cannot be upgraded"),
                                  query.lastError().text());
                m_database.rollback();
                return false;
            }
        }
    }
    if (!query.exec(QStringLiteral("PRAGMA user_version = %1").arg(schemaVersion)) ||
        !m_database.commit()) {
        *error = sqlError(QStringLiteral("The widget store cannot be upgraded"),
                          m_database.lastError().text());
        m_database.rollback();
        return false;
    }
    return true;
}

// The tables must be the ones this version writes: real tables with exactly their columns, the
// row id as their key, and no triggers that would change what a save writes. A file laid out
// otherwise was not written by Tallyvane, or was changed beyond what can be read safely.
bool EVStoreFile::checkTables(EVError *error)
{
    const auto refuse = [&](const QString &detail) {
        *error = sqlError(QStringLiteral("The widget store is not laid out as Tallyvane writes it"),
                          detail);
        return false;
    };
    QSqlQuery query(m_database);
    if (!query.exec(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type = 'trigger'")) ||
        !query.next())
        return refuse(query.lastError().text());
    if (query.value(0).toLongLong() != 0)
        return refuse(QStringLiteral("It holds triggers."));

    for (const QString &table : {QStringLiteral("widget_entry"), QStringLiteral("custom_style")}) {
        query.prepare(QStringLiteral("SELECT type FROM sqlite_master WHERE name = ?"));
        query.addBindValue(table);
        if (!query.exec() || !query.next() || query.value(0).toString() != QLatin1String("table"))
            return refuse(QStringLiteral("%1 is not a table.").arg(table));

        QList<ColumnType> columns;
        if (!query.exec(QStringLiteral("PRAGMA table_xinfo(%1)").arg(table)))
            return refuse(query.lastError().text());
        while (query.next()) {
            // cid, name, type, notnull, dflt_value, pk, hidden
            const bool isKey = query.value(5).toInt() != 0;
            if (isKey != columns.isEmpty() || query.value(6).toInt() != 0)
                return refuse(QStringLiteral("%1 is not keyed by its row id.").arg(table));
            columns.append({query.value(1).toString(), query.value(2).toString()});
        }
        if (query.lastError().isValid() || columns != tableColumnTypes(table))
            return refuse(
                QStringLiteral("%1 does not have the columns of this version.").arg(table));
    }
    return true;
}

// A row id that is not positive cannot be told from a record never written: the record is
// written again as a new row, and its old row is removed in the same save. A record with a
// field that took its fallback is written again too, so that the file holds the repair.
void EVStoreFile::takeRowId(EVManagedRecord &record, qint64 row, bool asStored,
                            QList<qint64> *replacedRows, const QString &table, EVRepairLog *log)
{
    const bool replaced = row <= 0;
    if (replaced) {
        replacedRows->append(row);
        log->count(table + QStringLiteral(": %1 rows had ids that are not positive; they are "
                                          "written again under new ids at the next save"));
    }
    record.m_rowId = replaced ? 0 : row;
    record.m_changed = !asStored || replaced;
}

bool EVStoreFile::load(Records *records, EVError *error)
{
    EVRepairLog repairs;
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    const auto unreadable = [&] {
        *error =
            sqlError(QStringLiteral("The widget store cannot be read"), query.lastError().text());
        return false;
    };
    const QString entryTable = QStringLiteral("widget_entry");
    if (!query.exec(QStringLiteral("SELECT %1 FROM widget_entry ORDER BY id")
                        .arg(tableColumns(entryTable).join(u", "))))
        return unreadable();
    QHash<qint64, EVWidgetEntry *> entriesByRow;
    while (query.next()) {
        auto entry = std::make_unique<EVWidgetEntry>();
        const qint64 row = query.value(0).toLongLong();
        const bool asStored = readFields(widgetEntryColumns(), entryTable, query, *entry, &repairs);
        takeRowId(*entry, row, asStored, &records->replacedEntryRows, entryTable, &repairs);
        entriesByRow.insert(row, entry.get());
        records->entries.push_back(std::move(entry));
    }
    // A row that cannot be read ends the rows as if they were all: only the error tells.
    if (query.lastError().isValid())
        return unreadable();

    const QString styleTable = QStringLiteral("custom_style");
    const QStringList styleColumns = tableColumns(styleTable);
    if (!query.exec(QStringLiteral("SELECT %1 FROM custom_style ORDER BY widget_id, position, id")
                        .arg(styleColumns.join(u", "))))
        return unreadable();
    const int ownerColumn = int(styleColumns.indexOf(placementColumns.first().first));
    while (query.next()) {
        auto style = std::make_unique<EVCustomStyle>();
        const qint64 row = query.value(0).toLongLong();
        const bool asStored = readFields(customStyleColumns(), styleTable, query, *style, &repairs);
        takeRowId(*style, row, asStored, &records->replacedStyleRows, styleTable, &repairs);
        const std::optional<qint64> ownerRow = EVStoreValue::integer(query.value(ownerColumn));
        EVWidgetEntry *owner = ownerRow ? entriesByRow.value(*ownerRow) : nullptr;
        if (owner) {
            owner->m_customStyles.append(style.get());
            style->m_widget = owner;
            m_storedPlacements.insert(style.get(),
                                      {owner->m_rowId, owner->m_customStyles.size() - 1});
        }
        records->styles.push_back(std::move(style));
    }
    if (query.lastError().isValid())
        return unreadable();

    EVRecordRepair::repair(*records, &repairs);
    repairs.write();
    return true;
}

bool EVStoreFile::save(const Changes &changes, EVError *error)
{
    const auto fail = [&](const QString &detail) {
        *error = sqlError(QStringLiteral("The widget store cannot be saved"), detail);
        m_database.rollback();
        return false;
    };
    if (!m_database.transaction())
        return fail(m_database.lastError().text());

    QSqlQuery remove(m_database);
    for (const auto &[table, rows] :
         {std::pair{QStringLiteral("custom_style"), &changes.deletedStyleRows},
          std::pair{QStringLiteral("widget_entry"), &changes.deletedEntryRows}}) {
        if (rows->isEmpty())
            continue;
        remove.prepare(QStringLiteral("DELETE FROM %1 WHERE id = ?").arg(table));
        for (qint64 row : *rows) {
            remove.addBindValue(row);
            if (!remove.exec())
                return fail(remove.lastError().text());
        }
    }

    // Rows given to new records take effect only once the transaction has committed.
    QHash<const EVManagedRecord *, qint64> newRows;
    const auto rowOf = [&newRows](const EVManagedRecord *record) {
        return record->m_rowId > 0 ? record->m_rowId : newRows.value(record);
    };

    QSqlQuery write(m_database);
    const QStringList entryColumns = tableColumns(QStringLiteral("widget_entry"));
    write.prepare(QStringLiteral("INSERT OR REPLACE INTO widget_entry (%1) VALUES (%2)")
                      .arg(entryColumns.join(u", "), placeholders(entryColumns.size())));
    for (const EVWidgetEntry *entry : changes.entries) {
        if (entry->m_rowId > 0 && !entry->m_changed)
            continue;
        write.addBindValue(rowColumn(entry->m_rowId));
        bindFields(widgetEntryColumns(), write, *entry);
        if (!write.exec())
            return fail(write.lastError().text());
        if (entry->m_rowId <= 0)
            newRows.insert(entry, write.lastInsertId().toLongLong());
    }

    QHash<const EVCustomStyle *, Placement> placements;
    for (const EVWidgetEntry *entry : changes.entries) {
        for (qsizetype i = 0; i < entry->m_customStyles.size(); ++i)
            placements.insert(entry->m_customStyles.at(i), {rowOf(entry), i});
    }

    const QStringList styleColumns = tableColumns(QStringLiteral("custom_style"));
    write.prepare(QStringLiteral("INSERT OR REPLACE INTO custom_style (%1) VALUES (%2)")
                      .arg(styleColumns.join(u", "), placeholders(styleColumns.size())));
    for (const EVCustomStyle *style : changes.styles) {
        const Placement placement = placements.value(style);
        if (style->m_rowId > 0 && !style->m_changed && m_storedPlacements.value(style) == placement)
            continue;
        write.addBindValue(rowColumn(style->m_rowId));
        bindFields(customStyleColumns(), write, *style);
        write.addBindValue(rowColumn(placement.ownerRow));
        write.addBindValue(placement.position >= 0 ? QVariant(placement.position) : QVariant());
        if (!write.exec())
            return fail(write.lastError().text());
        if (style->m_rowId <= 0)
            newRows.insert(style, write.lastInsertId().toLongLong());
    }
    write.finish();

    if (!m_database.commit())
        return fail(m_database.lastError().text());

    const auto markSaved = [&newRows](EVManagedRecord *record) {
        if (record->m_rowId <= 0)
            record->m_rowId = newRows.value(record);
        record->m_changed = false;
    };
    for (EVWidgetEntry *entry : changes.entries)
        markSaved(entry);
    for (EVCustomStyle *style : changes.styles)
        markSaved(style);
    m_storedPlacements = std::move(placements);
    return true;
}
