#include "KeyedArchiveBuilder.h"
#include "TestMain.h"

#include "store/EVKeyedArchiver.h"
#include "store/EVKeyedUnarchiver.h"
#include "store/EVWidgetConfig.h"

#include <limits>

using Object = EVPropertyList::Object;

namespace {

const QStringList configClasses{QStringLiteral("EVWidgetConfig"), QStringLiteral("NSObject")};

EVWidgetConfig decoded(const KeyedArchiveBuilder &archive, quint64 root)
{
    const QVariant value = EVKeyedUnarchiver::unarchiveObjectWithData(archive.data(root));
    return value.value<EVWidgetConfig>();
}

// The keyed values of the one configuration in an archive, in the order they were written.
QList<std::pair<QString, Object>> encodedValues(const EVWidgetConfig &config)
{
    const std::optional<EVPropertyList> list = EVPropertyList::fromData(
        EVKeyedArchiver::archivedDataWithRootObject(QVariant::fromValue(config)));
    const Object &top = *list->top();
    const QList<quint64> objects = list->value(top, QStringLiteral("$objects"))->references();
    const quint64 root =
        list->value(*list->value(top, QStringLiteral("$top")), QStringLiteral("root"))->toUid();
    const Object &object = *list->object(objects.at(qsizetype(root)));
    const QList<quint64> references = object.references();
    QList<std::pair<QString, Object>> values;
    for (qsizetype i = 0; i < object.dictionaryCount(); ++i) {
        values.append({list->object(references.at(i))->toString(),
                       *list->object(references.at(object.dictionaryCount() + i))});
    }
    return values;
}

Object encodedValue(const EVWidgetConfig &config, const QString &key)
{
    for (const auto &[name, value] : encodedValues(config)) {
        if (name == key)
            return value;
    }
    return Object::null();
}

EVWidgetConfig fullConfig()
{
    EVWidgetConfig config;
    config.setPosition(QPointF(100, 200));
    config.setStyle(5);
    config.setEventTitle(QStringLiteral("Launch"));
    config.setEventDate(QDateTime(QDate(2014, 3, 1), QTime(12, 0), Qt::UTC));
    config.setEnabledTime(true);
    config.setIconFile(QStringLiteral("rocket.png"));
    config.setTextColor(QColor::fromRgbF(1.0f, 0.5f, 0.0f));
    config.setSize(2);
    config.setSoundNotification(true);
    config.setSoundFile(QStringLiteral("Glass"));
    config.setMinutesBeforeAlert(10);
    config.setDateFormat(3);
    config.setUsePosPercent(false);
    config.setKeepTop(true);
    return config;
}

} // namespace

