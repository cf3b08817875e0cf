#include "KeyedArchiveBuilder.h"
#include "TestMain.h"

#include "store/EVBinaryPropertyListWriter.h"
#include "store/EVKeyedArchiver.h"
#include "store/EVKeyedUnarchiver.h"
#include "store/EVWidgetConfig.h"

#include <QColor>

#include <limits>

using Object = EVPropertyList::Object;

namespace {

const QStringList arrayClasses{QStringLiteral("NSArray"), QStringLiteral("NSObject")};
const QStringList configClasses{QStringLiteral("EVWidgetConfig"), QStringLiteral("NSObject")};
const QStringList colorClasses{QStringLiteral("NSColor"), QStringLiteral("NSObject")};

QVariant unarchive(const KeyedArchiveBuilder &archive, quint64 root)
{
    return EVKeyedUnarchiver::unarchiveObjectWithData(archive.data(root));
}

// A colour archived in a colour space with its components under the space's key.
QVariant archivedColor(int space, const char *key, const QByteArray &components)
{
    KeyedArchiveBuilder archive;
    const quint64 color =
        archive.instance(colorClasses, {{QStringLiteral("NSColorSpace"), Object::integer(space)},
                                        {QString::fromLatin1(key), Object::data(components)}});
    return unarchive(archive, color);
}

// The archive's top-level dictionary with one key replaced or removed.
QByteArray withTopKey(const QString &key, const std::optional<Object> &value)
{
    KeyedArchiveBuilder archive;
    EVPropertyList list = archive.propertyList(archive.object(Object::string(QStringLiteral("x"))));
    const Object top = *list.top();
    QList<quint64> keys;
    QList<quint64> values;
    const QList<quint64> references = top.references();
    for (qsizetype i = 0; i < top.dictionaryCount(); ++i) {
        if (list.object(references.at(i))->toString() == key)
            continue;
        keys.append(references.at(i));
        values.append(references.at(top.dictionaryCount() + i));
    }
    if (value) {
        keys.append(list.append(Object::string(key)));
        values.append(list.append(*value));
    }
    list.replace(list.topObject(), Object::dictionary(keys, values));
    return EVBinaryPropertyListWriter::write(list);
}

} // namespace

