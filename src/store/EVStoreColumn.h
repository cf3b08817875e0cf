#pragma once

#include <QByteArray>
#include <QColor>
#include <QDateTime>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <type_traits>
#include <utility>

// One field of a record as the store file keeps it: the SQL columns it fills, their type, and
// how the field is read from a row and bound to a statement. A field is added to the file by
// adding one of these to its record's table in EVStoreFile (and a schema step for the column).
template <typename Record>
struct EVStoreColumn
{
    QStringList names;
    QString sqlType;
    // Sets the field from a row; false when the stored value was of the wrong kind or out of
    // the field's range, and the field took its fallback instead.
    std::function<bool(const QSqlQuery &row, int firstColumn, Record &record)> read;
    std::function<void(QSqlQuery &statement, const Record &record)> bind;
};

// What a field accepts of a value of the right kind, and what it takes instead of a value it
// cannot use.
template <typename Record, typename T>
struct EVStoreRule
{
    std::function<bool(const T &value)> accepts = [](const T &) { return true; };
    std::function<T(const Record &record)> fallback = [](const Record &) { return T(); };
};

// Any value of the right kind; otherwise what the function makes of the record.
template <typename Record, typename T>
EVStoreRule<Record, T> orElseFrom(std::function<T(const Record &record)> fallback)
{
    return {[](const T &) { return true; }, std::move(fallback)};
}

// Any value of the right kind; the given one otherwise.
template <typename Record, typename T>
EVStoreRule<Record, T> orElse(const T &fallback)
{
    return orElseFrom<Record, T>([fallback](const Record &) { return fallback; });
}

// None (which reads as 0) or a number from low to high; the given one otherwise.
template <typename Record>
EVStoreRule<Record, std::optional<int>> within(int low, int high, int fallback)
{
    return {[low, high](const std::optional<int> &value) {
                return !value || (*value >= low && *value <= high);
            },
            [fallback](const Record &) { return std::optional<int>(fallback); }};
}

namespace EVStoreValue {

// The moments a date field may hold: the years 1 to 9999, which every calendar and date
// formatter of the program can work with.
inline constexpr qint64 earliestDate = -62135596800000;
inline constexpr qint64 latestDate = 253402300799999;

// A stored number, integer or real, as a double; none for any other kind.
inline std::optional<double> number(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::LongLong:
        return double(value.toLongLong());
    case QMetaType::Double:
        return value.toDouble();
    default:
        return std::nullopt;
    }
}

// A stored integer; none for any other kind, reals included.
inline std::optional<qint64> integer(const QVariant &value)
{
    if (value.typeId() != QMetaType::Int && value.typeId() != QMetaType::LongLong)
        return std::nullopt;
    return value.toLongLong();
}

// A colour's four components, each a fraction; all four NULL is none.
inline bool readColor(const QSqlQuery &row, int column, QColor *result)
{
    float components[4] = {};
    int nulls = 0;
    for (int i = 0; i < 4; ++i) {
        if (row.isNull(column + i)) {
            ++nulls;
            continue;
        }
        const std::optional<double> component = number(row.value(column + i));
        if (!component || !(*component >= 0.0 && *component <= 1.0))
            return false;
        components[i] = float(*component);
    }
    if (nulls == 4)
        *result = QColor();
    else if (nulls == 0)
        *result = QColor::fromRgbF(components[0], components[1], components[2], components[3]);
    return nulls == 0 || nulls == 4;
}

