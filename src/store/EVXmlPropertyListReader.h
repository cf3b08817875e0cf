#pragma once

#include "store/EVPropertyList.h"

#include <QXmlStreamReader>

#include <optional>

// Reads the XML property-list form into a table of objects. A dictionary whose only key is
// "CF$UID" is the XML form of a keyed archive's reference and is read as one. Nesting deeper
// than any real property list is refused, so that hostile input cannot exhaust the stack.
class EVXmlPropertyListReader
{
public:
    explicit EVXmlPropertyListReader(const QByteArray &data);

    // Nothing when the bytes are not a well-formed property list.
    std::optional<EVPropertyList> read();

private:
    // Reads the element that starts at the reader's position; nothing on any error.
    std::optional<quint64> readValue(int depth);
    std::optional<quint64> readDictionary(int depth);
    std::optional<quint64> readArray(int depth);
    std::optional<EVPropertyList::Object> readScalar();

    QXmlStreamReader m_xml;
    EVPropertyList m_list;
};
