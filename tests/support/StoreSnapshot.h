#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

// Everything a profile's widgets are made of, to compare two profiles, or one before and after:
// the rows of the store file by uuid (each value as text, NULL apart from empty, row ids left
// out and a style's owner named by its widget's uuid) and the picture files by name.
struct StoreSnapshot
{
    using Row = QMap<QString, QString>;
    QMap<QString, Row> entries;
    QMap<QString, Row> styles;
    QMap<QString, QByteArray> pictures;

    static StoreSnapshot take(const QString &storeFile, const QString &pictureFolder);

    bool operator==(const StoreSnapshot &other) const = default;
    // The first difference, for a failure message; empty when there is none.
    QString differenceFrom(const StoreSnapshot &other) const;
};
