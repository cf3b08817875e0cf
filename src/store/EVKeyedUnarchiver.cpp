#include "store/EVKeyedUnarchiver.h"

#include "store/EVRectText.h"
#include "store/EVWidgetConfig.h"

#include <QColor>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

using Kind = EVPropertyList::Kind;

// Real archives nest a handful of objects; this is far beyond them and far below the stack.
constexpr int maximumDepth = 128;

// Colour spaces of archived colours, by the number under "NSColorSpace".
enum ColorSpace {
    CalibratedRGB = 1,
    DeviceRGB = 2,
    CalibratedWhite = 3,
    DeviceWhite = 4,
    DeviceCMYK = 5,
    Catalog = 6,
};

// An archived colour's components: numbers in text, separated by blanks and ended by a zero
// byte. At most five are read, the most any colour space has; missing ones are nothing.
std::array<std::optional<double>, 5> colorComponents(const QByteArray &text)
{
    std::array<std::optional<double>, 5> components;
    const char *position = text.constData();
    const char *end = position + qstrnlen(position, size_t(text.size()));
    for (std::optional<double> &component : components) {
        while (position < end && (*position == ' ' || *position == '\t' || *position == '\n'))
            ++position;
        double value = 0.0;
        const auto result = std::from_chars(position, end, value);
        if (result.ec != std::errc())
            break;
        // Colour components are fractions; anything else is clamped into them.
        component = std::isnan(value) ? 0.0 : std::clamp(value, 0.0, 1.0);
        position = result.ptr;
    }
    return components;
}

} // namespace

EVKeyedUnarchiver::EVKeyedUnarchiver(const QByteArray &data)
    : m_list(EVPropertyList::fromData(data))
{
    const Object *top = m_list ? m_list->top() : nullptr;
    if (!top || top->kind() != Kind::Dictionary)
        return;
    const Object *archiver = m_list->value(*top, QStringLiteral("$archiver"));
    const Object *version = m_list->value(*top, QStringLiteral("$version"));
    const Object *objects = m_list->value(*top, QStringLiteral("$objects"));
    const Object *archiveTop = m_list->value(*top, QStringLiteral("$top"));
    if (!archiver || archiver->kind() != Kind::String ||
        archiver->toString() != u"NSKeyedArchiver" || !version ||
        version->kind() != Kind::Integer || !objects || objects->kind() != Kind::Array ||
        !archiveTop || archiveTop->kind() != Kind::Dictionary)
        return;
    m_objects = objects->references();
    m_current = archiveTop;
}

QVariant EVKeyedUnarchiver::unarchiveObjectWithData(const QByteArray &data)
{
    EVKeyedUnarchiver unarchiver(data);
    return unarchiver.isValid() ? unarchiver.decodeRootObject() : QVariant();
}

const EVPropertyList::Object *EVKeyedUnarchiver::valueForKey(const QString &key) const
{
    return m_current ? m_list->value(*m_current, key) : nullptr;
}

bool EVKeyedUnarchiver::containsValueForKey(const QString &key) const
{
    return m_current && m_list->valueIndex(*m_current, key).has_value();
}

QVariant EVKeyedUnarchiver::decodeObjectForKey(const QString &key)
{
    const Object *value = valueForKey(key);
    if (!value || value->kind() != Kind::Uid)
        return QVariant();
    return decodeObject(value->toUid());
}

bool EVKeyedUnarchiver::decodeBoolForKey(const QString &key) const
{
    const Object *value = valueForKey(key);
    if (!value)
        return false;
    switch (value->kind()) {
    case Kind::Boolean:
    case Kind::Integer:
        return value->toInteger() != 0;
    case Kind::Real:
        return value->toReal() != 0.0;
    default:
        return false;
    }
}

qint64 EVKeyedUnarchiver::decodeIntegerForKey(const QString &key) const
{
    const Object *value = valueForKey(key);
    if (!value)
        return 0;
    switch (value->kind()) {
    case Kind::Boolean:
    case Kind::Integer:
        // An unsigned value keeps its bits, as a signed integer of the same width does.
        return value->toInteger();
    case Kind::Real: {
        const double real = value->toReal();
        // Inside the range the value is truncated toward zero; outside it there is no integer.
        constexpr double limit = 9223372036854775808.0;
        return real > -limit && real < limit ? qint64(real) : 0;
    }
    default:
        return 0;
    }
}

qint32 EVKeyedUnarchiver::decodeInt32ForKey(const QString &key) const
{
    const Object *value = valueForKey(key);
    if (value && value->kind() == Kind::Integer && value->isUnsigned())
        return 0;
    const qint64 integer = decodeIntegerForKey(key);
    if (integer < std::numeric_limits<qint32>::min() ||
        integer > std::numeric_limits<qint32>::max())
        return 0;
    return qint32(integer);
}

