#pragma once

#include "store/EVPropertyList.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <utility>

// Lays out keyed archives object by object, the way the platform's archiver does, including
// archives that no archiver would write: references out of range, cycles, wrong kinds.
class KeyedArchiveBuilder
{
public:
    using Object = EVPropertyList::Object;
    using Members = QList<std::pair<QString, Object>>;

    KeyedArchiveBuilder();

    // Appends an object to "$objects"; its UID.
    quint64 object(const Object &object);
    // An object of a class; the class's description is written once per first class name.
    quint64 instance(const QStringList &classes, const Members &members);
    // Replaces the object with that UID, so that objects can refer to ones made later.
    void setInstance(quint64 uid, const QStringList &classes, const Members &members);
    // A reserved UID for setInstance.
    quint64 reserve() { return object(Object::null()); }

    // An array of UID references, as "NS.objects" holds them.
    Object references(const QList<quint64> &uids);
    // A dictionary of keyed values, for objects laid out by hand.
    Object dictionary(const Members &members);

    // The archive with "root" in "$top" referring to that UID.
    QByteArray data(quint64 rootUid) const;
    // The same archive's property list, for writing it in another form.
    EVPropertyList propertyList(quint64 rootUid) const;

private:
    quint64 classDescription(const QStringList &classes);

    EVPropertyList m_list;
    QList<quint64> m_objects;
    QList<std::pair<QString, quint64>> m_classes;
};
