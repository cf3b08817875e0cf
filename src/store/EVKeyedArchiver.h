#pragma once

#include "store/EVPropertyList.h"

#include <QByteArray>
#include <QHash>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>

// Encodes values into a keyed archive in the binary property-list form, laid out as the
// platform's archiver lays it out: "$null" first in "$objects", every object referred to by
// UID, one description per class with "$classname" and "$classes", and the root under "root"
// in "$top". Takes the values that EVKeyedUnarchiver gives back; none, and values of any other
// type, are written as "$null".
class EVKeyedArchiver
{
public:
    EVKeyedArchiver();
    EVKeyedArchiver(const EVKeyedArchiver &) = delete;
    EVKeyedArchiver &operator=(const EVKeyedArchiver &) = delete;

    static QByteArray archivedDataWithRootObject(const QVariant &rootObject);

    // Keyed values of the object being encoded ("$top" outside any object).
    void encodeObject(const QVariant &object, const QString &key);
    void encodeBool(bool value, const QString &key);
    void encodeInt32(qint32 value, const QString &key);
    void encodeInteger(qint64 value, const QString &key);
    void encodeDouble(double value, const QString &key);
    // As the point text "{x, y}", in place.
    void encodePoint(const QPointF &point, const QString &key);

    // The archive of everything encoded so far.
    QByteArray encodedData() const;

private:
    using Object = EVPropertyList::Object;

    struct KeyedValues
    {
        QList<quint64> keys;
        QList<quint64> values;
    };

    void encodeValue(const Object &value, const QString &key);
    quint64 inlineString(const QString &text);
    quint64 uidObject(quint64 uid);
    quint64 archive(const Object &object);
    quint64 archivedObject(const QVariant &object);
    quint64 archivedClassObject(const QStringList &classes,
                                const std::function<void()> &encodeMembers);
    quint64 classDescription(const QStringList &classes);
    QList<quint64> uidObjects(const QVariantList &objects);

    EVPropertyList m_list;
    // Position in the table of each archived object, by UID.
    QList<quint64> m_objects;
    // The keyed values of "$top", then of each object being encoded inside the one before.
    QList<KeyedValues> m_keyedValues;
    QHash<QString, quint64> m_inlineStrings;
    QHash<QString, quint64> m_archivedStrings;
    QHash<quint64, quint64> m_uidObjects;
    QHash<QString, quint64> m_classDescriptions;
};
