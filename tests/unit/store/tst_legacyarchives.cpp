// Archives from an independent producer: Python's plistlib lays them out as the platform's
// keyed archiver does, and reads what our archiver writes.
#include "TestMain.h"

#include "core/EVUserDefaults.h"
#include "engine/EVWidgetsManager.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVKeyedArchiver.h"
#include "store/EVKeyedUnarchiver.h"
#include "store/EVLegacyPreferencesFile.h"
#include "store/EVWidgetConfig.h"
#include "store/EVWidgetEntry.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <limits>
#include <memory>

namespace {

const QDateTime launchDay(QDate(2015, 6, 1), QTime(9, 30), Qt::UTC);
const QDateTime newYearsEve(QDate(1999, 12, 31), QTime(23, 59, 59, 500), Qt::UTC);
const QString cafe = QStringLiteral("Caf\u00e9 \u2615 \U0001D11E");

QByteArray runScript(const QStringList &arguments, bool *ok)
{
    QProcess python;
    python.start(QStringLiteral(PYTHON3_EXECUTABLE),
                 QStringList{QStringLiteral(LEGACY_ARCHIVES_SCRIPT)} + arguments);
    *ok = python.waitForFinished(60000) && python.exitStatus() == QProcess::NormalExit &&
          python.exitCode() == 0;
    if (!*ok)
        qWarning().noquote() << python.readAllStandardError();
    return python.readAllStandardOutput();
}

QList<double> numbers(const QString &text)
{
    QList<double> result;
    for (const QString &part : text.split(QLatin1Char(' '), Qt::SkipEmptyParts))
        result.append(part.toDouble());
    return result;
}

} // namespace

class TestLegacyArchives : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    std::unique_ptr<TestHome> m_home;

    QByteArray file(const QString &name) const
    {
        QFile in(m_folder.filePath(name));
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    }

