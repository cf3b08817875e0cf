#include "store/EVStoreFile.h"

#include "store/EVCustomStyle.h"
#include "store/EVWidgetEntry.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <optional>

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

const QString entryColumns = QStringLiteral(
    "id, uuid, countdown_unit, dateformat, event_creation_date, event_date, event_title,"
    " iconfile, icon_file_path, ignored_day_type, interval_alert_unit, interval_before_alert,"
    " keep_top, lock_widget, note, priority, sound_alert, style_index, textcolor_red,"
    " textcolor_green, textcolor_blue, textcolor_alpha, time_element, widget_frame_desc");
constexpr int entryColumnCount = 24;

const QString styleColumns =
    QStringLiteral("id, uuid, color_red, color_green, color_blue, color_alpha, image, image_path,"
                   " opacity, sid, type, widget_id, position");
constexpr int styleColumnCount = 13;

QString placeholders(int count)
{
    QStringList marks;
    for (int i = 0; i < count; ++i)
        marks.append(QStringLiteral("?"));
    return marks.join(QStringLiteral(", "));
}

// Values as they go into the file: none is NULL for every kind of value.
template <typename T>
QVariant toColumn(const std::optional<T> &value)
{
    return value ? QVariant::fromValue(*value) : QVariant();
}
QVariant toColumn(const QString &value)
{
    return value.isNull() ? QVariant() : QVariant(value);
}
QVariant toColumn(const QByteArray &value)
{
    return value.isNull() ? QVariant() : QVariant(value);
}
QVariant toColumn(const QDateTime &value)
{
    return value.isValid() ? QVariant(value.toMSecsSinceEpoch()) : QVariant();
}
QVariant rowColumn(qint64 row)
{
    return row > 0 ? QVariant(row) : QVariant();
}

void bindColor(QSqlQuery &query, const QColor &color)
{
    float components[4] = {};
    if (color.isValid()) {
        const QColor rgb = color.toRgb();
        rgb.getRgbF(&components[0], &components[1], &components[2], &components[3]);
    }
    for (float component : components)
        query.addBindValue(color.isValid() ? QVariant(double(component)) : QVariant());
}

// Values as they come out of the file.
class Row
{
public:
    explicit Row(const QSqlQuery &query)
        : m_query(query)
    {}