class TestEVWidgetConfig : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(setOffscreenScreenSize(1000, 800)); }

    void decodesEveryFieldByItsKey()
    {
        KeyedArchiveBuilder archive;
        const quint64 color =
            archive.instance({QStringLiteral("NSColor"), QStringLiteral("NSObject")},
                             {{QStringLiteral("NSColorSpace"), Object::integer(1)},
                              {QStringLiteral("NSRGB"), Object::data(QByteArray("0 0 1\0", 6))}});
        const quint64 date =
            archive.instance({QStringLiteral("NSDate"), QStringLiteral("NSObject")},
                             {{QStringLiteral("NS.time"), Object::real(415368000.0)}});
        auto text = [&archive](const char *value) {
            return Object::uid(archive.object(Object::string(QString::fromUtf8(value))));
        };
        const quint64 config = archive.instance(
            configClasses,
            {{QStringLiteral("position"), Object::string(QStringLiteral("{300, 200}"))},
             {QStringLiteral("style"), Object::integer(5)},
             {QStringLiteral("eventTitle"), text("Launch")},
             {QStringLiteral("eventDate"), Object::uid(date)},
             {QStringLiteral("enabledTime"), Object::boolean(true)},
             {QStringLiteral("iconFile"), text("rocket.png")},
             {QStringLiteral("textColor"), Object::uid(color)},
             {QStringLiteral("size"), Object::integer(2)},
             {QStringLiteral("soundNotification"), Object::boolean(true)},
             {QStringLiteral("soundFile"), text("Glass")},
             {QStringLiteral("minutesBeforeAlert"), Object::integer(45)},
             {QStringLiteral("dateFormat"), Object::integer(3)},
             {QStringLiteral("usePosPercent"), Object::boolean(false)},
             {QStringLiteral("keepTop"), Object::boolean(true)}});
        const EVWidgetConfig result = decoded(archive, config);
        QCOMPARE(result.position(), QPointF(300, 200));
        QCOMPARE(result.style(), 5u);
        QCOMPARE(result.eventTitle(), QStringLiteral("Launch"));
        QCOMPARE(result.eventDate(), QDateTime(QDate(2014, 3, 1), QTime(12, 0), Qt::UTC));
        QCOMPARE(result.enabledTime(), true);
        QCOMPARE(result.iconFile(), QStringLiteral("rocket.png"));
        QCOMPARE(result.textColor(), QColor(Qt::blue));
        QCOMPARE(result.size(), 2u);
        QCOMPARE(result.soundNotification(), true);
        QCOMPARE(result.soundFile(), QStringLiteral("Glass"));
        QCOMPARE(result.minutesBeforeAlert(), 300);
        QCOMPARE(result.dateFormat(), 3u);
        QCOMPARE(result.usePosPercent(), false);
        QCOMPARE(result.keepTop(), true);
    }

    void positionStoredAsFractionsScalesToTheMainScreen()
    {
        QVERIFY(setOffscreenScreenSize(1440, 900));
        KeyedArchiveBuilder archive;
        const quint64 config = archive.instance(
            configClasses,
            {{QStringLiteral("usePosPercent"), Object::boolean(true)},
             {QStringLiteral("position"), Object::string(QStringLiteral("{0.5, 0.25}"))}});
        const EVWidgetConfig result = decoded(archive, config);
        QCOMPARE(result.position(), QPointF(720, 225));
        QVERIFY(result.usePosPercent());
    }

    void leadTimeOfTenMinutesDecodesAsThreeHundred()
    {
        KeyedArchiveBuilder archive;
        const quint64 config = archive.instance(
            configClasses, {{QStringLiteral("minutesBeforeAlert"), Object::integer(10)}});
        QCOMPARE(decoded(archive, config).minutesBeforeAlert(), 300);
    }

    void missingKeysDecodeAsZeroFalseAndNone()
    {
        KeyedArchiveBuilder archive;
        const EVWidgetConfig result = decoded(archive, archive.instance(configClasses, {}));
        QCOMPARE(result.position(), QPointF());
        QCOMPARE(result.style(), 0u);
        QVERIFY(result.eventTitle().isNull());
        QVERIFY(!result.eventDate().isValid());
        QCOMPARE(result.enabledTime(), false);
        QVERIFY(result.iconFile().isNull());
        QVERIFY(!result.textColor().isValid());
        QCOMPARE(result.size(), 0u);
        QCOMPARE(result.soundNotification(), false);
        QVERIFY(result.soundFile().isNull());
        QCOMPARE(result.minutesBeforeAlert(), 300);
        QCOMPARE(result.dateFormat(), 0u);
        QCOMPARE(result.usePosPercent(), false);
        QCOMPARE(result.keepTop(), false);
    }

    void negativeStyleDecodesAsAHugeUnsignedNumber()
    {
        KeyedArchiveBuilder archive;
        const quint64 config =
            archive.instance(configClasses, {{QStringLiteral("style"), Object::integer(-1)}});
        QCOMPARE(decoded(archive, config).style(), std::numeric_limits<quint64>::max());
    }

    void encodesEveryKeyInOrder()
    {
        QStringList keys;
        for (const auto &[key, value] : encodedValues(fullConfig()))
            keys.append(key);
        QCOMPARE(keys,
                 (QStringList{QStringLiteral("position"), QStringLiteral("style"),
                              QStringLiteral("eventTitle"), QStringLiteral("eventDate"),
                              QStringLiteral("enabledTime"), QStringLiteral("iconFile"),
                              QStringLiteral("textColor"), QStringLiteral("size"),
                              QStringLiteral("soundNotification"), QStringLiteral("soundFile"),
                              QStringLiteral("minutesBeforeAlert"), QStringLiteral("dateFormat"),
                              QStringLiteral("usePosPercent"), QStringLiteral("keepTop"),
                              QStringLiteral("$class")}));
    }

    void encodesThePositionAsFractionsAndAlwaysSaysSo()
    {
        const EVWidgetConfig config = fullConfig();
        QVERIFY(!config.usePosPercent());
        QCOMPARE(encodedValue(config, QStringLiteral("position")).toString(),
                 QStringLiteral("{0.1, 0.25}"));
        const Object usePosPercent = encodedValue(config, QStringLiteral("usePosPercent"));
        QCOMPARE(usePosPercent.kind(), EVPropertyList::Kind::Boolean);
        QVERIFY(usePosPercent.toBool());
    }

    void encodesNumbersAs32BitIntegers()
    {
        EVWidgetConfig config = fullConfig();
        config.setStyle((quint64(1) << 32) + 3);
        config.setSize(quint64(std::numeric_limits<quint32>::max()));
        QCOMPARE(encodedValue(config, QStringLiteral("style")).toInteger(), 3);
        QCOMPARE(encodedValue(config, QStringLiteral("size")).toInteger(), -1);
        QCOMPARE(encodedValue(config, QStringLiteral("minutesBeforeAlert")).toInteger(), 10);
        QCOMPARE(encodedValue(config, QStringLiteral("enabledTime")).kind(),
                 EVPropertyList::Kind::Boolean);
    }

    void encodesOnAScreenOfNoSizeWithoutAGuard()
    {
        QVERIFY(setOffscreenScreenSize(0, 0));
        QCOMPARE(encodedValue(fullConfig(), QStringLiteral("position")).toString(),
                 QStringLiteral("{inf, inf}"));
    }

    void whatIsEncodedDecodesBack()
    {
        const EVWidgetConfig config = fullConfig();
        const QVariant value =
            EVKeyedUnarchiver::unarchiveObjectWithData(EVKeyedArchiver::archivedDataWithRootObject(
                QVariantList{QVariant::fromValue(config), QVariant::fromValue(EVWidgetConfig())}));
        const QVariantList list = value.toList();
        QCOMPARE(list.size(), 2);
        EVWidgetConfig expected = config;
        expected.setMinutesBeforeAlert(300);
        expected.setUsePosPercent(true);
        QCOMPARE(list.at(0).value<EVWidgetConfig>(), expected);

        EVWidgetConfig empty;
        empty.setMinutesBeforeAlert(300);
        empty.setUsePosPercent(true);
        QCOMPARE(list.at(1).value<EVWidgetConfig>(), empty);
    }

    void descriptionIsTheEventDateTwice()
    {
        EVWidgetConfig config = fullConfig();
        QCOMPARE(config.description(),
                 QStringLiteral("2014-03-01 12:00:00 +0000 2014-03-01 12:00:00 +0000"));
        config.setEventDate(QDateTime());
        QCOMPARE(config.description(), QStringLiteral("(null) (null)"));
    }
};

TALLYVANE_TEST_MAIN(TestEVWidgetConfig)
#include "tst_evwidgetconfig.moc"