double EVKeyedUnarchiver::decodeDoubleForKey(const QString &key) const
{
    const Object *value = valueForKey(key);
    if (!value)
        return 0.0;
    switch (value->kind()) {
    case Kind::Real:
        return value->toReal();
    case Kind::Boolean:
    case Kind::Integer:
        return value->isUnsigned() ? double(quint64(value->toInteger()))
                                   : double(value->toInteger());
    default:
        return 0.0;
    }
}

QPointF EVKeyedUnarchiver::decodePointForKey(const QString &key)
{
    const Object *value = valueForKey(key);
    if (value && value->kind() == Kind::String)
        return EVRectText::toPoint(value->toString());
    const QVariant archived = decodeObjectForKey(key);
    if (archived.typeId() == QMetaType::QString)
        return EVRectText::toPoint(archived.toString());
    return QPointF();
}

QVariant EVKeyedUnarchiver::decodeObject(quint64 uid)
{
    if (m_tooDeep || uid >= quint64(m_objects.size()))
        return QVariant();
    if (const auto found = m_decoded.constFind(uid); found != m_decoded.cend())
        return *found;
    // A reference back to an object that is still being decoded.
    if (m_inProgress.contains(uid))
        return QVariant();
    const Object *object = m_list->object(m_objects.at(qsizetype(uid)));
    if (!object)
        return QVariant();
    if (m_depth >= maximumDepth) {
        m_tooDeep = true;
        return QVariant();
    }

    m_inProgress.insert(uid);
    ++m_depth;
    const QVariant value = decodeValue(*object);
    --m_depth;
    m_inProgress.remove(uid);
    if (m_tooDeep)
        return QVariant();
    m_decoded.insert(uid, value);
    return value;
}

QVariant EVKeyedUnarchiver::decodeValue(const Object &object)
{
    switch (object.kind()) {
    case Kind::String: {
        const QString text = object.toString();
        // The archive's own stand-in for nil.
        return text == u"$null" ? QVariant() : QVariant(text);
    }
    case Kind::Integer:
        return object.isUnsigned() ? QVariant(quint64(object.toInteger()))
                                   : QVariant(object.toInteger());
    case Kind::Real:
        return object.toReal();
    case Kind::Boolean:
        return object.toBool();
    case Kind::Data:
        return object.toData();
    case Kind::Date: {
        const QDateTime date = EVPropertyList::dateFromReferenceSeconds(object.toReal());
        return date.isValid() ? QVariant(date) : QVariant();
    }
    case Kind::Dictionary: {
        const ClassDecoder decoder = classDecoder(object);
        if (!decoder)
            return QVariant();
        const Object *outer = m_current;
        m_current = &object;
        const QVariant value = (this->*decoder)();
        m_current = outer;
        return value;
    }
    default:
        return QVariant();
    }
}

EVKeyedUnarchiver::ClassDecoder EVKeyedUnarchiver::classDecoder(const Object &object)
{
    static const QHash<QString, ClassDecoder> decoders{
        {QStringLiteral("NSArray"), &EVKeyedUnarchiver::decodeCollection},
        {QStringLiteral("NSSet"), &EVKeyedUnarchiver::decodeCollection},
        {QStringLiteral("NSOrderedSet"), &EVKeyedUnarchiver::decodeCollection},
        {QStringLiteral("NSDictionary"), &EVKeyedUnarchiver::decodeDictionary},
        {QStringLiteral("NSString"), &EVKeyedUnarchiver::decodeString},
        {QStringLiteral("NSDate"), &EVKeyedUnarchiver::decodeDate},
        {QStringLiteral("NSData"), &EVKeyedUnarchiver::decodeData},
        {QStringLiteral("NSColor"), &EVKeyedUnarchiver::decodeColor},
        {QStringLiteral("EVWidgetConfig"), &EVKeyedUnarchiver::decodeWidgetConfig},
    };

    const Object *classReference = m_list->value(object, QStringLiteral("$class"));
    if (!classReference || classReference->kind() != Kind::Uid ||
        classReference->toUid() >= quint64(m_objects.size()))
        return nullptr;
    const quint64 uid = classReference->toUid();
    // Many objects share one class; its names are looked at once.
    if (const auto found = m_classDecoders.constFind(uid); found != m_classDecoders.cend())
        return *found;

    ClassDecoder decoder = nullptr;
    const Object *description = m_list->object(m_objects.at(qsizetype(uid)));
    if (description && description->kind() == Kind::Dictionary) {
        QList<quint64> names;
        const Object *classes = m_list->value(*description, QStringLiteral("$classes"));
        if (classes && classes->kind() == Kind::Array)
            names = classes->references();
        if (const std::optional<quint64> name =
                m_list->valueIndex(*description, QStringLiteral("$classname"));
            names.isEmpty() && name) {
            names.append(*name);
        }
        for (quint64 index : std::as_const(names)) {
            const Object *name = m_list->object(index);
            if (name && name->kind() == Kind::String) {
                decoder = decoders.value(name->toString());
                if (decoder)
                    break;
            }
        }
    }
    m_classDecoders.insert(uid, decoder);
    return decoder;
}

