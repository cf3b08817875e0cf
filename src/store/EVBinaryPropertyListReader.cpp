#include "store/EVBinaryPropertyListReader.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <utility>

namespace {

const QByteArray header = QByteArrayLiteral("bplist00");
constexpr quint64 trailerSize = 32;

using Object = EVPropertyList::Object;

} // namespace

EVBinaryPropertyListReader::EVBinaryPropertyListReader(const QByteArray &data)
    : m_data(data)
{}

bool EVBinaryPropertyListReader::isBinary(const QByteArray &data)
{
    return data.startsWith(header);
}

std::optional<EVPropertyList> EVBinaryPropertyListReader::read()
{
    if (!isBinary(m_data) || !readTrailer())
        return std::nullopt;

    // Every offset must point into the object area between the header and the offset table.
    QList<std::pair<quint64, quint64>> offsets; // offset, object index
    offsets.reserve(qsizetype(m_objectCount));
    for (quint64 index = 0; index < m_objectCount; ++index) {
        const std::optional<quint64> offset =
            readUnsigned(m_offsetTableOffset + index * quint64(m_offsetSize), m_offsetSize,
                         quint64(m_data.size()) - trailerSize);
        if (!offset || *offset < quint64(header.size()) || *offset >= m_offsetTableOffset)
            return std::nullopt;
        offsets.append({*offset, index});
    }
    std::sort(offsets.begin(), offsets.end());

    EVPropertyList list;
    for (quint64 index = 0; index < m_objectCount; ++index)
        list.append(Object::null());
    // Entries that share an offset share one object; otherwise an object must end before the
    // next one begins, so that no byte is read as part of two objects.
    qsizetype group = 0;
    while (group < offsets.size()) {
        const quint64 offset = offsets.at(group).first;
        const std::optional<ParsedObject> parsed = readObject(offset);
        if (!parsed)
            return std::nullopt;
        qsizetype next = group;
        while (next < offsets.size() && offsets.at(next).first == offset)
            list.replace(offsets.at(next++).second, parsed->object);
        if (next < offsets.size() && parsed->end > offsets.at(next).first)
            return std::nullopt;
        group = next;
    }
    list.setTopObject(m_topObject);
    return list;
}

bool EVBinaryPropertyListReader::readTrailer()
{
    const quint64 size = quint64(m_data.size());
    if (size < quint64(header.size()) + trailerSize + 2)
        return false;
    const quint64 trailer = size - trailerSize;
    m_offsetSize = quint8(m_data.at(qsizetype(trailer + 6)));
    m_referenceSize = quint8(m_data.at(qsizetype(trailer + 7)));
    if (m_offsetSize < 1 || m_offsetSize > 8 || m_referenceSize < 1 || m_referenceSize > 8)
        return false;
    m_objectCount = readUnsigned(trailer + 8, 8, size).value_or(0);
    m_topObject = readUnsigned(trailer + 16, 8, size).value_or(0);
    m_offsetTableOffset = readUnsigned(trailer + 24, 8, size).value_or(0);
    // At least one object byte after the header, and the whole offset table before the trailer.
    if (m_objectCount == 0 || m_topObject >= m_objectCount ||
        m_offsetTableOffset <= quint64(header.size()) || m_offsetTableOffset > trailer)
        return false;
    return m_objectCount <= (trailer - m_offsetTableOffset) / quint64(m_offsetSize);
}

std::optional<quint64> EVBinaryPropertyListReader::readUnsigned(quint64 position, int width,
                                                                quint64 limit) const
{
    if (position > limit || quint64(width) > limit - position)
        return std::nullopt;
    quint64 value = 0;
    for (int i = 0; i < width; ++i)
        value = (value << 8) | quint8(m_data.at(qsizetype(position) + i));
    return value;
}

std::optional<quint64> EVBinaryPropertyListReader::readCount(quint64 &position, int nibble) const
{
    if (nibble != 0xF)
        return quint64(nibble);
    // A longer count follows as an integer object of 1, 2, 4 or 8 bytes.
    const std::optional<quint64> marker = readUnsigned(position, 1, m_offsetTableOffset);
    if (!marker || (*marker & 0xF0) != 0x10 || (*marker & 0x0F) > 3)
        return std::nullopt;
    const int width = 1 << (*marker & 0x0F);
    const std::optional<quint64> count = readUnsigned(position + 1, width, m_offsetTableOffset);
    if (!count || *count > quint64(std::numeric_limits<qint64>::max()))
        return std::nullopt;
    position += 1 + quint64(width);
    return count;
}

std::optional<QList<quint64>> EVBinaryPropertyListReader::readReferences(quint64 &position,
                                                                         quint64 count) const
{
    // Checked before reserving anything: the references must all be there.
    if (count > (m_offsetTableOffset - position) / quint64(m_referenceSize))
        return std::nullopt;
    QList<quint64> references;
    references.reserve(qsizetype(count));
    for (quint64 i = 0; i < count; ++i) {
        references.append(*readUnsigned(position, m_referenceSize, m_offsetTableOffset));
        position += quint64(m_referenceSize);
    }
    return references;
}

