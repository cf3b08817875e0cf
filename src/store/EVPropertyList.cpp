#include "store/EVPropertyList.h"

#include "store/EVBinaryPropertyListReader.h"
#include "store/EVXmlPropertyListReader.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace {
// 2001-01-01 00:00:00 UTC, the moment from which dates are counted.
constexpr qint64 referenceDateMSecs = 978307200000;
} // namespace

EVPropertyList::Object EVPropertyList::Object::boolean(bool value)
{
    Object object(Kind::Boolean);
    object.m_bits = value ? 1 : 0;
    return object;
}

EVPropertyList::Object EVPropertyList::Object::integer(qint64 value)
{
    Object object(Kind::Integer);
    object.m_bits = quint64(value);
    return object;
}

EVPropertyList::Object EVPropertyList::Object::unsignedInteger(quint64 value)
{
    Object object(Kind::Integer);
    object.m_bits = value;
    object.m_unsigned = value > quint64(std::numeric_limits<qint64>::max());
    return object;
}

EVPropertyList::Object EVPropertyList::Object::real(double value)
{
    Object object(Kind::Real);
    object.m_bits = std::bit_cast<quint64>(value);
    return object;
}

EVPropertyList::Object EVPropertyList::Object::date(double secondsSinceReferenceDate)
{
    Object object(Kind::Date);
    object.m_bits = std::bit_cast<quint64>(secondsSinceReferenceDate);
    return object;
}

EVPropertyList::Object EVPropertyList::Object::data(const QByteArray &value)
{
    Object object(Kind::Data);
    // Data in a property list is never none, only empty.
    object.m_payload = value.isNull() ? QByteArray("") : value;
    return object;
}

EVPropertyList::Object EVPropertyList::Object::string(const QString &value)
{
    Object object(Kind::String);
    // A string in a property list is never none, only empty.
    object.m_payload = value.isNull() ? QStringLiteral("") : value;
    return object;
}

EVPropertyList::Object EVPropertyList::Object::uid(quint64 value)
{
    Object object(Kind::Uid);
    object.m_bits = value;
    return object;
}

EVPropertyList::Object EVPropertyList::Object::array(const QList<quint64> &members)
{
    Object object(Kind::Array);
    object.m_payload = members;
    return object;
}

EVPropertyList::Object EVPropertyList::Object::set(const QList<quint64> &members)
{
    Object object(Kind::Set);
    object.m_payload = members;
    return object;
}

EVPropertyList::Object EVPropertyList::Object::dictionary(const QList<quint64> &keys,
                                                          const QList<quint64> &values)
{
    Object object(Kind::Dictionary);
    QList<quint64> references = keys.first(std::min(keys.size(), values.size()));
    references.append(values.first(references.size()));
    object.m_payload = references;
    return object;
}

double EVPropertyList::Object::toReal() const
{
    return std::bit_cast<double>(m_bits);
}

QByteArray EVPropertyList::Object::toData() const
{
    const auto *value = std::get_if<QByteArray>(&m_payload);
    return value ? *value : QByteArray();
}

QString EVPropertyList::Object::toString() const
{
    const auto *value = std::get_if<QString>(&m_payload);
    return value ? *value : QString();
}

QList<quint64> EVPropertyList::Object::references() const
{
    const auto *value = std::get_if<QList<quint64>>(&m_payload);
    return value ? *value : QList<quint64>();
}

QDateTime EVPropertyList::dateFromReferenceSeconds(double seconds)
{
    // About three million years either way, well inside what a date can hold.
    constexpr double limit = 1e14;
    if (!std::isfinite(seconds) || std::abs(seconds) > limit)
        return QDateTime();
    return QDateTime::fromMSecsSinceEpoch(
        referenceDateMSecs + qint64(std::llround(seconds * 1000.0)), Qt::UTC);
}

double EVPropertyList::referenceSecondsFromDate(const QDateTime &date)
{
    return double(date.toMSecsSinceEpoch() - referenceDateMSecs) / 1000.0;
}

std::optional<EVPropertyList> EVPropertyList::fromData(const QByteArray &data)
{
    if (EVBinaryPropertyListReader::isBinary(data))
        return EVBinaryPropertyListReader(data).read();
    return EVXmlPropertyListReader(data).read();
}

const EVPropertyList::Object *EVPropertyList::object(quint64 index) const
{
    return index < quint64(m_objects.size()) ? &m_objects.at(qsizetype(index)) : nullptr;
}

std::optional<quint64> EVPropertyList::valueIndex(const Object &dictionary,
                                                  const QString &key) const
{
    if (dictionary.kind() != Kind::Dictionary)
        return std::nullopt;
    const QList<quint64> references = dictionary.references();
    const qsizetype count = references.size() / 2;
    for (qsizetype i = 0; i < count; ++i) {
        const Object *candidate = object(references.at(i));
        if (candidate && candidate->kind() == Kind::String && candidate->toString() == key)
            return references.at(count + i);
    }
    return std::nullopt;
}

const EVPropertyList::Object *EVPropertyList::value(const Object &dictionary,
                                                    const QString &key) const
{
    const std::optional<quint64> index = valueIndex(dictionary, key);
    return index ? object(*index) : nullptr;
}

quint64 EVPropertyList::append(const Object &object)
{
    m_objects.append(object);
    return quint64(m_objects.size() - 1);
}

void EVPropertyList::replace(quint64 index, const Object &object)
{
    if (index < quint64(m_objects.size()))
        m_objects[qsizetype(index)] = object;
}
