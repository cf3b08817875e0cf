#include "store/EVStoreFile.h"

#include "store/EVCustomStyle.h"
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

template <typename Record>
void readFields(const std::vector<EVStoreColumn<Record>> &fields, const QSqlQuery &row,
                Record &record)
{
    int column = 1;
    for (const EVStoreColumn<Record> &field : fields) {
        field.read(row, column, record);
        column += int(field.names.size());
    }
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
    static const std::vector<EVStoreColumn<E>> columns{
        storeColumn(QStringLiteral("uuid"), &E::m_uuid),
        storeColumn(QStringLiteral("countdown_unit"), &E::m_countdownUnit),
        storeColumn(QStringLiteral("dateformat"), &E::m_dateformat),
        storeColumn(QStringLiteral("event_creation_date"), &E::m_eventCreationDate),
        storeColumn(QStringLiteral("event_date"), &E::m_eventDate),
        storeColumn(QStringLiteral("event_title"), &E::m_eventTitle),
        storeColumn(QStringLiteral("iconfile"), &E::m_iconfile),
        storeColumn(QStringLiteral("icon_file_path"), &E::m_iconFilePath),
        storeColumn(QStringLiteral("ignored_day_type"), &E::m_ignoredDayType),
        storeColumn(QStringLiteral("interval_alert_unit"), &E::m_intervalAlertUnit),
        storeColumn(QStringLiteral("interval_before_alert"), &E::m_intervalBeforeAlert),
        storeColumn(QStringLiteral("keep_top"), &E::m_keepTop),
        storeColumn(QStringLiteral("lock_widget"), &E::m_lockWidget),
        storeColumn(QStringLiteral("note"), &E::m_note),
        storeColumn(QStringLiteral("priority"), &E::m_priority),
        storeColumn(QStringLiteral("sound_alert"), &E::m_soundAlert),
        storeColumn(QStringLiteral("style_index"), &E::m_styleIndex),
        storeColumn(QStringLiteral("textcolor"), &E::m_textcolor),
        storeColumn(QStringLiteral("time_element"), &E::m_timeElement),
        storeColumn(QStringLiteral("widget_frame_desc"), &E::m_widgetFrameDesc),
    };
    return columns;
}

const std::vector<EVStoreColumn<EVCustomStyle>> &EVStoreFile::customStyleColumns()
{
    using S = EVCustomStyle;
    static const std::vector<EVStoreColumn<S>> columns{
        storeColumn(QStringLiteral("uuid"), &S::m_uuid),
        storeColumn(QStringLiteral("color"), &S::m_color),
        storeColumn(QStringLiteral("image"), &S::m_image),
        storeColumn(QStringLiteral("image_path"), &S::m_imagePath),
        storeColumn(QStringLiteral("opacity"), &S::m_opacity),
        storeColumn(QStringLiteral("sid"), &S::m_sid),
        storeColumn(QStringLiteral("type"), &S::m_type),
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
    return migrate(error);
}

bool EVStoreFile::migrate(EVError *error)
{
    QSqlQuery query(m_database);
    if (!query.exec(QStringLiteral("PRAGMA user_version")) || !query.next()) {
        *error =
            sqlError(QStringLiteral("The widget store cannot be read"), query.lastError().text());
        return false;
    }
    const int version = query.value(0).toInt();
    query.finish();
    if (version > schemaVersion) {
        *error = sqlError(QStringLiteral("The widget store was written by a newer Tallyvane"),
                          QStringLiteral("Its schema version is %1; this version reads up to %2.")
                              .arg(version)
                              .arg(schemaVersion));
        return false;
    }
    if (version == schemaVersion)
        return true;

    if (!m_database.transaction()) {
        *error = sqlError(QStringLiteral("The widget store cannot be written"),
                          m_database.lastError().text());
        return false;
    }
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

bool EVStoreFile::load(Records *records, EVError *error)
{
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("SELECT %1 FROM widget_entry ORDER BY id")
                        .arg(tableColumns(QStringLiteral("widget_entry")).join(u", ")))) {
        *error =
            sqlError(QStringLiteral("The widget store cannot be read"), query.lastError().text());
        return false;
    }
    QHash<qint64, EVWidgetEntry *> entriesByRow;
    while (query.next()) {
        auto entry = std::make_unique<EVWidgetEntry>();
        entry->m_rowId = query.value(0).toLongLong();
        readFields(widgetEntryColumns(), query, *entry);
        entry->m_changed = false;
        entriesByRow.insert(entry->m_rowId, entry.get());
        records->entries.push_back(std::move(entry));
    }

    const QStringList styleColumns = tableColumns(QStringLiteral("custom_style"));
    if (!query.exec(QStringLiteral("SELECT %1 FROM custom_style ORDER BY widget_id, position, id")
                        .arg(styleColumns.join(u", ")))) {
        *error =
            sqlError(QStringLiteral("The widget store cannot be read"), query.lastError().text());
        return false;
    }
    const int ownerColumn = int(styleColumns.indexOf(placementColumns.first().first));
    while (query.next()) {
        auto style = std::make_unique<EVCustomStyle>();
        style->m_rowId = query.value(0).toLongLong();
        readFields(customStyleColumns(), query, *style);
        EVWidgetEntry *owner = entriesByRow.value(query.value(ownerColumn).toLongLong());
        if (owner) {
            owner->m_customStyles.append(style.get());
            style->m_widget = owner;
            m_storedPlacements.insert(style.get(),
                                      {owner->m_rowId, owner->m_customStyles.size() - 1});
        }
        style->m_changed = false;
        records->styles.push_back(std::move(style));
    }
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
