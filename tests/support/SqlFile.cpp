#include "SqlFile.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QtDebug>

SqlFile::SqlFile(const QString &path)
    : m_connectionName(QStringLiteral("test-sqlfile-%1").arg(quintptr(this), 0, 16))
{
    m_database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
    m_database.setDatabaseName(path);
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
    QSqlQuery query(m_database);
    QList<QVariantList> result;
    if (!query.exec(statement)) {
        qWarning() << statement << query.lastError().text();
        return result;
    }
    while (query.next()) {
        QVariantList columns;
        for (int i = 0; i < query.record().count(); ++i)
            columns.append(query.value(i));
        result.append(columns);
    }
    return result;
}