// Values as they come out of the file: NULL is none for every kind of value. False when the
// stored value is not of the field's kind (SQLite keeps any value in any column) or cannot be
// represented by it; the value is then left alone.
template <typename T>
bool read(const QSqlQuery &row, int column, T *result)
{
    if constexpr (std::is_same_v<T, QColor>) {
        return readColor(row, column, result);
    } else {
        if (row.isNull(column)) {
            *result = T();
            return true;
        }
        const QVariant value = row.value(column);
        if constexpr (std::is_same_v<T, std::optional<int>>) {
            const std::optional<qint64> stored = integer(value);
            if (!stored || *stored < std::numeric_limits<int>::min() ||
                *stored > std::numeric_limits<int>::max())
                return false;
            *result = int(*stored);
        } else if constexpr (std::is_same_v<T, std::optional<bool>>) {
            // Stored from a check box's state.
            const std::optional<qint64> stored = integer(value);
            if (!stored || (*stored != 0 && *stored != 1))
                return false;
            *result = *stored == 1;
        } else if constexpr (std::is_same_v<T, std::optional<float>>) {
            const std::optional<double> stored = number(value);
            if (!stored || !std::isfinite(*stored) ||
                std::abs(*stored) > double(std::numeric_limits<float>::max()))
                return false;
            *result = float(*stored);
        } else if constexpr (std::is_same_v<T, QString>) {
            if (value.typeId() != QMetaType::QString)
                return false;
            const QString text = value.toString();
            *result = text.isNull() ? QStringLiteral("") : text;
        } else if constexpr (std::is_same_v<T, QByteArray>) {
            if (value.typeId() != QMetaType::QByteArray)
                return false;
            // SQLite hands out an empty blob as a null pointer; it is still not none.
            const QByteArray bytes = value.toByteArray();
            *result = bytes.isNull() ? QByteArray("") : bytes;
        } else {
            static_assert(std::is_same_v<T, QDateTime>, "a kind of value the store does not keep");
            const std::optional<qint64> stored = integer(value);
            if (!stored || *stored < earliestDate || *stored > latestDate)
                return false;
            *result = QDateTime::fromMSecsSinceEpoch(*stored);
        }
        return true;
    }
}

// Values as they go into the file.
template <typename T>
void bind(QSqlQuery &statement, const T &value)
{
    if constexpr (std::is_same_v<T, QString> || std::is_same_v<T, QByteArray>) {
        statement.addBindValue(value.isNull() ? QVariant() : QVariant(value));
    } else if constexpr (std::is_same_v<T, QDateTime>) {
        statement.addBindValue(value.isValid() ? QVariant(value.toMSecsSinceEpoch()) : QVariant());
    } else if constexpr (std::is_same_v<T, QColor>) {
        // Stored losslessly as its four RGBA components.
        float components[4] = {};
        if (value.isValid())
            value.toRgb().getRgbF(&components[0], &components[1], &components[2], &components[3]);
        for (float component : components)
            statement.addBindValue(value.isValid() ? QVariant(double(component)) : QVariant());
    } else {
        statement.addBindValue(value ? QVariant::fromValue(*value) : QVariant());
    }
}

template <typename T>
QString sqlType()
{
    if constexpr (std::is_same_v<T, QString>)
        return QStringLiteral("TEXT");
    else if constexpr (std::is_same_v<T, QByteArray>)
        return QStringLiteral("BLOB");
    else if constexpr (std::is_same_v<T, QColor> || std::is_same_v<T, std::optional<float>>)
        return QStringLiteral("REAL");
    else
        return QStringLiteral("INTEGER");
}

} // namespace EVStoreValue

// The column (or, for a colour, the four columns name_red, name_green, name_blue, name_alpha)
// that keeps one member of a record, with what the member accepts from the file.
template <typename Record, typename T>
EVStoreColumn<Record> storeColumn(const QString &name, T Record::*member,
                                  EVStoreRule<Record, T> rule = {})
{
    QStringList names{name};
    if constexpr (std::is_same_v<T, QColor>) {
        names.clear();
        for (const char *component : {"red", "green", "blue", "alpha"})
            names.append(name + QLatin1Char('_') + QLatin1String(component));
    }
    return EVStoreColumn<Record>{names, EVStoreValue::sqlType<T>(),
                                 [member, rule](const QSqlQuery &row, int first, Record &record) {
                                     T value;
                                     if (EVStoreValue::read(row, first, &value) &&
                                         rule.accepts(value)) {
                                         record.*member = value;
                                         return true;
                                     }
                                     record.*member = rule.fallback(record);
                                     return false;
                                 },
                                 [member](QSqlQuery &statement, const Record &record) {
                                     EVStoreValue::bind(statement, record.*member);
                                 }};
}
