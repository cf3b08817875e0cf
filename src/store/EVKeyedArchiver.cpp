#include "store/EVKeyedArchiver.h"

#include "store/EVBinaryPropertyListWriter.h"
#include "store/EVRectText.h"
#include "store/EVWidgetConfig.h"

#include <QColor>
#include <QDateTime>

#include <array>
#include <charconv>

namespace {

// The version of the keyed-archive layout that the platform's archiver writes.
constexpr qint64 archiveVersion = 100000;
// Calibrated RGB, the colour space of colours picked in the earlier generation.
constexpr qint64 calibratedRGB = 1;

QByteArray componentText(float value)
{
    std::array<char, 32> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return QByteArray(buffer.data(), result.ptr - buffer.data());
}

// The components as text separated by blanks and ended by a zero byte; the alpha is left out
// when the colour is opaque, as the platform does.
QByteArray rgbComponents(const QColor &color)
{
    const QColor rgb = color.toRgb();
    QByteArray text = componentText(rgb.redF()) + ' ' + componentText(rgb.greenF()) + ' ' +
                      componentText(rgb.blueF());
    if (rgb.alphaF() < 1.0f)
        text += ' ' + componentText(rgb.alphaF());
    text.append('\0');
    return text;
}

} // namespace

EVKeyedArchiver::EVKeyedArchiver()
{
    m_objects.append(m_list.append(Object::string(QStringLiteral("$null"))));
    m_keyedValues.append(KeyedValues());
}

QByteArray EVKeyedArchiver::archivedDataWithRootObject(const QVariant &rootObject)
{
    EVKeyedArchiver archiver;
    archiver.encodeObject(rootObject, QStringLiteral("root"));
    return archiver.encodedData();
}

void EVKeyedArchiver::encodeValue(const Object &value, const QString &key)
{
    const quint64 valueIndex = m_list.append(value);
    KeyedValues &keyed = m_keyedValues.last();
    keyed.keys.append(inlineString(key));
    keyed.values.append(valueIndex);
}

void EVKeyedArchiver::encodeObject(const QVariant &object, const QString &key)
{
    // Archiving the object opens and closes keyed values of its own; these are taken after.
    const quint64 uid = archivedObject(object);
    KeyedValues &keyed = m_keyedValues.last();
    keyed.keys.append(inlineString(key));
    keyed.values.append(uidObject(uid));
}

void EVKeyedArchiver::encodeBool(bool value, const QString &key)
{
    encodeValue(Object::boolean(value), key);
}

void EVKeyedArchiver::encodeInt32(qint32 value, const QString &key)
{
    encodeValue(Object::integer(value), key);
}

void EVKeyedArchiver::encodeInteger(qint64 value, const QString &key)
{
    encodeValue(Object::integer(value), key);
}

void EVKeyedArchiver::encodeDouble(double value, const QString &key)
{
    encodeValue(Object::real(value), key);
}

void EVKeyedArchiver::encodePoint(const QPointF &point, const QString &key)
{
    encodeValue(Object::string(EVRectText::fromPoint(point)), key);
}

QByteArray EVKeyedArchiver::encodedData() const
{
    EVPropertyList list = m_list;
    auto string = [&list](const char *text) {
        return list.append(Object::string(QString::fromLatin1(text)));
    };
    const KeyedValues &top = m_keyedValues.first();
    const QList<quint64> keys{string("$version"), string("$archiver"), string("$top"),
                              string("$objects")};
    const QList<quint64> values{list.append(Object::integer(archiveVersion)),
                                string("NSKeyedArchiver"),
                                list.append(Object::dictionary(top.keys, top.values)),
                                list.append(Object::array(m_objects))};
    list.setTopObject(list.append(Object::dictionary(keys, values)));
    return EVBinaryPropertyListWriter::write(list);
}

quint64 EVKeyedArchiver::inlineString(const QString &text)
{
    if (const auto found = m_inlineStrings.constFind(text); found != m_inlineStrings.cend())
        return *found;
    const quint64 index = m_list.append(Object::string(text));
    m_inlineStrings.insert(text, index);
    return index;
}

quint64 EVKeyedArchiver::uidObject(quint64 uid)
{
    if (const auto found = m_uidObjects.constFind(uid); found != m_uidObjects.cend())
        return *found;
    const quint64 index = m_list.append(Object::uid(uid));
    m_uidObjects.insert(uid, index);
    return index;
}

quint64 EVKeyedArchiver::archive(const Object &object)
{
    m_objects.append(m_list.append(object));
    return quint64(m_objects.size() - 1);
}