private Q_SLOTS:
    void initTestCase()
    {
        bool ok = false;
        runScript({QStringLiteral("write"), m_folder.path()}, &ok);
        QVERIFY2(ok, "the Python script could not write its archives");
    }

    void init()
    {
        m_home = std::make_unique<TestHome>();
        QVERIFY(setOffscreenScreenSize(1440, 900));
    }

    void cleanup() { m_home.reset(); }

    void archiveDecodesFieldByField_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("binary") << QStringLiteral("widgets-binary.plist");
        QTest::newRow("XML") << QStringLiteral("widgets-xml.plist");
        QTest::newRow("binary, a set at the root") << QStringLiteral("widgets-set.plist");
    }

    void archiveDecodesFieldByField()
    {
        QFETCH(QString, name);
        const QVariantList configs =
            EVKeyedUnarchiver::unarchiveObjectWithData(file(name)).toList();
        QCOMPARE(configs.size(), 3);
        for (const QVariant &config : configs)
            QCOMPARE(config.typeId(), qMetaTypeId<EVWidgetConfig>());

        const EVWidgetConfig launch = configs[0].value<EVWidgetConfig>();
        QCOMPARE(launch.position(), QPointF(360, 450));
        QCOMPARE(launch.style(), 3u);
        QCOMPARE(launch.eventTitle(), QStringLiteral("Launch day"));
        QCOMPARE(launch.eventDate(), launchDay);
        QCOMPARE(launch.enabledTime(), true);
        QCOMPARE(launch.iconFile(), QStringLiteral("rocket.png"));
        QCOMPARE(launch.textColor(), QColor::fromRgbF(1.0f, 0.5f, 0.0f));
        QCOMPARE(launch.size(), 2u);
        QCOMPARE(launch.soundNotification(), true);
        QCOMPARE(launch.soundFile(), QStringLiteral("Glass"));
        QCOMPARE(launch.minutesBeforeAlert(), 300);
        QCOMPARE(launch.dateFormat(), 4u);
        QCOMPARE(launch.usePosPercent(), true);
        QCOMPARE(launch.keepTop(), true);

        const EVWidgetConfig other = configs[1].value<EVWidgetConfig>();
        QCOMPARE(other.position(), QPointF(300, 200));
        QCOMPARE(other.style(), 15u);
        QCOMPARE(other.eventTitle(), cafe);
        QCOMPARE(other.eventDate(), newYearsEve);
        QCOMPARE(other.enabledTime(), false);
        QVERIFY(other.iconFile().isNull());
        QCOMPARE(other.textColor(), QColor::fromRgbF(0.5f, 0.5f, 0.5f, 0.25f));
        QCOMPARE(other.size(), 0u);
        QCOMPARE(other.soundNotification(), false);
        QVERIFY(other.soundFile().isNull());
        QCOMPARE(other.minutesBeforeAlert(), 300);
        QCOMPARE(other.dateFormat(), 1u);
        QCOMPARE(other.usePosPercent(), false);
        QCOMPARE(other.keepTop(), false);

        const EVWidgetConfig minimal = configs[2].value<EVWidgetConfig>();
        QCOMPARE(minimal.eventTitle(), QStringLiteral("Minimal"));
        QCOMPARE(minimal.soundFile(), QStringLiteral("Glass"));
        QCOMPARE(minimal.style(), std::numeric_limits<quint64>::max());
        QCOMPARE(minimal.position(), QPointF());
        QVERIFY(!minimal.eventDate().isValid());
        QVERIFY(!minimal.textColor().isValid());
        QCOMPARE(minimal.minutesBeforeAlert(), 300);
    }

    void preferencesFileIsImportedAtTheNextLaunch_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("binary") << QStringLiteral("preferences-binary.plist");
        QTest::newRow("XML") << QStringLiteral("preferences-xml.plist");
    }

    void preferencesFileIsImportedAtTheNextLaunch()
    {
        QFETCH(QString, name);
        QString message;
        QCOMPARE(EVLegacyPreferencesFile::importIntoSettings(m_folder.filePath(name), &message),
                 EVLegacyPreferencesFile::Result::Imported);

        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.setup();
        const QList<EVWidgetEntry *> entries = manager.widgetEntries();
        QCOMPARE(entries.size(), 3);
        QCOMPARE(entries[0]->eventTitle(), QStringLiteral("Launch day"));
        QCOMPARE(entries[0]->eventDate(), launchDay);
        QCOMPARE(entries[0]->timeElement(), true);
        QCOMPARE(entries[0]->styleIndex(), 3);
        QCOMPARE(entries[1]->eventTitle(), cafe);
        QCOMPARE(entries[1]->eventDate(), newYearsEve);
        QCOMPARE(entries[1]->timeElement(), false);
        QCOMPARE(entries[1]->styleIndex(), 9);
        QCOMPARE(entries[2]->eventTitle(), QStringLiteral("Minimal"));
        QVERIFY(!entries[2]->eventDate().isValid());
        QCOMPARE(entries[2]->styleIndex(), 9);
        QVERIFY(EVUserDefaults().value(EVTransferOldDataKey).toBool());
    }

    void plistlibReadsWhatOurArchiverWrites()
    {
        QVERIFY(setOffscreenScreenSize(1000, 800));
        EVWidgetConfig config;
        config.setPosition(QPointF(250, 200));
        config.setStyle(7);
        config.setEventTitle(cafe);
        config.setEventDate(launchDay);
        config.setEnabledTime(true);
        config.setTextColor(QColor::fromRgbF(0.0f, 0.5f, 1.0f, 0.75f));
        config.setSize(1);
        config.setSoundFile(QStringLiteral("Glass"));
        config.setMinutesBeforeAlert(15);
        config.setDateFormat(2);
        config.setKeepTop(true);
        const QString path = m_folder.filePath(QStringLiteral("ours.plist"));
        {
            QFile out(path);
            QVERIFY(out.open(QIODevice::WriteOnly));
            out.write(EVKeyedArchiver::archivedDataWithRootObject(
                QVariantList{QVariant::fromValue(config)}));
        }
        bool ok = false;
        const QJsonObject described =
            QJsonDocument::fromJson(runScript({QStringLiteral("describe"), path}, &ok)).object();
        QVERIFY(ok);
        QCOMPARE(described[QStringLiteral("rootClasses")].toArray().first().toString(),
                 QStringLiteral("NSArray"));
        const QJsonArray configs = described[QStringLiteral("configs")].toArray();
        QCOMPARE(configs.size(), 1);
        const QJsonObject coded = configs.first().toObject();
        QCOMPARE(coded[QStringLiteral("$classes")].toArray().first().toString(),
                 QStringLiteral("EVWidgetConfig"));
        QCOMPARE(coded[QStringLiteral("keys")].toArray().size(), 15);
        QCOMPARE(coded[QStringLiteral("position")].toString(), QStringLiteral("{0.25, 0.25}"));
        QCOMPARE(coded[QStringLiteral("style")].toInt(), 7);
        QCOMPARE(coded[QStringLiteral("eventTitle")].toString(), cafe);
        QCOMPARE(coded[QStringLiteral("eventDate")][QStringLiteral("NS.time")].toDouble(),
                 454843800.0);
        QCOMPARE(coded[QStringLiteral("enabledTime")].toBool(), true);
        QVERIFY(coded[QStringLiteral("iconFile")].isNull());
        const QJsonObject color = coded[QStringLiteral("textColor")].toObject();
        QCOMPARE(color[QStringLiteral("NSColorSpace")].toInt(), 1);
        const QString text = color[QStringLiteral("components")].toString();
        // Numbers in text, ended by a zero byte, as the platform writes them.
        QVERIFY(text.endsWith(QChar(0)));
        const QList<double> components = numbers(text.chopped(1));
        QCOMPARE(components.size(), 4);
        QCOMPARE(components[0], 0.0);
        QVERIFY(qAbs(components[1] - 0.5) < 1e-4);
        QCOMPARE(components[2], 1.0);
        QVERIFY(qAbs(components[3] - 0.75) < 1e-4);
        QCOMPARE(coded[QStringLiteral("size")].toInt(), 1);
        QCOMPARE(coded[QStringLiteral("soundNotification")].toBool(), false);
        QCOMPARE(coded[QStringLiteral("soundFile")].toString(), QStringLiteral("Glass"));
        QCOMPARE(coded[QStringLiteral("minutesBeforeAlert")].toInt(), 15);
        QCOMPARE(coded[QStringLiteral("dateFormat")].toInt(), 2);
        QCOMPARE(coded[QStringLiteral("usePosPercent")].toBool(), true);
        QCOMPARE(coded[QStringLiteral("keepTop")].toBool(), true);
    }
};

TALLYVANE_TEST_MAIN(TestLegacyArchives)
#include "tst_legacyarchives.moc"
