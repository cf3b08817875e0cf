#include "TestMain.h"

#include "store/EVBinaryPropertyListWriter.h"
#include "store/EVPropertyList.h"

#include <cmath>
#include <limits>
#include <optional>

using Kind = EVPropertyList::Kind;
using Object = EVPropertyList::Object;

namespace {

// A binary property list laid out by hand, object bytes as given, so that every field of the
// trailer and the offset table can be made to lie.
struct RawBinary
{
    QList<QByteArray> objects;
    int offsetSize = 1;
    int referenceSize = 1;
    quint64 top = 0;
    std::optional<quint64> objectCount;
    std::optional<quint64> offsetTableOffset;
    // Replaces the offset of the object at that index.
    QList<std::pair<int, quint64>> offsets;

    QByteArray bytes() const
    {
        QByteArray out = QByteArrayLiteral("bplist00");
        QList<quint64> positions;
        for (const QByteArray &object : objects) {
            positions.append(quint64(out.size()));
            out.append(object);
        }
        for (const auto &[index, offset] : offsets)
            positions[index] = offset;
        const quint64 table = quint64(out.size());
        for (quint64 position : positions)
            appendNumber(out, position, offsetSize);
        out.append(6, char(0));
        out.append(char(offsetSize));
        out.append(char(referenceSize));
        appendNumber(out, objectCount.value_or(quint64(objects.size())), 8);
        appendNumber(out, top, 8);
        appendNumber(out, offsetTableOffset.value_or(table), 8);
        return out;
    }

    static void appendNumber(QByteArray &out, quint64 value, int width)
    {
        for (int shift = 8 * (width - 1); shift >= 0; shift -= 8)
            out.append(char((value >> shift) & 0xFF));
    }
};

QByteArray hex(const char *text)
{
    return QByteArray::fromHex(text);
}

// An object of every kind, with counts on both sides of the one-nibble limit.
EVPropertyList everyKind()
{
    EVPropertyList list;
    QList<quint64> members;
    members << list.append(Object::null()) << list.append(Object::boolean(true))
            << list.append(Object::boolean(false)) << list.append(Object::integer(0))
            << list.append(Object::integer(255)) << list.append(Object::integer(256))
            << list.append(Object::integer(65536)) << list.append(Object::integer(4294967296))
            << list.append(Object::integer(-1))
            << list.append(Object::integer(std::numeric_limits<qint64>::min()))
            << list.append(Object::integer(std::numeric_limits<qint64>::max()))
            << list.append(Object::unsignedInteger(std::numeric_limits<quint64>::max()))
            << list.append(Object::real(-2.5)) << list.append(Object::date(-86400.5))
            << list.append(Object::data(QByteArray()))
            << list.append(Object::data(QByteArray(40, 'x')))
            << list.append(Object::string(QString()))
            << list.append(Object::string(QStringLiteral("fifteen chars!!")))
            << list.append(Object::string(QStringLiteral("Caf\u00e9 \u2615 \U0001D11E")))
            << list.append(Object::uid(0)) << list.append(Object::uid(300))
            << list.append(Object::uid(0x1234567890ULL));
    const quint64 set = list.append(Object::set(members.first(3)));
    const quint64 key = list.append(Object::string(QStringLiteral("key")));
    const quint64 dictionary = list.append(Object::dictionary({key}, {set}));
    members << set << dictionary;
    list.setTopObject(list.append(Object::array(members)));
    return list;
}

} // namespace

