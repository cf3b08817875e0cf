#pragma once

#include "core/EVValues.h"

#include <QByteArray>
#include <QString>

// What the store needs to know of every record: its row in the store file and whether it
// changed since the store last wrote it. Setters mark the record changed.
class EVManagedRecord
{
public:
    EVManagedRecord() = default;
    EVManagedRecord(const EVManagedRecord &) = delete;
    EVManagedRecord &operator=(const EVManagedRecord &) = delete;

    bool hasChanges() const { return m_changed; }

    // Goes up with every change of a field, saved or not, so that whoever shows the record can
    // tell cheaply whether it has to look again.
    quint64 revision() const { return m_revision; }

    // A fresh identifier: 36 upper-case hexadecimal characters in groups 8-4-4-4-12.
    static QString newUuid();
    // Whether a text has exactly that form; only such texts name picture files, so that no
    // identifier read from a file can lead out of the picture folder.
    static bool isUuid(const QString &text);

protected:
    ~EVManagedRecord() = default;
    void markChanged()
    {
        m_changed = true;
        ++m_revision;
    }

    // Sets a field and marks the record changed when the value differs. None and empty are
    // different values for strings and bytes.
    template <typename Field, typename Value>
    void assign(Field &field, const Value &value)
    {
        if (isIdentical(field, value))
            return;
        field = value;
        markChanged();
    }

private:
    friend class EVObjectContext;
    friend class EVStoreFile;

    qint64 m_rowId = 0;
    bool m_changed = true;
    quint64 m_revision = 0;
};
