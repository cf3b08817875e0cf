#pragma once

#include <QList>
#include <QSqlDatabase>
#include <QSqlRecord>
#include <QString>
#include <QVariant>

// A SQLite file opened on a connection of its own, for tests that read or change a store file
// behind the store's back, as a user with the sqlite3 shell would.
class SqlFile
{
public:
    enum Access { ReadWrite, ReadOnly };

    // A file opened read-only is never created or changed.
    explicit SqlFile(const QString &path, Access access = ReadWrite);
    ~SqlFile();
    SqlFile(const SqlFile &) = delete;
    SqlFile &operator=(const SqlFile &) = delete;

    bool isOpen() const { return m_database.isOpen(); }
    // Runs one statement; false, with the statement and the error in the log, when it fails.
    bool exec(const QString &statement);
    // The first column of the first row of a query; invalid when there is none.
    QVariant value(const QString &query);
    // Every row of a query, each as its list of columns.
    QList<QVariantList> rows(const QString &query);
    // Every row of a query with its columns' names; none when the query fails.
    QList<QSqlRecord> records(const QString &query);

private:
    QString m_connectionName;
    QSqlDatabase m_database;
};