class TestEVPropertyList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void binaryReadsBackEveryKindOfObject()
    {
        const EVPropertyList list = everyKind();
        const std::optional<EVPropertyList> read =
            EVPropertyList::fromData(EVBinaryPropertyListWriter::write(list));
        QVERIFY(read);
        QCOMPARE(read->count(), list.count());
        for (qsizetype i = 0; i < list.count(); ++i)
            QVERIFY2(read->objects().at(i) == list.objects().at(i), qPrintable(QString::number(i)));
        QCOMPARE(read->topObject(), list.topObject());
    }

    void binaryReadsEveryWidthOfOffsetsAndReferences_data()
    {
        QTest::addColumn<int>("offsetSize");
        QTest::addColumn<int>("referenceSize");
        for (int width = 1; width <= 8; ++width) {
            QTest::addRow("offsets %d", width) << width << 1;
            QTest::addRow("references %d", width) << 1 << width;
        }
    }

    void binaryReadsEveryWidthOfOffsetsAndReferences()
    {
        QFETCH(int, offsetSize);
        QFETCH(int, referenceSize);
        const EVPropertyList list = everyKind();
        const QByteArray bytes = EVBinaryPropertyListWriter::write(list, offsetSize, referenceSize);
        QCOMPARE(int(bytes.at(bytes.size() - 26)), offsetSize);
        QCOMPARE(int(bytes.at(bytes.size() - 25)), referenceSize);
        const std::optional<EVPropertyList> read = EVPropertyList::fromData(bytes);
        QVERIFY(read);
        QVERIFY(*read == list);
    }

    void binaryReadsWhatPythonsPlistlibWrote()
    {
        // {"$objects": ["$null", {"a": UID(1)}], "$top": {"root": UID(1)}, "n": 2**64 - 1,
        //  "neg": -5, "f": 1.5}, as plistlib writes it.
        const QByteArray bytes = hex(
            "62706c6973743030d50102030405060b0e0f1058246f626a656374735424746f705166516e536e6567a207"
            "0855246e756c6cd1090a51618001d10c0d54726f6f748001233ff800000000000014000000000000000"
            "0ffffffffffffffff13fffffffffffffffb08131c212325292c323537393c41434c5d00000000000001"
            "01000000000000001100000000000000000000000000000066");
        const std::optional<EVPropertyList> list = EVPropertyList::fromData(bytes);
        QVERIFY(list);
        const Object *top = list->top();
        QCOMPARE(top->kind(), Kind::Dictionary);
        QCOMPARE(top->dictionaryCount(), 5);
        QCOMPARE(list->value(*top, QStringLiteral("f"))->toReal(), 1.5);
        QCOMPARE(list->value(*top, QStringLiteral("neg"))->toInteger(), -5);
        const Object *n = list->value(*top, QStringLiteral("n"));
        QVERIFY(n->isUnsigned());
        QCOMPARE(quint64(n->toInteger()), std::numeric_limits<quint64>::max());
        const Object *root =
            list->value(*list->value(*top, QStringLiteral("$top")), QStringLiteral("root"));
        QCOMPARE(root->kind(), Kind::Uid);
        QCOMPARE(root->toUid(), 1u);
        const Object *objects = list->value(*top, QStringLiteral("$objects"));
        QCOMPARE(list->object(objects->references().at(0))->toString(), QStringLiteral("$null"));
        QVERIFY(!list->value(*top, QStringLiteral("missing")));
    }

    void binaryReadsFourByteRealsAndOrderedSets()
    {
        RawBinary raw;
        raw.objects = {hex("a20102"), hex("22bfc00000"), hex("b100")};
        const std::optional<EVPropertyList> list = EVPropertyList::fromData(raw.bytes());
        QVERIFY(list);
        QCOMPARE(list->object(1)->toReal(), -1.5);
        QCOMPARE(list->object(2)->kind(), Kind::Set);
        QCOMPARE(list->object(2)->references(), QList<quint64>{0});
    }

    void binaryKeepsReferencesOutOfRangeAndCycles()
    {
        RawBinary raw;
        // An array that holds itself and a reference to an object that does not exist.
        raw.objects = {hex("a20063")};
        const std::optional<EVPropertyList> list = EVPropertyList::fromData(raw.bytes());
        QVERIFY(list);
        QCOMPARE(list->top()->references(), (QList<quint64>{0, 0x63}));
        QVERIFY(!list->object(0x63));
    }

    void binaryObjectsMayShareAnOffset()
    {
        RawBinary raw;
        raw.objects = {hex("a10102"), hex("5161"), QByteArray()};
        raw.offsets = {{2, 11}};
        const std::optional<EVPropertyList> list = EVPropertyList::fromData(raw.bytes());
        QVERIFY(list);
        QCOMPARE(list->object(2)->toString(), QStringLiteral("a"));
    }

    void binaryObjectsInsideOthersAreRefused()
    {
        // A boolean inside the data before it: each object reads well on its own.
        RawBinary raw;
        raw.objects = {hex("a20102"), hex("43090909"), hex("09")};
        QVERIFY(EVPropertyList::fromData(raw.bytes()));
        raw.offsets = {{2, 12}};
        QVERIFY(!EVPropertyList::fromData(raw.bytes()));
    }

    void binaryDamageGivesNothing_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        auto row = [](const char *name, const RawBinary &raw) {
            QTest::newRow(name) << raw.bytes();
        };
        RawBinary valid;
        valid.objects = {hex("a10102"), hex("5161"), hex("09")};

        RawBinary intoTable = valid;
        intoTable.offsets = {{2, 14}};
        row("offset into the offset table", intoTable);

        RawBinary intoHeader = valid;
        intoHeader.offsets = {{0, 3}};
        row("offset into the header", intoHeader);

        RawBinary tooManyObjects = valid;
        tooManyObjects.objectCount = 4;
        row("more objects than offsets", tooManyObjects);

        RawBinary hugeCount = valid;
        hugeCount.objectCount = std::numeric_limits<quint64>::max();
        row("object count near 2^64", hugeCount);

        RawBinary noObjects = valid;
        noObjects.objectCount = 0;
        row("no objects", noObjects);

        RawBinary topOutOfRange = valid;
        topOutOfRange.top = 3;
        row("top object out of range", topOutOfRange);

        RawBinary tableBeyond = valid;
        tableBeyond.offsetTableOffset = 1000;
        row("offset table beyond the end", tableBeyond);

        RawBinary tableWrapping = valid;
        tableWrapping.offsetTableOffset = std::numeric_limits<quint64>::max() - 2;
        row("offset table offset wrapping around", tableWrapping);

        RawBinary zeroWidth = valid;
        zeroWidth.offsetSize = 0;
        row("zero-byte offsets", zeroWidth);

        RawBinary nineWide = valid;
        nineWide.referenceSize = 9;
        row("nine-byte references", nineWide);

        auto single = [&row](const char *name, const char *object) {
            RawBinary raw;
            raw.objects = {hex(object)};
            row(name, raw);
        };
        single("array count near 2^62", "af134000000000000000");
        single("dictionary count near 2^63", "df137fffffffffffffff");
        single("data count beyond the bytes", "4f10ff00");
        single("data count that is negative", "4f13ffffffffffffffff");
        single("UTF-16 count beyond the bytes", "6f1040");
        single("ASCII string cut short", "5361");
        single("count that is no integer", "4f5161");
        single("count of sixteen bytes", "4f1400000000000000000000000000000001");
        single("integer cut short", "1301");
        single("integer wider than sixteen bytes", "15");
        single("sixteen-byte integer beyond 64 bits", "1400000000000000010000000000000000");
        single("one-byte real", "2000");
        single("date of another width", "3200000000");
        single("UID of nine bytes", "88000000000000000000");
        single("unknown marker 0x7", "7161");
        single("unknown marker 0x9", "9100");
        single("unknown marker 0xE", "e0");
        single("unknown marker 0xF", "f0");
        single("unknown singleton", "01");
        QTest::newRow("header only") << QByteArrayLiteral("bplist00");
        QTest::newRow("another version") << QByteArray(valid.bytes()).replace(6, 2, "01");
    }

    void binaryDamageGivesNothing()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(!EVPropertyList::fromData(bytes));
    }

    void binaryTruncatedAnywhereGivesNothing()
    {
        const QByteArray bytes = EVBinaryPropertyListWriter::write(everyKind());
        for (qsizetype length = 0; length < bytes.size(); ++length)
            QVERIFY2(!EVPropertyList::fromData(bytes.first(length)),
                     qPrintable(QString::number(length)));
    }

    void xmlReadsEveryKindOfValue()
    {
        const QByteArray xml =
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
            "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
            "<plist version=\"1.0\">\n"
            "<dict>\n"
            "    <key>string</key><string>Fish &amp; Chips &lt;3 caf&#233;</string>\n"
            "    <key>empty</key><string/>\n"
            "    <key>integers</key>\n"
            "    <array>\n"
            "        <integer>42</integer><integer>-7</integer><integer>0x1F</integer>\n"
            "        <integer>18446744073709551615</integer>\n"
            "        <integer>-9223372036854775808</integer>\n"
            "    </array>\n"
            "    <key>real</key><real>2.5</real>\n"
            "    <key>true</key><true/>\n"
            "    <key>false</key><false/>\n"
            "    <key>date</key><date>2001-01-02T00:00:00Z</date>\n"
            "    <key>data</key><data>\n"
            "        aGVs\n"
            "        bG8=\n"
            "    </data>\n"
            "    <key>uid</key><dict><key>CF$UID</key><integer>7</integer></dict>\n"
            "    <key>nested</key><dict><key>inner</key><array/></dict>\n"
            "</dict>\n"
            "</plist>\n";
        const std::optional<EVPropertyList> list = EVPropertyList::fromData(xml);
        QVERIFY(list);
        const Object &top = *list->top();
        QCOMPARE(top.kind(), Kind::Dictionary);
        QCOMPARE(top.dictionaryCount(), 10);
        QCOMPARE(list->value(top, QStringLiteral("string"))->toString(),
                 QStringLiteral("Fish & Chips <3 caf\u00e9"));
        QCOMPARE(list->value(top, QStringLiteral("empty"))->kind(), Kind::String);
        QVERIFY(list->value(top, QStringLiteral("empty"))->toString().isEmpty());
        const QList<quint64> integers = list->value(top, QStringLiteral("integers"))->references();
        QCOMPARE(integers.size(), 5);
        QCOMPARE(list->object(integers[0])->toInteger(), 42);
        QCOMPARE(list->object(integers[1])->toInteger(), -7);
        QCOMPARE(list->object(integers[2])->toInteger(), 31);
        QVERIFY(list->object(integers[3])->isUnsigned());
        QCOMPARE(quint64(list->object(integers[3])->toInteger()),
                 std::numeric_limits<quint64>::max());
        QCOMPARE(list->object(integers[4])->toInteger(), std::numeric_limits<qint64>::min());
        QCOMPARE(list->value(top, QStringLiteral("real"))->toReal(), 2.5);
        QCOMPARE(list->value(top, QStringLiteral("true"))->toBool(), true);
        QCOMPARE(list->value(top, QStringLiteral("false"))->kind(), Kind::Boolean);
        QCOMPARE(list->value(top, QStringLiteral("false"))->toBool(), false);
        QCOMPARE(list->value(top, QStringLiteral("date"))->kind(), Kind::Date);
        QCOMPARE(list->value(top, QStringLiteral("date"))->toReal(), 86400.0);
        QCOMPARE(list->value(top, QStringLiteral("data"))->toData(), QByteArrayLiteral("hello"));
        QCOMPARE(list->value(top, QStringLiteral("uid"))->kind(), Kind::Uid);
        QCOMPARE(list->value(top, QStringLiteral("uid"))->toUid(), 7u);
        const Object &nested = *list->value(top, QStringLiteral("nested"));
        QCOMPARE(list->value(nested, QStringLiteral("inner"))->kind(), Kind::Array);
    }

    void xmlReadsAValueWithoutThePlistElement()
    {
        const std::optional<EVPropertyList> list =
            EVPropertyList::fromData(QByteArrayLiteral("<array><string>a</string></array>"));
        QVERIFY(list);
        QCOMPARE(list->top()->references().size(), 1);
    }

    void xmlDamageGivesNothing_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("not XML") << QByteArrayLiteral("{ widgets = <00>; }");
        QTest::newRow("empty plist") << QByteArrayLiteral("<plist></plist>");
        QTest::newRow("unclosed") << QByteArrayLiteral(
            "<plist><dict><key>a</key><string>b</string>");
        QTest::newRow("key without value")
            << QByteArrayLiteral("<plist><dict><key>a</key></dict></plist>");
        QTest::newRow("value without key")
            << QByteArrayLiteral("<plist><dict><string>a</string></dict></plist>");
        QTest::newRow("key outside a dictionary")
            << QByteArrayLiteral("<plist><array><key>a</key></array></plist>");
        QTest::newRow("unknown element") << QByteArrayLiteral("<plist><widget/></plist>");
        QTest::newRow("integer that is text")
            << QByteArrayLiteral("<plist><integer>twelve</integer></plist>");
        QTest::newRow("integer beyond 64 bits")
            << QByteArrayLiteral("<plist><integer>18446744073709551616</integer></plist>");
        QTest::newRow("negative integer beyond 64 bits")
            << QByteArrayLiteral("<plist><integer>-9223372036854775809</integer></plist>");
        QTest::newRow("real that is text") << QByteArrayLiteral("<plist><real>x</real></plist>");
        QTest::newRow("bad base64") << QByteArrayLiteral("<plist><data>a*b=</data></plist>");
        QTest::newRow("bad date") << QByteArrayLiteral("<plist><date>yesterday</date></plist>");
        QTest::newRow("element inside a string")
            << QByteArrayLiteral("<plist><string>a<b/></string></plist>");
        QTest::newRow("text inside true") << QByteArrayLiteral("<plist><true>no</true></plist>");
        QTest::newRow("two values")
            << QByteArrayLiteral("<plist><string>a</string><string>b</string></plist>");
        QTest::newRow("trailing garbage")
            << QByteArrayLiteral("<plist><string>a</string></plist><plist/>");
        QTest::newRow("truncated") << QByteArrayLiteral("<plist><array><string>a</str");
    }

    void xmlDamageGivesNothing()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(!EVPropertyList::fromData(bytes));
    }

    void xmlTruncatedAnywhereGivesNothing()
    {
        const QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">"
                               "<dict><key>widgets</key><data>AAEC</data><key>n</key><array>"
                               "<integer>1</integer><string>a</string><true/></array></dict>"
                               "</plist>";
        QVERIFY(EVPropertyList::fromData(xml));
        for (qsizetype length = 0; length < xml.size(); ++length)
            QVERIFY2(!EVPropertyList::fromData(xml.first(length)),
                     qPrintable(QString::number(length)));
    }

    void xmlNestingBeyondAnyRealListGivesNothing()
    {
        const int levels = 100000;
        const QByteArray deep = "<plist>" + QByteArray("<array>").repeated(levels) +
                                QByteArray("</array>").repeated(levels) + "</plist>";
        QVERIFY(!EVPropertyList::fromData(deep));

        const QByteArray fine = "<plist>" + QByteArray("<array>").repeated(200) +
                                QByteArray("</array>").repeated(200) + "</plist>";
        QVERIFY(EVPropertyList::fromData(fine));
    }

    void xmlEntityExpansionIsRefused()
    {
        // Each entity ten times the one before: a billion copies if expanded in full.
        QByteArray xml = "<?xml version=\"1.0\"?>\n<!DOCTYPE plist [\n<!ENTITY e0 \"lol\">\n";
        for (int i = 1; i <= 9; ++i) {
            xml += "<!ENTITY e" + QByteArray::number(i) + " \"" +
                   ("&e" + QByteArray::number(i - 1) + ";").repeated(10) + "\">\n";
        }
        xml += "]>\n<plist><string>&e9;</string></plist>";
        QVERIFY(!EVPropertyList::fromData(xml));
    }

    void writerUsesTheNarrowestWidths()
    {
        EVPropertyList list;
        list.setTopObject(list.append(Object::boolean(true)));
        const QByteArray bytes = EVBinaryPropertyListWriter::write(list);
        QCOMPARE(bytes, QByteArrayLiteral("bplist00") + hex("0908") + QByteArray(6, '\0') +
                            hex("0101") + hex("0000000000000001") + hex("0000000000000000") +
                            hex("0000000000000009"));
    }

    void datesCountFrom2001()
    {
        QCOMPARE(EVPropertyList::dateFromReferenceSeconds(0.0),
                 QDateTime(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC));
        QCOMPARE(EVPropertyList::dateFromReferenceSeconds(-31622400.25),
                 QDateTime(QDate(2000, 1, 1), QTime(0, 0), Qt::UTC).addMSecs(-250));
        QCOMPARE(EVPropertyList::referenceSecondsFromDate(
                     QDateTime(QDate(2001, 1, 2), QTime(0, 0, 1), Qt::UTC)),
                 86401.0);
        QVERIFY(!EVPropertyList::dateFromReferenceSeconds(std::nan("")).isValid());
        QVERIFY(!EVPropertyList::dateFromReferenceSeconds(1e300).isValid());
    }
};

TALLYVANE_TEST_MAIN(TestEVPropertyList)
#include "tst_evpropertylist.moc"