std::optional<EVBinaryPropertyListReader::ParsedObject>
EVBinaryPropertyListReader::readObject(quint64 offset) const
{
    const quint64 limit = m_offsetTableOffset;
    quint64 position = offset + 1;
    const int marker = quint8(m_data.at(qsizetype(offset)));
    const int nibble = marker & 0x0F;
    auto done = [&position](const Object &object) {
        return std::optional<ParsedObject>(ParsedObject{object, position});
    };
    auto bytes = [&](quint64 length) -> std::optional<QByteArray> {
        if (length > limit - position)
            return std::nullopt;
        QByteArray result = m_data.mid(qsizetype(position), qsizetype(length));
        position += length;
        return result;
    };

    switch (marker >> 4) {
    case 0x0:
        if (marker == 0x08 || marker == 0x09)
            return done(Object::boolean(marker == 0x09));
        if (marker == 0x00 || marker == 0x0F)
            return done(Object::null());
        return std::nullopt;
    case 0x1: {
        if (nibble > 4)
            return std::nullopt;
        if (nibble == 4) {
            // Sixteen bytes: the writer's form for values above the signed 64-bit range.
            const std::optional<quint64> high = readUnsigned(position, 8, limit);
            const std::optional<quint64> low = readUnsigned(position + 8, 8, limit);
            if (!high || !low)
                return std::nullopt;
            position += 16;
            if (*high == 0)
                return done(Object::unsignedInteger(*low));
            if (*high == std::numeric_limits<quint64>::max() && (*low >> 63) != 0)
                return done(Object::integer(qint64(*low)));
            return std::nullopt;
        }
        const int width = 1 << nibble;
        const std::optional<quint64> value = readUnsigned(position, width, limit);
        if (!value)
            return std::nullopt;
        position += quint64(width);
        // One to four bytes are unsigned, eight bytes are signed.
        return done(Object::integer(qint64(*value)));
    }
    case 0x2: {
        if (nibble != 2 && nibble != 3)
            return std::nullopt;
        const int width = 1 << nibble;
        const std::optional<quint64> bits = readUnsigned(position, width, limit);
        if (!bits)
            return std::nullopt;
        position += quint64(width);
        return done(Object::real(width == 4 ? double(std::bit_cast<float>(quint32(*bits)))
                                            : std::bit_cast<double>(*bits)));
    }
    case 0x3: {
        if (marker != 0x33)
            return std::nullopt;
        const std::optional<quint64> bits = readUnsigned(position, 8, limit);
        if (!bits)
            return std::nullopt;
        position += 8;
        return done(Object::date(std::bit_cast<double>(*bits)));
    }
    case 0x4:
    case 0x5: {
        const std::optional<quint64> count = readCount(position, nibble);
        const std::optional<QByteArray> content = count ? bytes(*count) : std::nullopt;
        if (!content)
            return std::nullopt;
        return done((marker >> 4) == 0x4 ? Object::data(*content)
                                         : Object::string(QString::fromLatin1(*content)));
    }
    case 0x6: {
        const std::optional<quint64> count = readCount(position, nibble);
        if (!count || *count > (limit - position) / 2)
            return std::nullopt;
        const QByteArray content = *bytes(*count * 2);
        QString text(qsizetype(*count), Qt::Uninitialized);
        for (qsizetype i = 0; i < text.size(); ++i)
            text[i] =
                QChar(char16_t((quint8(content.at(2 * i)) << 8) | quint8(content.at(2 * i + 1))));
        return done(Object::string(text));
    }
    case 0x8: {
        const int width = nibble + 1;
        if (width > 8)
            return std::nullopt;
        const std::optional<quint64> value = readUnsigned(position, width, limit);
        if (!value)
            return std::nullopt;
        position += quint64(width);
        return done(Object::uid(*value));
    }
    case 0xA:
    case 0xB:
    case 0xC: {
        const std::optional<quint64> count = readCount(position, nibble);
        const std::optional<QList<quint64>> members =
            count ? readReferences(position, *count) : std::nullopt;
        if (!members)
            return std::nullopt;
        // Ordered sets are read as sets: nothing here depends on the difference.
        return done((marker >> 4) == 0xA ? Object::array(*members) : Object::set(*members));
    }
    case 0xD: {
        const std::optional<quint64> count = readCount(position, nibble);
        if (!count || *count > quint64(std::numeric_limits<qint64>::max()) / 2)
            return std::nullopt;
        const std::optional<QList<quint64>> keys = readReferences(position, *count);
        const std::optional<QList<quint64>> values =
            keys ? readReferences(position, *count) : std::nullopt;
        if (!values)
            return std::nullopt;
        return done(Object::dictionary(*keys, *values));
    }
    default:
        return std::nullopt;
    }
}
