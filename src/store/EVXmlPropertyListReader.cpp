#include "store/EVXmlPropertyListReader.h"

#include <limits>

namespace {

// Real property lists nest a few levels; this is far beyond them and far below the stack.
constexpr int maximumDepth = 256;

using Object = EVPropertyList::Object;

std::optional<Object> integerFromText(QStringView text)
{
    const bool negative = text.startsWith(u'-');
    if (negative || text.startsWith(u'+'))
        text = text.mid(1);
    int base = 10;
    if (text.startsWith(u"0x") || text.startsWith(u"0X")) {
        base = 16;
        text = text.mid(2);
    }
    if (text.isEmpty() || !text.front().isLetterOrNumber())
        return std::nullopt;
    bool ok = false;
    const quint64 magnitude = text.toULongLong(&ok, base);
    if (!ok)
        return std::nullopt;
    if (!negative)
        return Object::unsignedInteger(magnitude);
    const quint64 smallest = quint64(std::numeric_limits<qint64>::max()) + 1;
    if (magnitude > smallest)
        return std::nullopt;
    return Object::integer(qint64(0 - magnitude));
}

std::optional<Object> dataFromText(const QString &text)
{
    QByteArray base64 = text.toLatin1();
    base64.removeIf([](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; });
    QByteArray::FromBase64Result decoded =
        QByteArray::fromBase64Encoding(base64, QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return std::nullopt;
    return Object::data(*decoded);
}

std::optional<Object> dateFromText(const QString &text)
{
    QDateTime date = QDateTime::fromString(text, Qt::ISODate);
    if (!date.isValid())
        return std::nullopt;
    // The form carries "Z"; a date without a zone is taken as UTC all the same.
    if (date.timeSpec() == Qt::LocalTime)
        date.setTimeSpec(Qt::UTC);
    return Object::date(EVPropertyList::referenceSecondsFromDate(date));
}

} // namespace

EVXmlPropertyListReader::EVXmlPropertyListReader(const QByteArray &data)
    : m_xml(data)
{}

std::optional<EVPropertyList> EVXmlPropertyListReader::read()
{
    if (!m_xml.readNextStartElement())
        return std::nullopt;
    const bool wrapped = m_xml.name() == u"plist";
    if (wrapped && !m_xml.readNextStartElement())
        return std::nullopt;
    const std::optional<quint64> top = readValue(0);
    if (!top || (wrapped && m_xml.readNextStartElement()))
        return std::nullopt;
    // The rest of the document must be well-formed too.
    while (!m_xml.atEnd())
        m_xml.readNext();
    if (m_xml.hasError())
        return std::nullopt;
    m_list.setTopObject(*top);
    return m_list;
}

std::optional<quint64> EVXmlPropertyListReader::readValue(int depth)
{
    if (depth > maximumDepth)
        return std::nullopt;
    if (m_xml.name() == u"dict")
        return readDictionary(depth);
    if (m_xml.name() == u"array")
        return readArray(depth);
    const std::optional<Object> scalar = readScalar();
    if (!scalar || m_xml.hasError())
        return std::nullopt;
    return m_list.append(*scalar);
}

std::optional<quint64> EVXmlPropertyListReader::readDictionary(int depth)
{
    const quint64 index = m_list.append(Object::null());
    QList<quint64> keys;
    QList<quint64> values;
    QString firstKey;
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() != u"key")
            return std::nullopt;
        const QString key = m_xml.readElementText();
        if (m_xml.hasError() || !m_xml.readNextStartElement())
            return std::nullopt;
        const std::optional<quint64> value = readValue(depth + 1);
        if (!value)
            return std::nullopt;
        if (keys.isEmpty())
            firstKey = key;
        keys.append(m_list.append(Object::string(key)));
        values.append(*value);
    }
    if (m_xml.hasError())
        return std::nullopt;
    const Object *only = keys.size() == 1 ? m_list.object(values.first()) : nullptr;
    if (only && firstKey == u"CF$UID" && only->kind() == EVPropertyList::Kind::Integer &&
        (only->isUnsigned() || only->toInteger() >= 0)) {
        m_list.replace(index, Object::uid(quint64(only->toInteger())));
    } else {
        m_list.replace(index, Object::dictionary(keys, values));
    }
    return index;
}

std::optional<quint64> EVXmlPropertyListReader::readArray(int depth)
{
    const quint64 index = m_list.append(Object::null());
    QList<quint64> members;
    while (m_xml.readNextStartElement()) {
        const std::optional<quint64> member = readValue(depth + 1);
        if (!member)
            return std::nullopt;
        members.append(*member);
    }
    if (m_xml.hasError())
        return std::nullopt;
    m_list.replace(index, Object::array(members));
    return index;
}

std::optional<EVPropertyList::Object> EVXmlPropertyListReader::readScalar()
{
    const QString name = m_xml.name().toString();
    // Reports an error, and so ends the reading, when the element holds other elements.
    const QString text = m_xml.readElementText();
    if (m_xml.hasError())
        return std::nullopt;
    if (name == u"string")
        return Object::string(text);
    if (name == u"integer")
        return integerFromText(QStringView(text).trimmed());
    if (name == u"real") {
        bool ok = false;
        const double value = text.trimmed().toDouble(&ok);
        return ok ? std::optional<Object>(Object::real(value)) : std::nullopt;
    }
    if ((name == u"true" || name == u"false") && text.trimmed().isEmpty())
        return Object::boolean(name == u"true");
    if (name == u"date")
        return dateFromText(text.trimmed());
    if (name == u"data")
        return dataFromText(text);
    return std::nullopt;
}