QList<quint64> EVKeyedArchiver::uidObjects(const QVariantList &objects)
{
    QList<quint64> references;
    for (const QVariant &object : objects)
        references.append(uidObject(archivedObject(object)));
    return references;
}

quint64 EVKeyedArchiver::archivedObject(const QVariant &object)
{
    constexpr quint64 nullUid = 0;
    switch (object.typeId()) {
    case QMetaType::QString: {
        const QString text = object.toString();
        if (text.isNull())
            return nullUid;
        if (const auto found = m_archivedStrings.constFind(text); found != m_archivedStrings.cend())
            return *found;
        const quint64 uid = archive(Object::string(text));
        m_archivedStrings.insert(text, uid);
        return uid;
    }
    case QMetaType::Bool:
        return archive(Object::boolean(object.toBool()));
    case QMetaType::Int:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::Short:
        return archive(Object::integer(object.toLongLong()));
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
    case QMetaType::UShort:
        return archive(Object::unsignedInteger(object.toULongLong()));
    case QMetaType::Double:
    case QMetaType::Float:
        return archive(Object::real(object.toDouble()));
    case QMetaType::QByteArray:
        return object.toByteArray().isNull() ? nullUid
                                             : archive(Object::data(object.toByteArray()));
    case QMetaType::QDateTime: {
        const QDateTime date = object.toDateTime();
        if (!date.isValid())
            return nullUid;
        return archivedClassObject({QStringLiteral("NSDate"), QStringLiteral("NSObject")}, [&] {
            encodeDouble(EVPropertyList::referenceSecondsFromDate(date), QStringLiteral("NS.time"));
        });
    }
    case QMetaType::QColor: {
        const QColor color = object.value<QColor>();
        if (!color.isValid())
            return nullUid;
        return archivedClassObject({QStringLiteral("NSColor"), QStringLiteral("NSObject")}, [&] {
            encodeInteger(calibratedRGB, QStringLiteral("NSColorSpace"));
            encodeValue(Object::data(rgbComponents(color)), QStringLiteral("NSRGB"));
        });
    }
    case QMetaType::QVariantList:
    case QMetaType::QStringList: {
        const QVariantList members = object.toList();
        return archivedClassObject({QStringLiteral("NSArray"), QStringLiteral("NSObject")}, [&] {
            encodeValue(Object::array(uidObjects(members)), QStringLiteral("NS.objects"));
        });
    }
    case QMetaType::QVariantMap: {
        const QVariantMap map = object.toMap();
        return archivedClassObject(
            {QStringLiteral("NSDictionary"), QStringLiteral("NSObject")}, [&] {
                QVariantList keys;
                for (const QString &key : map.keys())
                    keys.append(key);
                const QList<quint64> keyUids = uidObjects(keys);
                const QList<quint64> valueUids = uidObjects(map.values());
                encodeValue(Object::array(keyUids), QStringLiteral("NS.keys"));
                encodeValue(Object::array(valueUids), QStringLiteral("NS.objects"));
            });
    }
    default:
        break;
    }
    if (object.typeId() == qMetaTypeId<EVWidgetConfig>()) {
        const EVWidgetConfig config = object.value<EVWidgetConfig>();
        return archivedClassObject({QStringLiteral("EVWidgetConfig"), QStringLiteral("NSObject")},
                                   [&] { config.encodeWithCoder(*this); });
    }
    return nullUid;
}

quint64 EVKeyedArchiver::archivedClassObject(const QStringList &classes,
                                             const std::function<void()> &encodeMembers)
{
    // The object takes its UID before its members, as the platform numbers them.
    const quint64 uid = archive(Object::null());
    m_keyedValues.append(KeyedValues());
    encodeMembers();
    KeyedValues keyed = m_keyedValues.takeLast();
    keyed.keys.append(inlineString(QStringLiteral("$class")));
    keyed.values.append(uidObject(classDescription(classes)));
    m_list.replace(m_objects.at(qsizetype(uid)), Object::dictionary(keyed.keys, keyed.values));
    return uid;
}

quint64 EVKeyedArchiver::classDescription(const QStringList &classes)
{
    const QString name = classes.first();
    if (const auto found = m_classDescriptions.constFind(name); found != m_classDescriptions.cend())
        return *found;
    QList<quint64> names;
    for (const QString &className : classes)
        names.append(inlineString(className));
    const QList<quint64> keys{inlineString(QStringLiteral("$classname")),
                              inlineString(QStringLiteral("$classes"))};
    const QList<quint64> values{inlineString(name), m_list.append(Object::array(names))};
    const quint64 uid = archive(Object::dictionary(keys, values));
    m_classDescriptions.insert(name, uid);
    return uid;
}
