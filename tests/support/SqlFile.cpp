#include "SqlFile.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QtDebug>

SqlFile::SqlFile(const QString &path, Access access)
    : m_connectionName(QStringLiteral("test-sqlfile-%1").arg(quintptr(this), 0, 16))
{
    m_database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
    m_database.setDatabaseName(path);
    if (access == ReadOnly)
        m_database.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
    if (!m_database.open())
        qWarning() << "cannot open" << path << m_database.lastError().text();
}

SqlFile::~SqlFile()
{
    m_database.close();
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_connectionName);
}

bool SqlFile::exec(const QString &statement)
{
    QSqlQuery query(m_database);
    if (query.exec(statement))
        return true;
    qWarning() << statement << query.lastError().text();
    return false;
}

QVariant SqlFile::value(const QString &statement)
{
    QSqlQuery query(m_database);
    if (!query.exec(statement) || !query.next())
        return QVariant();
    return query.value(0);
}

QList<QVariantList> SqlFile::rows(const QString &statement)
{
    QList<QVariantList> result;
    for (const QSqlRecord &record : records(statement)) {
        QVariantList columns;
        for (int i = 0; i < record.count(); ++i)
            columns.append(record.value(i));
        result.append(columns);
    }
    return result;
}

QList<QSqlRecord> SqlFile::records(const QString &statement)
{
    QSqlQuery query(m_database);
    QList<QSqlRecord> result;
    if (!query.exec(statement)) {
        qWarning() << statement << query.lastError().text();
        return result;
    }
    while (query.next())
        result.append(query.record());
    return result;
}
