#pragma once

#include <QMap>
#include <QString>

// The repairs made to the records of one load of the store, by kind. Each kind is written to
// the log once, with the number of values it touched, however many rows needed it.
class EVRepairLog
{
public:
    // A kind of repair is a sentence in which %1 stands for the number of values.
    void count(const QString &kind);
    // One line per kind, in the category "tallyvane.store".
    void write() const;

private:
    QMap<QString, int> m_counts;
};
