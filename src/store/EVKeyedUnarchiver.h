#pragma once

#include "store/EVPropertyList.h"

#include <QByteArray>
#include <QHash>
#include <QPointF>
#include <QSet>
#include <QString>
#include <QVariant>

#include <optional>

// Decodes a keyed archive: a property list whose "$objects" hold every archived object, which
// refer to one another by UID, with "$top" naming the root. Objects come back as values: strings
// (QString), numbers (qint64, quint64, double, bool), dates (QDateTime), data (QByteArray),
// arrays, sets and ordered sets (QVariantList), dictionaries with string keys (QVariantMap),
// colours (QColor) and widget configurations (EVWidgetConfig). A class is known by the first name
// of its "$classes" that is one of these.
//
// Whatever cannot be decoded is none: an unknown class, a reference outside "$objects", a
// reference back to an object that is still being decoded (a cycle), a value of the wrong kind.
// Collections leave such members out, as they cannot hold none. Every object is decoded once and
// shared by all that refer to it, and nesting deeper than any real archive makes the whole
// archive none, so that no input can make decoding hang or grow beyond the input's size.
class EVKeyedUnarchiver
{
public:
    explicit EVKeyedUnarchiver(const QByteArray &data);
    EVKeyedUnarchiver(const EVKeyedUnarchiver &) = delete;
    EVKeyedUnarchiver &operator=(const EVKeyedUnarchiver &) = delete;

    // The root object of the archive in the bytes; none when they are no keyed archive.
    static QVariant unarchiveObjectWithData(const QByteArray &data);

    // The bytes are a property list with "$archiver" "NSKeyedArchiver", a "$version", the
    // "$objects" array and the "$top" dictionary.
    bool isValid() const { return m_current != nullptr; }
    QVariant decodeRootObject() { return decodeObjectForKey(QStringLiteral("root")); }

    // The keyed values of the object being decoded ("$top" outside any object). A missing key,
    // or a value of another kind, reads as none, false or zero.
    bool containsValueForKey(const QString &key) const;
    QVariant decodeObjectForKey(const QString &key);
    bool decodeBoolForKey(const QString &key) const;
    qint64 decodeIntegerForKey(const QString &key) const;
    // Zero as well when the value lies outside the 32-bit range.
    qint32 decodeInt32ForKey(const QString &key) const;
    double decodeDoubleForKey(const QString &key) const;
    // The point text "{x, y}", stored in place or as an archived string.
    QPointF decodePointForKey(const QString &key);

private:
    using Object = EVPropertyList::Object;
    using ClassDecoder = QVariant (EVKeyedUnarchiver::*)();

    const Object *valueForKey(const QString &key) const;
    QVariant decodeObject(quint64 uid);
    QVariant decodeValue(const Object &object);
    ClassDecoder classDecoder(const Object &object);
    // The members of a collection under the key, each referenced by UID.
    QVariantList decodeMembers(const QString &key);

    QVariant decodeCollection();
    QVariant decodeDictionary();
    QVariant decodeString();
    QVariant decodeDate();
    QVariant decodeData();
    QVariant decodeColor();
    QVariant decodeWidgetConfig();

    std::optional<EVPropertyList> m_list;
    QList<quint64> m_objects;
    // The dictionary whose keys decode...ForKey reads.
    const Object *m_current = nullptr;
    QHash<quint64, QVariant> m_decoded;
    QHash<quint64, ClassDecoder> m_classDecoders;
    QSet<quint64> m_inProgress;
    int m_depth = 0;
    bool m_tooDeep = false;
};
