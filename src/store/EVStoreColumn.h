#pragma once

#include <QByteArray>
#include <QColor>
#include <QDateTime>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <optional>
#include <type_traits>

// One field of a record as the store file keeps it: the SQL columns it fills, their type, and
// how the field is read from a row and bound to a statement. A field is added to the file by
// adding one of these to its record's table in EVStoreFile (and a schema step for the column).
template <typename Record>
struct EVStoreColumn
{
    QStringList names;
    QString sqlType;
    std::function<void(const QSqlQuery &row, int firstColumn, Record &record)> read;
    std::function<void(QSqlQuery &statement, const Record &record)> bind;
};

namespace EVStoreValue {

// Values as they come out of the file: NULL is none for every kind of value.
template <typename T>
T read(const QSqlQuery &row, int column)
{
    const bool isNull = row.isNull(column);
    const QVariant value = row.value(column);
    if constexpr (std::is_same_v<T, std::optional<int>>) {
        return isNull ? T() : T(value.toInt());
    } else if constexpr (std::is_same_v<T, std::optional<bool>>) {
        return isNull ? T() : T(value.toInt() != 0);
    } else if constexpr (std::is_same_v<T, std::optional<float>>) {
        return isNull ? T() : T(float(value.toDouble()));
    } else if constexpr (std::is_same_v<T, QString>) {
        if (isNull)
            return QString();
        const QString text = value.toString();
        return text.isNull() ? QStringLiteral("") : text;
    } else if constexpr (std::is_same_v<T, QByteArray>) {
        if (isNull)
            return QByteArray();
        // SQLite hands out an empty blob as a null pointer; it is still not none.
        const QByteArray bytes = value.toByteArray();
        return bytes.isNull() ? QByteArray("") : bytes;
    } else if constexpr (std::is_same_v<T, QDateTime>) {
        return isNull ? QDateTime() : QDateTime::fromMSecsSinceEpoch(value.toLongLong());
    } else {
        static_assert(std::is_same_v<T, QColor>, "a kind of value the store does not keep");
        if (isNull)
            return QColor();
        return QColor::fromRgbF(float(value.toDouble()), float(row.value(column + 1).toDouble()),
                                float(row.value(column + 2).toDouble()),
                                float(row.value(column + 3).toDouble()));
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
// that keeps one member of a record.
template <typename Record, typename T>
EVStoreColumn<Record> storeColumn(const QString &name, T Record::*member)
{
    QStringList names{name};
    if constexpr (std::is_same_v<T, QColor>) {
        names.clear();
        for (const char *component : {"red", "green", "blue", "alpha"})
            names.append(name + QLatin1Char('_') + QLatin1String(component));
    }
    return EVStoreColumn<Record>{names, EVStoreValue::sqlType<T>(),
                                 [member](const QSqlQuery &row, int first, Record &record) {
                                     record.*member = EVStoreValue::read<T>(row, first);
                                 },
                                 [member](QSqlQuery &statement, const Record &record) {
                                     EVStoreValue::bind(statement, record.*member);
                                 }};
}
