#include "StoreSnapshot.h"

#include "SqlFile.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QSqlRecord>

namespace {

QString valueText(const QVariant &value)
{
    if (value.isNull())
        return QStringLiteral("NULL");
    if (value.typeId() == QMetaType::Double)
        return QStringLiteral("real:") + QString::number(value.toDouble(), 'g', 17);
    if (value.typeId() == QMetaType::QByteArray)
        return QStringLiteral("blob:") + QString::fromLatin1(value.toByteArray().toHex());
    return QStringLiteral("text:") + value.toString();
}

QMap<QString, StoreSnapshot::Row> rows(SqlFile &file, const QString &select)
{
    QMap<QString, StoreSnapshot::Row> result;
    for (const QSqlRecord &record : file.records(select)) {
        StoreSnapshot::Row row;
        for (int i = 0; i < record.count(); ++i) {
            if (record.fieldName(i) != QLatin1String("id") &&
                record.fieldName(i) != QLatin1String("widget_id"))
                row.insert(record.fieldName(i), valueText(record.value(i)));
        }
        result.insert(row.value(QStringLiteral("uuid")), row);
    }
    return result;
}

template <typename T>
QString firstDifference(const QString &what, const QMap<QString, T> &a, const QMap<QString, T> &b)
{
    for (auto it = a.cbegin(); it != a.cend(); ++it) {
        if (!b.contains(it.key()))
            return QStringLiteral("%1 %2 only in the first").arg(what, it.key());
        if (!(b.value(it.key()) == it.value())) {
            if constexpr (std::is_same_v<T, StoreSnapshot::Row>) {
                const StoreSnapshot::Row other = b.value(it.key());
                for (auto field = it->cbegin(); field != it->cend(); ++field) {
                    if (other.value(field.key()) != field.value())
                        return QStringLiteral("%1 %2: %3 is %4, then %5")
                            .arg(what, it.key(), field.key(), field.value(),
                                 other.value(field.key()));
                }
            }
            return QStringLiteral("%1 %2 differs").arg(what, it.key());
        }
    }
    for (auto it = b.cbegin(); it != b.cend(); ++it) {
        if (!a.contains(it.key()))
            return QStringLiteral("%1 %2 only in the second").arg(what, it.key());
    }
    return QString();
}

} // namespace

StoreSnapshot StoreSnapshot::take(const QString &storeFile, const QString &pictureFolder)
{
    StoreSnapshot snapshot;
    SqlFile file(storeFile, SqlFile::ReadOnly);
    if (file.isOpen()) {
        snapshot.entries = rows(file, QStringLiteral("SELECT * FROM widget_entry"));
        snapshot.styles =
            rows(file, QStringLiteral("SELECT s.*, w.uuid AS widget_uuid FROM custom_style s "
                                      "LEFT JOIN widget_entry w ON s.widget_id = w.id"));
    }

    const QDir folder(pictureFolder);
    for (const QString &name : folder.entryList(QDir::Files))
        snapshot.pictures.insert(name, fileContents(folder.filePath(name)));
    return snapshot;
}

QString StoreSnapshot::differenceFrom(const StoreSnapshot &other) const
{
    QString difference = firstDifference(QStringLiteral("widget"), entries, other.entries);
    if (difference.isEmpty())
        difference = firstDifference(QStringLiteral("style"), styles, other.styles);
    if (difference.isEmpty())
        difference = firstDifference(QStringLiteral("picture"), pictures, other.pictures);
    return difference;
}
