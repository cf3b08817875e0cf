#include "KeyedArchiveBuilder.h"

#include "store/EVBinaryPropertyListWriter.h"

KeyedArchiveBuilder::KeyedArchiveBuilder()
{
    object(Object::string(QStringLiteral("$null")));
}

quint64 KeyedArchiveBuilder::object(const Object &object)
{
    m_objects.append(m_list.append(object));
    return quint64(m_objects.size() - 1);
}

quint64 KeyedArchiveBuilder::instance(const QStringList &classes, const Members &members)
{
    const quint64 uid = reserve();
    setInstance(uid, classes, members);
    return uid;
}

void KeyedArchiveBuilder::setInstance(quint64 uid, const QStringList &classes,
                                      const Members &members)
{
    Members withClass = members;
    withClass.append({QStringLiteral("$class"), Object::uid(classDescription(classes))});
    m_list.replace(m_objects.at(qsizetype(uid)), dictionary(withClass));
}

KeyedArchiveBuilder::Object KeyedArchiveBuilder::references(const QList<quint64> &uids)
{
    QList<quint64> members;
    for (quint64 uid : uids)
        members.append(m_list.append(Object::uid(uid)));
    return Object::array(members);
}

quint64 KeyedArchiveBuilder::classDescription(const QStringList &classes)
{
    for (const auto &[name, uid] : std::as_const(m_classes)) {
        if (name == classes.first())
            return uid;
    }
    QList<quint64> names;
    for (const QString &name : classes)
        names.append(m_list.append(Object::string(name)));
    const quint64 uid =
        object(dictionary({{QStringLiteral("$classname"), Object::string(classes.first())},
                           {QStringLiteral("$classes"), Object::array(names)}}));
    m_classes.append({classes.first(), uid});
    return uid;
}

KeyedArchiveBuilder::Object KeyedArchiveBuilder::dictionary(const Members &members)
{
    QList<quint64> keys;
    QList<quint64> values;
    for (const auto &[key, value] : members) {
        keys.append(m_list.append(Object::string(key)));
        values.append(m_list.append(value));
    }
    return Object::dictionary(keys, values);
}

EVPropertyList KeyedArchiveBuilder::propertyList(quint64 rootUid) const
{
    EVPropertyList list = m_list;
    auto string = [&list](const char *text) {
        return list.append(Object::string(QString::fromLatin1(text)));
    };
    const quint64 top =
        list.append(Object::dictionary({string("root")}, {list.append(Object::uid(rootUid))}));
    const QList<quint64> keys{string("$version"), string("$archiver"), string("$top"),
                              string("$objects")};
    const QList<quint64> values{list.append(Object::integer(100000)), string("NSKeyedArchiver"),
                                top, list.append(Object::array(m_objects))};
    list.setTopObject(list.append(Object::dictionary(keys, values)));
    return list;
}

QByteArray KeyedArchiveBuilder::data(quint64 rootUid) const
{
    return EVBinaryPropertyListWriter::write(propertyList(rootUid));
}
