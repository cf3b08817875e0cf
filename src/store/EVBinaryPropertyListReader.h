#pragma once

#include "store/EVPropertyList.h"

#include <QByteArray>

#include <optional>

// Reads the binary property-list form: the "bplist00" header, the objects, a table of their
// offsets and a trailer that gives the widths of offsets and references. Every count and offset
// is checked against the bytes that are there before anything is reserved, and no two objects
// may overlap, so the table never holds more than the input's bytes describe.
class EVBinaryPropertyListReader
{
public:
    explicit EVBinaryPropertyListReader(const QByteArray &data);

    static bool isBinary(const QByteArray &data);

    // Nothing when the bytes are damaged anywhere.
    std::optional<EVPropertyList> read();

private:
    struct ParsedObject
    {
        EVPropertyList::Object object;
        // Just past the object's last byte.
        quint64 end;
    };

    bool readTrailer();
    std::optional<quint64> readUnsigned(quint64 position, int width, quint64 limit) const;
    std::optional<quint64> readCount(quint64 &position, int nibble) const;
    std::optional<QList<quint64>> readReferences(quint64 &position, quint64 count) const;
    std::optional<ParsedObject> readObject(quint64 offset) const;

    QByteArray m_data;
    int m_offsetSize = 0;
    int m_referenceSize = 0;
    quint64 m_objectCount = 0;
    quint64 m_topObject = 0;
    quint64 m_offsetTableOffset = 0;
};