    qint64 row(int column) const { return m_query.value(column).toLongLong(); }
    std::optional<int> integer(int column) const
    {
        return isNull(column) ? std::nullopt : std::optional<int>(m_query.value(column).toInt());
    }
    std::optional<bool> boolean(int column) const
    {
        return isNull(column) ? std::nullopt : std::optional<bool>(m_query.value(column).toInt());
    }
    std::optional<float> real(int column) const
    {
        return isNull(column) ? std::nullopt
                              : std::optional<float>(float(m_query.value(column).toDouble()));
    }
    QString text(int column) const
    {
        if (isNull(column))
            return QString();
        const QString value = m_query.value(column).toString();
        return value.isNull() ? QStringLiteral("") : value;
    }
    QByteArray bytes(int column) const
    {
        if (isNull(column))
            return QByteArray();
        // SQLite hands out an empty blob as a null pointer; it is still not none.
        const QByteArray value = m_query.value(column).toByteArray();
        return value.isNull() ? QByteArray("") : value;
    }
    QDateTime date(int column) const
    {
        return isNull(column) ? QDateTime()
                              : QDateTime::fromMSecsSinceEpoch(m_query.value(column).toLongLong());
    }
    QColor color(int firstColumn) const
    {
        if (isNull(firstColumn))
            return QColor();
        return QColor::fromRgbF(float(m_query.value(firstColumn).toDouble()),
                                float(m_query.value(firstColumn + 1).toDouble()),
                                float(m_query.value(firstColumn + 2).toDouble()),
                                float(m_query.value(firstColumn + 3).toDouble()));
    }

private:
    bool isNull(int column) const { return m_query.isNull(column); }
    const QSqlQuery &m_query;
};

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
    if (!query.exec(QStringLiteral("SELECT %1 FROM widget_entry ORDER BY id").arg(entryColumns))) {
        *error =
            sqlError(QStringLiteral("The widget store cannot be read"), query.lastError().text());
        return false;
    }
    QHash<qint64, EVWidgetEntry *> entriesByRow;
    while (query.next()) {
        const Row row(query);
        auto entry = std::make_unique<EVWidgetEntry>();
        entry->m_rowId = row.row(0);
        entry->m_uuid = row.text(1);
        entry->m_countdownUnit = row.integer(2);
        entry->m_dateformat = row.integer(3);
        entry->m_eventCreationDate = row.date(4);
        entry->m_eventDate = row.date(5);
        entry->m_eventTitle = row.text(6);
        entry->m_iconfile = row.bytes(7);
        entry->m_iconFilePath = row.text(8);
        entry->m_ignoredDayType = row.integer(9);
        entry->m_intervalAlertUnit = row.integer(10);
        entry->m_intervalBeforeAlert = row.integer(11);
        entry->m_keepTop = row.integer(12);
        entry->m_lockWidget = row.boolean(13);
        entry->m_note = row.text(14);
        entry->m_priority = row.integer(15);
        entry->m_soundAlert = row.boolean(16);
        entry->m_styleIndex = row.integer(17);
        entry->m_textcolor = row.color(18);
        entry->m_timeElement = row.boolean(22);
        entry->m_widgetFrameDesc = row.text(23);
        entry->m_changed = false;
        entriesByRow.insert(entry->m_rowId, entry.get());
        records->entries.push_back(std::move(entry));
    }

    if (!query.exec(QStringLiteral("SELECT %1 FROM custom_style ORDER BY widget_id, position, id")
                        .arg(styleColumns))) {
        *error =
            sqlError(QStringLiteral("The widget store cannot be read"), query.lastError().text());
        return false;
    }
    while (query.next()) {
        const Row row(query);
        auto style = std::make_unique<EVCustomStyle>();
        style->m_rowId = row.row(0);
        style->m_uuid = row.text(1);
        style->m_color = row.color(2);
        style->m_image = row.bytes(6);
        style->m_imagePath = row.text(7);
        style->m_opacity = row.real(8);
        style->m_sid = row.integer(9);
        style->m_type = row.integer(10);
        EVWidgetEntry *owner = entriesByRow.value(row.row(11));
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
    write.prepare(QStringLiteral("INSERT OR REPLACE INTO widget_entry (%1) VALUES (%2)")
                      .arg(entryColumns, placeholders(entryColumnCount)));
    for (const EVWidgetEntry *entry : changes.entries) {
        if (entry->m_rowId > 0 && !entry->m_changed)
            continue;
        write.addBindValue(rowColumn(entry->m_rowId));
        write.addBindValue(toColumn(entry->m_uuid));
        write.addBindValue(toColumn(entry->m_countdownUnit));
        write.addBindValue(toColumn(entry->m_dateformat));
        write.addBindValue(toColumn(entry->m_eventCreationDate));
        write.addBindValue(toColumn(entry->m_eventDate));
        write.addBindValue(toColumn(entry->m_eventTitle));
        write.addBindValue(toColumn(entry->m_iconfile));
        write.addBindValue(toColumn(entry->m_iconFilePath));
        write.addBindValue(toColumn(entry->m_ignoredDayType));
        write.addBindValue(toColumn(entry->m_intervalAlertUnit));
        write.addBindValue(toColumn(entry->m_intervalBeforeAlert));
        write.addBindValue(toColumn(entry->m_keepTop));
        write.addBindValue(toColumn(entry->m_lockWidget));
        write.addBindValue(toColumn(entry->m_note));
        write.addBindValue(toColumn(entry->m_priority));
        write.addBindValue(toColumn(entry->m_soundAlert));
        write.addBindValue(toColumn(entry->m_styleIndex));
        bindColor(write, entry->m_textcolor);
        write.addBindValue(toColumn(entry->m_timeElement));
        write.addBindValue(toColumn(entry->m_widgetFrameDesc));
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

    write.prepare(QStringLiteral("INSERT OR REPLACE INTO custom_style (%1) VALUES (%2)")
                      .arg(styleColumns, placeholders(styleColumnCount)));
    for (const EVCustomStyle *style : changes.styles) {
        const Placement placement = placements.value(style);
        if (style->m_rowId > 0 && !style->m_changed && m_storedPlacements.value(style) == placement)
            continue;
        write.addBindValue(rowColumn(style->m_rowId));
        write.addBindValue(toColumn(style->m_uuid));
        bindColor(write, style->m_color);
        write.addBindValue(toColumn(style->m_image));
        write.addBindValue(toColumn(style->m_imagePath));
        write.addBindValue(toColumn(style->m_opacity));
        write.addBindValue(toColumn(style->m_sid));
        write.addBindValue(toColumn(style->m_type));
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
