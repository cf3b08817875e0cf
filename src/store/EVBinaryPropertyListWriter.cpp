#include "store/EVBinaryPropertyListWriter.h"

#include <algorithm>
#include <bit>

namespace {

using Kind = EVPropertyList::Kind;
using Object = EVPropertyList::Object;

int widthFor(quint64 value)
{
    int width = 1;
    while (width < 8 && (value >> (8 * width)) != 0)
        ++width;
    return width;
}

void appendUnsigned(QByteArray &out, quint64 value, int width)
{
    for (int shift = 8 * (width - 1); shift >= 0; shift -= 8)
        out.append(char((value >> shift) & 0xFF));
}

void appendInteger(QByteArray &out, qint64 value)
{
    if (value < 0 || value > 0xFFFFFFFF) {
        out.append(char(0x13));
        appendUnsigned(out, quint64(value), 8);
    } else if (value > 0xFFFF) {
        out.append(char(0x12));
        appendUnsigned(out, quint64(value), 4);
    } else if (value > 0xFF) {
        out.append(char(0x11));
        appendUnsigned(out, quint64(value), 2);
    } else {
        out.append(char(0x10));
        appendUnsigned(out, quint64(value), 1);
    }
}

// A marker whose low four bits hold the count, or 0xF followed by the count as an integer.
void appendMarker(QByteArray &out, int kind, qsizetype count)
{
    if (count < 15) {
        out.append(char((kind << 4) | int(count)));
        return;
    }
    out.append(char((kind << 4) | 0xF));
    appendInteger(out, qint64(count));
}

void appendObject(QByteArray &out, const Object &object, int referenceSize)
{
    switch (object.kind()) {
    case Kind::Null:
        out.append(char(0x00));
        break;
    case Kind::Boolean:
        out.append(char(object.toBool() ? 0x09 : 0x08));
        break;
    case Kind::Integer:
        if (object.isUnsigned()) {
            // Above the signed range: sixteen bytes, the upper eight zero.
            out.append(char(0x14));
            appendUnsigned(out, 0, 8);
            appendUnsigned(out, quint64(object.toInteger()), 8);
        } else {
            appendInteger(out, object.toInteger());
        }
        break;
    case Kind::Real:
    case Kind::Date:
        out.append(char(object.kind() == Kind::Real ? 0x23 : 0x33));
        appendUnsigned(out, std::bit_cast<quint64>(object.toReal()), 8);
        break;
    case Kind::Data: {
        const QByteArray data = object.toData();
        appendMarker(out, 0x4, data.size());
        out.append(data);
        break;
    }
    case Kind::String: {
        const QString text = object.toString();
        const bool ascii =
            std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() < 0x80; });
        appendMarker(out, ascii ? 0x5 : 0x6, text.size());
        for (QChar c : text) {
            if (!ascii)
                out.append(char(c.unicode() >> 8));
            out.append(char(c.unicode() & 0xFF));
        }
        break;
    }
    case Kind::Uid: {
        const int width = widthFor(object.toUid());
        out.append(char(0x80 | (width - 1)));
        appendUnsigned(out, object.toUid(), width);
        break;
    }
    case Kind::Array:
    case Kind::Set:
    case Kind::Dictionary: {
        const QList<quint64> references = object.references();
        const int kind = object.kind() == Kind::Array ? 0xA
                         : object.kind() == Kind::Set ? 0xC
                                                      : 0xD;
        appendMarker(out, kind,
                     object.kind() == Kind::Dictionary ? references.size() / 2 : references.size());
        for (quint64 reference : references)
            appendUnsigned(out, reference, referenceSize);
        break;
    }
    }
}

} // namespace

QByteArray EVBinaryPropertyListWriter::write(const EVPropertyList &list, int minimumOffsetSize,
                                             int minimumReferenceSize)
{
    quint64 largestReference = quint64(std::max<qsizetype>(list.count() - 1, 0));
    for (const Object &object : list.objects()) {
        for (quint64 reference : object.references())
            largestReference = std::max(largestReference, reference);
    }
    const int referenceSize = std::max(minimumReferenceSize, widthFor(largestReference));

    QByteArray out = QByteArrayLiteral("bplist00");
    QList<quint64> offsets;
    offsets.reserve(list.count());
    for (const Object &object : list.objects()) {
        offsets.append(quint64(out.size()));
        appendObject(out, object, referenceSize);
    }
    const quint64 offsetTableOffset = quint64(out.size());
    const int offsetSize =
        std::max(minimumOffsetSize, widthFor(offsets.isEmpty() ? 0 : offsets.last()));
    for (quint64 offset : offsets)
        appendUnsigned(out, offset, offsetSize);

    // Five unused bytes and the sort version, then the widths, the count, the top object and
    // where the offset table begins.
    out.append(6, char(0));
    out.append(char(offsetSize));
    out.append(char(referenceSize));
    appendUnsigned(out, quint64(list.count()), 8);
    appendUnsigned(out, list.topObject(), 8);
    appendUnsigned(out, offsetTableOffset, 8);
    return out;
}