QVariantList EVKeyedUnarchiver::decodeMembers(const QString &key)
{
    const Object *members = valueForKey(key);
    if (!members || (members->kind() != Kind::Array && members->kind() != Kind::Set))
        return QVariantList();
    const QList<quint64> references = members->references();
    QVariantList values;
    values.reserve(references.size());
    for (quint64 reference : references) {
        const Object *member = m_list->object(reference);
        const QVariant value =
            member && member->kind() == Kind::Uid ? decodeObject(member->toUid()) : QVariant();
        if (value.isValid())
            values.append(value);
    }
    return values;
}

QVariant EVKeyedUnarchiver::decodeCollection()
{
    return decodeMembers(QStringLiteral("NS.objects"));
}

QVariant EVKeyedUnarchiver::decodeDictionary()
{
    const Object *keys = valueForKey(QStringLiteral("NS.keys"));
    const Object *values = valueForKey(QStringLiteral("NS.objects"));
    if (!keys || !values || keys->kind() != Kind::Array || values->kind() != Kind::Array)
        return QVariant();
    const QList<quint64> keyReferences = keys->references();
    const QList<quint64> valueReferences = values->references();
    const qsizetype count = std::min(keyReferences.size(), valueReferences.size());
    QVariantMap dictionary;
    for (qsizetype i = 0; i < count; ++i) {
        const Object *key = m_list->object(keyReferences.at(i));
        const Object *value = m_list->object(valueReferences.at(i));
        if (!key || !value || key->kind() != Kind::Uid || value->kind() != Kind::Uid)
            continue;
        const QVariant decodedKey = decodeObject(key->toUid());
        const QVariant decodedValue = decodeObject(value->toUid());
        if (decodedKey.typeId() == QMetaType::QString && decodedValue.isValid())
            dictionary.insert(decodedKey.toString(), decodedValue);
    }
    return dictionary;
}

QVariant EVKeyedUnarchiver::decodeString()
{
    const Object *value = valueForKey(QStringLiteral("NS.string"));
    if (value && value->kind() == Kind::String)
        return value->toString();
    const QVariant archived = decodeObjectForKey(QStringLiteral("NS.string"));
    return archived.typeId() == QMetaType::QString ? archived : QVariant();
}

QVariant EVKeyedUnarchiver::decodeDate()
{
    const Object *time = valueForKey(QStringLiteral("NS.time"));
    if (!time || (time->kind() != Kind::Real && time->kind() != Kind::Integer))
        return QVariant();
    const QDateTime date =
        EVPropertyList::dateFromReferenceSeconds(decodeDoubleForKey(QStringLiteral("NS.time")));
    return date.isValid() ? QVariant(date) : QVariant();
}

QVariant EVKeyedUnarchiver::decodeData()
{
    const Object *value = valueForKey(QStringLiteral("NS.data"));
    if (value && value->kind() == Kind::Data)
        return value->toData();
    const QVariant archived = decodeObjectForKey(QStringLiteral("NS.data"));
    return archived.typeId() == QMetaType::QByteArray ? archived : QVariant();
}

QVariant EVKeyedUnarchiver::decodeColor()
{
    auto componentsForKey = [this](const QString &key) {
        const Object *value = valueForKey(key);
        return colorComponents(value && value->kind() == Kind::Data ? value->toData()
                                                                    : QByteArray());
    };
    switch (decodeIntegerForKey(QStringLiteral("NSColorSpace"))) {
    case CalibratedRGB:
    case DeviceRGB: {
        const auto c = componentsForKey(QStringLiteral("NSRGB"));
        return QColor::fromRgbF(float(c[0].value_or(0.0)), float(c[1].value_or(0.0)),
                                float(c[2].value_or(0.0)), float(c[3].value_or(1.0)));
    }
    case CalibratedWhite:
    case DeviceWhite: {
        const auto c = componentsForKey(QStringLiteral("NSWhite"));
        const float white = float(c[0].value_or(0.0));
        return QColor::fromRgbF(white, white, white, float(c[1].value_or(1.0)));
    }
    case DeviceCMYK: {
        const auto c = componentsForKey(QStringLiteral("NSCMYK"));
        return QColor::fromCmykF(float(c[0].value_or(0.0)), float(c[1].value_or(0.0)),
                                 float(c[2].value_or(0.0)), float(c[3].value_or(0.0)),
                                 float(c[4].value_or(1.0)))
            .toRgb();
    }
    case Catalog: {
        // A named colour carries its value as an ordinary colour under "NSColor".
        const QVariant fallback = decodeObjectForKey(QStringLiteral("NSColor"));
        return fallback.typeId() == QMetaType::QColor ? fallback : QVariant();
    }
    default:
        return QVariant();
    }
}

QVariant EVKeyedUnarchiver::decodeWidgetConfig()
{
    return QVariant::fromValue(EVWidgetConfig::initWithCoder(*this));
}