class TestEVKeyedUnarchiver : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTheRootOfAWellFormedArchive()
    {
        KeyedArchiveBuilder archive;
        const quint64 root = archive.object(Object::string(QStringLiteral("hello")));
        EVKeyedUnarchiver unarchiver(archive.data(root));
        QVERIFY(unarchiver.isValid());
        QCOMPARE(unarchiver.decodeRootObject(), QVariant(QStringLiteral("hello")));
    }

    void bytesThatAreNoKeyedArchiveGiveNothing_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("text") << QByteArrayLiteral("widgets");
        EVPropertyList plain;
        plain.setTopObject(plain.append(Object::string(QStringLiteral("root"))));
        QTest::newRow("property list that is no dictionary")
            << EVBinaryPropertyListWriter::write(plain);
        QTest::newRow("no $archiver") << withTopKey(QStringLiteral("$archiver"), std::nullopt);
        QTest::newRow("another archiver") << withTopKey(
            QStringLiteral("$archiver"), Object::string(QStringLiteral("NSArchiver")));
        QTest::newRow("no $version") << withTopKey(QStringLiteral("$version"), std::nullopt);
        QTest::newRow("$version that is text")
            << withTopKey(QStringLiteral("$version"), Object::string(QStringLiteral("100000")));
        QTest::newRow("no $objects") << withTopKey(QStringLiteral("$objects"), std::nullopt);
        QTest::newRow("$objects that is no array")
            << withTopKey(QStringLiteral("$objects"), Object::integer(1));
        QTest::newRow("no $top") << withTopKey(QStringLiteral("$top"), std::nullopt);
        QTest::newRow("$top that is no dictionary")
            << withTopKey(QStringLiteral("$top"), Object::uid(1));
    }

    void bytesThatAreNoKeyedArchiveGiveNothing()
    {
        QFETCH(QByteArray, bytes);
        EVKeyedUnarchiver unarchiver(bytes);
        QVERIFY(!unarchiver.isValid());
        QVERIFY(!unarchiver.decodeRootObject().isValid());
        QVERIFY(!EVKeyedUnarchiver::unarchiveObjectWithData(bytes).isValid());
    }

    void plainValuesComeBackAsTheyAre()
    {
        KeyedArchiveBuilder archive;
        const quint64 array = archive.instance(
            arrayClasses,
            {{QStringLiteral("NS.objects"),
              archive.references(
                  {archive.object(Object::string(QStringLiteral("text"))),
                   archive.object(Object::integer(-42)),
                   archive.object(Object::unsignedInteger(std::numeric_limits<quint64>::max())),
                   archive.object(Object::real(0.25)), archive.object(Object::boolean(true)),
                   archive.object(Object::data(QByteArrayLiteral("\x01\x02"))),
                   archive.object(Object::date(86400.0))})}});
        const QVariantList values = unarchive(archive, array).toList();
        QCOMPARE(values.size(), 7);
        QCOMPARE(values[0], QVariant(QStringLiteral("text")));
        QCOMPARE(values[1], QVariant(qint64(-42)));
        QCOMPARE(values[2], QVariant(std::numeric_limits<quint64>::max()));
        QCOMPARE(values[3], QVariant(0.25));
        QCOMPARE(values[4], QVariant(true));
        QCOMPARE(values[5], QVariant(QByteArrayLiteral("\x01\x02")));
        QCOMPARE(values[6].toDateTime(), QDateTime(QDate(2001, 1, 2), QTime(0, 0), Qt::UTC));
    }

    void archivedStringsDatesAndDataComeBack()
    {
        KeyedArchiveBuilder archive;
        const quint64 text = archive.object(Object::string(QStringLiteral("inner")));
        const quint64 members = archive.instance(
            arrayClasses,
            {{QStringLiteral("NS.objects"),
              archive.references(
                  {archive.instance(
                       {QStringLiteral("NSMutableString"), QStringLiteral("NSString"),
                        QStringLiteral("NSObject")},
                       {{QStringLiteral("NS.string"), Object::string(QStringLiteral("mutable"))}}),
                   archive.instance({QStringLiteral("NSString"), QStringLiteral("NSObject")},
                                    {{QStringLiteral("NS.string"), Object::uid(text)}}),
                   archive.instance({QStringLiteral("NSDate"), QStringLiteral("NSObject")},
                                    {{QStringLiteral("NS.time"), Object::real(-0.5)}}),
                   archive.instance({QStringLiteral("NSMutableData"), QStringLiteral("NSData"),
                                     QStringLiteral("NSObject")},
                                    {{QStringLiteral("NS.data"), Object::data("bytes")}})})}});
        const QVariantList values = unarchive(archive, members).toList();
        QCOMPARE(values.size(), 4);
        QCOMPARE(values[0], QVariant(QStringLiteral("mutable")));
        QCOMPARE(values[1], QVariant(QStringLiteral("inner")));
        QCOMPARE(values[2].toDateTime(),
                 QDateTime(QDate(2000, 12, 31), QTime(23, 59, 59, 500), Qt::UTC));
        QCOMPARE(values[3], QVariant(QByteArrayLiteral("bytes")));
    }

    void arraysSetsAndOrderedSetsKeepTheArchivesOrder_data()
    {
        QTest::addColumn<QStringList>("classes");
        QTest::newRow("array") << arrayClasses;
        QTest::newRow("mutable array")
            << QStringList{QStringLiteral("NSMutableArray"), QStringLiteral("NSArray"),
                           QStringLiteral("NSObject")};
        QTest::newRow("set") << QStringList{QStringLiteral("NSSet"), QStringLiteral("NSObject")};
        QTest::newRow("mutable set") << QStringList{
            QStringLiteral("NSMutableSet"), QStringLiteral("NSSet"), QStringLiteral("NSObject")};
        QTest::newRow("ordered set")
            << QStringList{QStringLiteral("NSOrderedSet"), QStringLiteral("NSObject")};
    }

    void arraysSetsAndOrderedSetsKeepTheArchivesOrder()
    {
        QFETCH(QStringList, classes);
        KeyedArchiveBuilder archive;
        const quint64 b = archive.object(Object::string(QStringLiteral("b")));
        const quint64 a = archive.object(Object::string(QStringLiteral("a")));
        const quint64 c = archive.object(Object::string(QStringLiteral("c")));
        const quint64 collection = archive.instance(
            classes, {{QStringLiteral("NS.objects"), archive.references({b, a, c})}});
        QCOMPARE(unarchive(archive, collection).toList(),
                 (QVariantList{QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("c")}));
    }

    void dictionariesWithStringKeys()
    {
        KeyedArchiveBuilder archive;
        const quint64 one = archive.object(Object::string(QStringLiteral("one")));
        const quint64 two = archive.object(Object::string(QStringLiteral("two")));
        const quint64 numberKey = archive.object(Object::integer(3));
        const quint64 dictionary = archive.instance(
            {QStringLiteral("NSMutableDictionary"), QStringLiteral("NSDictionary"),
             QStringLiteral("NSObject")},
            {{QStringLiteral("NS.keys"), archive.references({one, two, numberKey})},
             {QStringLiteral("NS.objects"),
              archive.references(
                  {archive.object(Object::integer(1)), 0, archive.object(Object::integer(3))})}});
        // The value of "two" is none and the third key is no string: both are left out.
        QCOMPARE(unarchive(archive, dictionary).toMap(),
                 (QVariantMap{{QStringLiteral("one"), qint64(1)}}));
    }

    void classesAreKnownByTheFirstKnownNameOfTheirChain()
    {
        KeyedArchiveBuilder archive;
        const quint64 subclass = archive.instance(
            {QStringLiteral("MYWidgetList"), QStringLiteral("NSArray"), QStringLiteral("NSObject")},
            {{QStringLiteral("NS.objects"),
              archive.references({archive.object(Object::string(QStringLiteral("x")))})}});
        QCOMPARE(unarchive(archive, subclass).toList(), QVariantList{QStringLiteral("x")});
    }

    void aClassNamedOnlyByClassnameIsKnown()
    {
        KeyedArchiveBuilder archive;
        const quint64 description = archive.object(archive.dictionary(
            {{QStringLiteral("$classname"), Object::string(QStringLiteral("NSString"))}}));
        const quint64 text = archive.object(Object::string(QStringLiteral("named")));
        const quint64 string =
            archive.object(archive.dictionary({{QStringLiteral("$class"), Object::uid(description)},
                                               {QStringLiteral("NS.string"), Object::uid(text)}}));
        QCOMPARE(unarchive(archive, string), QVariant(QStringLiteral("named")));
    }

    void unknownClassesGiveNothing()
    {
        KeyedArchiveBuilder archive;
        const quint64 url = archive.instance(
            {QStringLiteral("NSURL"), QStringLiteral("NSObject")},
            {{QStringLiteral("NS.relative"), Object::string(QStringLiteral("file:///"))}});
        QVERIFY(!unarchive(archive, url).isValid());
    }

    void theNullObjectIsNone()
    {
        KeyedArchiveBuilder archive;
        QVERIFY(!unarchive(archive, 0).isValid());
    }

    void referencesOutOfRangeGiveNothing()
    {
        KeyedArchiveBuilder archive;
        const quint64 kept = archive.object(Object::string(QStringLiteral("kept")));
        const quint64 array = archive.instance(
            arrayClasses, {{QStringLiteral("NS.objects"), archive.references({kept, 999, kept})}});
        QVERIFY(!unarchive(archive, 999).isValid());
        QVERIFY(!unarchive(archive, std::numeric_limits<quint64>::max()).isValid());
        QCOMPARE(unarchive(archive, array).toList(),
                 (QVariantList{QStringLiteral("kept"), QStringLiteral("kept")}));
    }

    void aClassReferenceOutOfRangeGivesNothing()
    {
        KeyedArchiveBuilder archive;
        const quint64 object =
            archive.object(archive.dictionary({{QStringLiteral("$class"), Object::uid(4096)}}));
        QVERIFY(!unarchive(archive, object).isValid());
    }

    void anArrayThatHoldsItselfLeavesItselfOut()
    {
        KeyedArchiveBuilder archive;
        const quint64 array = archive.reserve();
        const quint64 text = archive.object(Object::string(QStringLiteral("other")));
        archive.setInstance(array, arrayClasses,
                            {{QStringLiteral("NS.objects"), archive.references({array, text})}});
        QCOMPARE(unarchive(archive, array).toList(), QVariantList{QStringLiteral("other")});
    }

    void aCycleThroughTwoObjectsEndsAtTheFirst()
    {
        KeyedArchiveBuilder archive;
        const quint64 outer = archive.reserve();
        const quint64 inner = archive.instance(
            arrayClasses, {{QStringLiteral("NS.objects"), archive.references({outer})}});
        archive.setInstance(outer, arrayClasses,
                            {{QStringLiteral("NS.objects"), archive.references({inner})}});
        QCOMPARE(unarchive(archive, outer).toList(), QVariantList{QVariantList()});
    }

    void aConfigurationWhoseTitleIsItselfHasNoTitle()
    {
        KeyedArchiveBuilder archive;
        const quint64 config = archive.reserve();
        archive.setInstance(config, configClasses,
                            {{QStringLiteral("eventTitle"), Object::uid(config)},
                             {QStringLiteral("enabledTime"), Object::boolean(true)}});
        const QVariant value = unarchive(archive, config);
        QCOMPARE(value.typeId(), qMetaTypeId<EVWidgetConfig>());
        QVERIFY(value.value<EVWidgetConfig>().eventTitle().isNull());
        QVERIFY(value.value<EVWidgetConfig>().enabledTime());
    }

    void sharedObjectsAreDecodedOnce()
    {
        // Sixty levels, each holding the next one twice: 2^60 paths, sixty objects.
        KeyedArchiveBuilder archive;
        quint64 level = archive.object(Object::string(QStringLiteral("leaf")));
        for (int i = 0; i < 60; ++i) {
            level = archive.instance(
                arrayClasses, {{QStringLiteral("NS.objects"), archive.references({level, level})}});
        }
        QVariant value = unarchive(archive, level);
        for (int i = 0; i < 60; ++i) {
            const QVariantList members = value.toList();
            QCOMPARE(members.size(), 2);
            value = members.at(1);
        }
        QCOMPARE(value, QVariant(QStringLiteral("leaf")));
    }

    void nestingBeyondAnyRealArchiveGivesNothing()
    {
        auto nested = [](int levels) {
            KeyedArchiveBuilder archive;
            quint64 level = archive.object(Object::string(QStringLiteral("leaf")));
            for (int i = 0; i < levels; ++i) {
                level = archive.instance(
                    arrayClasses, {{QStringLiteral("NS.objects"), archive.references({level})}});
            }
            return unarchive(archive, level);
        };
        QVERIFY(nested(100).isValid());
        QVERIFY(!nested(5000).isValid());
    }

    void keyedValuesOfTheWrongKindReadAsZero()
    {
        KeyedArchiveBuilder archive;
        const quint64 config = archive.instance(
            configClasses, {{QStringLiteral("eventTitle"), Object::integer(5)},
                            {QStringLiteral("eventDate"),
                             Object::uid(archive.object(Object::string(QStringLiteral("May"))))},
                            {QStringLiteral("style"), Object::string(QStringLiteral("3"))},
                            {QStringLiteral("enabledTime"), Object::string(QStringLiteral("yes"))},
                            {QStringLiteral("textColor"),
                             Object::uid(archive.object(Object::string(QStringLiteral("red"))))},
                            {QStringLiteral("position"), Object::integer(7)}});
        const EVWidgetConfig decoded = unarchive(archive, config).value<EVWidgetConfig>();
        QVERIFY(decoded.eventTitle().isNull());
        QVERIFY(!decoded.eventDate().isValid());
        QCOMPARE(decoded.style(), 0u);
        QCOMPARE(decoded.enabledTime(), false);
        QVERIFY(!decoded.textColor().isValid());
        QCOMPARE(decoded.position(), QPointF());
    }

    void numbersConvertBetweenKinds()
    {
        KeyedArchiveBuilder archive;
        const quint64 root = archive.object(Object::null());
        EVPropertyList list = archive.propertyList(root);
        // Keyed values are read from "$top" outside any object.
        const Object top = *list.value(*list.top(), QStringLiteral("$top"));
        QList<quint64> keys = top.references().first(top.dictionaryCount());
        QList<quint64> values = top.references().sliced(top.dictionaryCount());
        auto add = [&](const char *key, const Object &value) {
            keys.append(list.append(Object::string(QString::fromLatin1(key))));
            values.append(list.append(value));
        };
        add("real", Object::real(-7.9));
        add("huge real", Object::real(1e300));
        add("wide", Object::integer(qint64(1) << 40));
        add("unsigned", Object::unsignedInteger(std::numeric_limits<quint64>::max()));
        add("one", Object::integer(1));
        add("true", Object::boolean(true));
        add("point", Object::string(QStringLiteral("{12.5, -3}")));
        list.replace(*list.valueIndex(*list.top(), QStringLiteral("$top")),
                     Object::dictionary(keys, values));
        EVKeyedUnarchiver unarchiver(EVBinaryPropertyListWriter::write(list));
        QVERIFY(unarchiver.isValid());
        QCOMPARE(unarchiver.decodeIntegerForKey(QStringLiteral("real")), -7);
        QCOMPARE(unarchiver.decodeIntegerForKey(QStringLiteral("huge real")), 0);
        QCOMPARE(unarchiver.decodeIntegerForKey(QStringLiteral("wide")), qint64(1) << 40);
        QCOMPARE(unarchiver.decodeInt32ForKey(QStringLiteral("wide")), 0);
        QCOMPARE(unarchiver.decodeIntegerForKey(QStringLiteral("unsigned")), -1);
        QCOMPARE(unarchiver.decodeInt32ForKey(QStringLiteral("unsigned")), 0);
        QCOMPARE(unarchiver.decodeDoubleForKey(QStringLiteral("one")), 1.0);
        QCOMPARE(unarchiver.decodeBoolForKey(QStringLiteral("one")), true);
        QCOMPARE(unarchiver.decodeBoolForKey(QStringLiteral("real")), true);
        QCOMPARE(unarchiver.decodeIntegerForKey(QStringLiteral("true")), 1);
        QCOMPARE(unarchiver.decodeBoolForKey(QStringLiteral("missing")), false);
        QCOMPARE(unarchiver.decodeIntegerForKey(QStringLiteral("missing")), 0);
        QVERIFY(unarchiver.containsValueForKey(QStringLiteral("point")));
        QVERIFY(!unarchiver.containsValueForKey(QStringLiteral("missing")));
        QCOMPARE(unarchiver.decodePointForKey(QStringLiteral("point")), QPointF(12.5, -3));
        QCOMPARE(unarchiver.decodePointForKey(QStringLiteral("missing")), QPointF());
    }

    void colours_data()
    {
        QTest::addColumn<int>("space");
        QTest::addColumn<QByteArray>("key");
        QTest::addColumn<QByteArray>("components");
        QTest::addColumn<QColor>("expected");
        QTest::newRow("calibrated RGB, opaque")
            << 1 << QByteArray("NSRGB") << QByteArray("1 0.5 0\0", 8)
            << QColor::fromRgbF(1.0f, 0.5f, 0.0f);
        QTest::newRow("device RGB with alpha")
            << 2 << QByteArray("NSRGB") << QByteArray("0 0.25 1 0.5\0", 13)
            << QColor::fromRgbF(0.0f, 0.25f, 1.0f, 0.5f);
        QTest::newRow("calibrated white") << 3 << QByteArray("NSWhite") << QByteArray("0.5\0", 4)
                                          << QColor::fromRgbF(0.5f, 0.5f, 0.5f);
        QTest::newRow("device white with alpha")
            << 4 << QByteArray("NSWhite") << QByteArray("1 0.25\0", 7)
            << QColor::fromRgbF(1.0f, 1.0f, 1.0f, 0.25f);
        QTest::newRow("CMYK") << 5 << QByteArray("NSCMYK") << QByteArray("0 1 1 0 1\0", 10)
                              << QColor::fromRgbF(1.0f, 0.0f, 0.0f);
        QTest::newRow("components out of range")
            << 1 << QByteArray("NSRGB") << QByteArray("2 -1 nan inf", 12)
            << QColor::fromRgbF(1.0f, 0.0f, 0.0f, 1.0f);
        QTest::newRow("missing components") << 1 << QByteArray("NSRGB") << QByteArray("0.5", 3)
                                            << QColor::fromRgbF(0.5f, 0.0f, 0.0f);
        QTest::newRow("nothing after the zero byte")
            << 1 << QByteArray("NSRGB") << QByteArray("1\0 1 1", 6)
            << QColor::fromRgbF(1.0f, 0.0f, 0.0f);
    }

    void colours()
    {
        QFETCH(int, space);
        QFETCH(QByteArray, key);
        QFETCH(QByteArray, components);
        QFETCH(QColor, expected);
        const QVariant color = archivedColor(space, key.constData(), components);
        QCOMPARE(color.typeId(), QMetaType::QColor);
        QCOMPARE(color.value<QColor>().toRgb(), expected.toRgb());
    }

    void colourOfAnUnknownSpaceIsNone()
    {
        QVERIFY(!archivedColor(10, "NSComponents", QByteArray("1 0 0 1")).isValid());
        QVERIFY(!archivedColor(0, "NSRGB", QByteArray("1 0 0 1")).isValid());
    }

    void catalogColourTakesItsFallback()
    {
        KeyedArchiveBuilder archive;
        const quint64 fallback = archive.instance(
            colorClasses, {{QStringLiteral("NSColorSpace"), Object::integer(3)},
                           {QStringLiteral("NSWhite"), Object::data(QByteArray("0\0", 2))}});
        const quint64 named = archive.instance(
            colorClasses,
            {{QStringLiteral("NSColorSpace"), Object::integer(6)},
             {QStringLiteral("NSCatalogName"),
              Object::uid(archive.object(Object::string(QStringLiteral("System"))))},
             {QStringLiteral("NSColorName"),
              Object::uid(archive.object(Object::string(QStringLiteral("textColor"))))},
             {QStringLiteral("NSColor"), Object::uid(fallback)}});
        QCOMPARE(unarchive(archive, named).value<QColor>(), QColor(Qt::black));
    }

    void whatTheArchiverWritesComesBack()
    {
        const QVariantMap map{
            {QStringLiteral("title"), QStringLiteral("Launch")},
            {QStringLiteral("count"), qint64(3)},
            {QStringLiteral("colour"), QColor::fromRgbF(0.25f, 0.5f, 1.0f, 0.75f)},
            {QStringLiteral("when"), QDateTime(QDate(2015, 6, 1), QTime(9, 30), Qt::UTC)},
            {QStringLiteral("list"), QVariantList{QStringLiteral("a"), 2.5, true, QByteArray("z")}},
            {QStringLiteral("big"), std::numeric_limits<quint64>::max()}};
        const QVariant decoded = EVKeyedUnarchiver::unarchiveObjectWithData(
            EVKeyedArchiver::archivedDataWithRootObject(map));
        const QVariantMap result = decoded.toMap();
        QCOMPARE(result.keys(), map.keys());
        QCOMPARE(result[QStringLiteral("title")], map[QStringLiteral("title")]);
        QCOMPARE(result[QStringLiteral("count")], map[QStringLiteral("count")]);
        QCOMPARE(result[QStringLiteral("colour")].value<QColor>(),
                 map[QStringLiteral("colour")].value<QColor>());
        QCOMPARE(result[QStringLiteral("when")].toDateTime(),
                 map[QStringLiteral("when")].toDateTime());
        QCOMPARE(result[QStringLiteral("list")], map[QStringLiteral("list")]);
        QCOMPARE(result[QStringLiteral("big")], map[QStringLiteral("big")]);
    }

    void archiverLaysOutObjectsAsThePlatformDoes()
    {
        const QByteArray bytes =
            EVKeyedArchiver::archivedDataWithRootObject(QVariantList{QStringLiteral("only")});
        const std::optional<EVPropertyList> list = EVPropertyList::fromData(bytes);
        QVERIFY(list);
        const EVPropertyList::Object &top = *list->top();
        QCOMPARE(list->value(top, QStringLiteral("$archiver"))->toString(),
                 QStringLiteral("NSKeyedArchiver"));
        QCOMPARE(list->value(top, QStringLiteral("$version"))->toInteger(), 100000);
        const QList<quint64> objects = list->value(top, QStringLiteral("$objects"))->references();
        QCOMPARE(list->object(objects.at(0))->toString(), QStringLiteral("$null"));
        const EVPropertyList::Object *root =
            list->value(*list->value(top, QStringLiteral("$top")), QStringLiteral("root"));
        QCOMPARE(root->kind(), EVPropertyList::Kind::Uid);
        const EVPropertyList::Object &array = *list->object(objects.at(qsizetype(root->toUid())));
        const EVPropertyList::Object &description = *list->object(
            objects.at(qsizetype(list->value(array, QStringLiteral("$class"))->toUid())));
        QCOMPARE(list->value(description, QStringLiteral("$classname"))->toString(),
                 QStringLiteral("NSArray"));
        QStringList chain;
        for (quint64 name : list->value(description, QStringLiteral("$classes"))->references())
            chain.append(list->object(name)->toString());
        QCOMPARE(chain, arrayClasses);
    }

    void noneAndEmptyStaySeparate()
    {
        const QVariant decoded =
            EVKeyedUnarchiver::unarchiveObjectWithData(EVKeyedArchiver::archivedDataWithRootObject(
                QVariantList{QString(), QStringLiteral(""), QByteArray(""), QByteArray()}));
        const QVariantList values = decoded.toList();
        // Nones cannot be members of an array; the empty values can.
        QCOMPARE(values.size(), 2);
        QVERIFY(!values[0].toString().isNull());
        QVERIFY(values[0].toString().isEmpty());
        QVERIFY(!values[1].toByteArray().isNull());
    }
};

TALLYVANE_TEST_MAIN(TestEVKeyedUnarchiver)
#include "tst_evkeyedunarchiver.moc"
