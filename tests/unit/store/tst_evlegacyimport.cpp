#include "TestMain.h"

#include "core/EVUserDefaults.h"
#include "engine/EVLegacyImport.h"
#include "engine/EVWidgetsManager.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVKeyedArchiver.h"
#include "store/EVWidgetConfig.h"
#include "store/EVWidgetEntry.h"

#include <memory>

namespace {

EVWidgetConfig config(const QString &title, const QDateTime &date, quint64 style,
                      bool enabledTime = false)
{
    EVWidgetConfig result;
    result.setEventTitle(title);
    result.setEventDate(date);
    result.setStyle(style);
    result.setEnabledTime(enabledTime);
    return result;
}

QByteArray archiveOf(const QList<EVWidgetConfig> &configs)
{
    QVariantList list;
    for (const EVWidgetConfig &each : configs)
        list.append(QVariant::fromValue(each));
    return EVKeyedArchiver::archivedDataWithRootObject(list);
}

void storeOldWidgets(const QByteArray &archive)
{
    EVUserDefaults defaults;
    defaults.setValue(EVLegacyWidgetsKey, archive);
}

bool importDone()
{
    return EVUserDefaults().value(EVTransferOldDataKey).toBool();
}

const QDateTime launch(QDate(2015, 6, 1), QTime(9, 30), Qt::UTC);
const QDateTime landing(QDate(2015, 7, 4), QTime(18, 0, 30), Qt::UTC);

} // namespace

class TestEVLegacyImport : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;

    static QStringList titles(EVWidgetsManager &manager)
    {
        QStringList result;
        for (EVWidgetEntry *entry : manager.widgetEntries())
            result.append(entry->eventTitle());
        return result;
    }

private Q_SLOTS:
    void init() { m_home = std::make_unique<TestHome>(); }
    void cleanup() { m_home.reset(); }

    void settingsAreTheApplicationsOwnNativeFile()
    {
        EVUserDefaults defaults;
        QCOMPARE(defaults.format(), QSettings::NativeFormat);
        QCOMPARE(defaults.organizationName(), QStringLiteral("velto"));
        QCOMPARE(defaults.applicationName(), QStringLiteral("Tallyvane"));
        QVERIFY2(defaults.fileName().endsWith(QStringLiteral("/.config/velto/Tallyvane.conf")),
                 qPrintable(defaults.fileName()));
    }

    void stylesThreeAndFifteenGiveTwoEntriesInArchiveOrder()
    {
        storeOldWidgets(archiveOf({config(QStringLiteral("Launch"), launch, 3),
                                   config(QStringLiteral("Landing"), landing, 15)}));
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.setup();

        const QList<EVWidgetEntry *> entries = manager.widgetEntries();
        QCOMPARE(entries.size(), 2);
        QCOMPARE(entries[0]->eventTitle(), QStringLiteral("Launch"));
        QCOMPARE(entries[0]->eventDate(), launch);
        QCOMPARE(entries[0]->styleIndex(), 3);
        QCOMPARE(entries[1]->eventTitle(), QStringLiteral("Landing"));
        QCOMPARE(entries[1]->eventDate(), landing);
        QCOMPARE(entries[1]->styleIndex(), 9);
        // Each new entry has its window, as any widget added through the manager.
        for (EVWidgetEntry *entry : entries)
            QVERIFY(manager.widgetWindowController(entry));
        QVERIFY(importDone());
    }

    void everythingElseTakesTheDefaults()
    {
        EVWidgetConfig old = config(QStringLiteral("Launch"), launch, 0);
        old.setTextColor(Qt::red);
        old.setDateFormat(1);
        old.setKeepTop(true);
        old.setSoundNotification(true);
        old.setPosition(QPointF(10, 10));
        storeOldWidgets(archiveOf({old}));
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.setup();

        EVWidgetEntry *entry = manager.widgetEntries().at(0);
        QCOMPARE(entry->styleIndex(), 0);
        QCOMPARE(entry->textcolor(), QColor(Qt::white));
        QCOMPARE(entry->dateformat(), 4);
        QCOMPARE(entry->keepTop(), 0);
        QCOMPARE(entry->soundAlert(), false);
        QCOMPARE(entry->countdownUnit(), 1);
        QCOMPARE(entry->intervalBeforeAlert(), 1);
        QCOMPARE(entry->uuid().size(), 36);
        QVERIFY(!entry->iconfileData().isEmpty());
    }

    void enabledTimeBecomesTimeElement()
    {
        storeOldWidgets(archiveOf({config(QStringLiteral("with time"), launch, 1, true),
                                   config(QStringLiteral("date only"), launch, 1, false)}));
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.setup();
        QCOMPARE(manager.widgetEntries().at(0)->timeElement(), true);
        QCOMPARE(manager.widgetEntries().at(1)->timeElement(), false);
    }

    void aConfigurationWithoutTitleOrDateGivesNone()
    {
        storeOldWidgets(archiveOf({EVWidgetConfig()}));
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.setup();
        EVWidgetEntry *entry = manager.widgetEntries().at(0);
        QVERIFY(entry->eventTitle().isNull());
        QVERIFY(!entry->eventDate().isValid());
        QCOMPARE(entry->styleIndex(), 0);
    }

    void aSecondLaunchImportsNothing()
    {
        storeOldWidgets(archiveOf({config(QStringLiteral("Launch"), launch, 3)}));
        {
            EVCoreDataDelegate store;
            EVWidgetsManager manager(&store);
            manager.setup();
            manager.save();
        }
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.setup();
        QCOMPARE(titles(manager), QStringList{QStringLiteral("Launch")});
        QVERIFY(!EVUserDefaults().value(EVLegacyWidgetsKey).toByteArray().isEmpty());
    }

    void theOldValueStaysAndNothingIsSaved()
    {
        const QByteArray archive = archiveOf({config(QStringLiteral("Launch"), launch, 3)});
        storeOldWidgets(archive);
        {
            EVCoreDataDelegate store;
            EVWidgetsManager manager(&store);
            manager.setup();
            QCOMPARE(manager.widgetEntries().size(), 1);
        }
        QCOMPARE(EVUserDefaults().value(EVLegacyWidgetsKey).toByteArray(), archive);
        EVCoreDataDelegate reopened;
        QVERIFY(reopened.fetchWidgetEntries().isEmpty());
    }

    void withoutOldWidgetsTheMarkerIsStillSet()
    {
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        QVERIFY(!manager.transferOldData().isValid());
        manager.setup();
        QVERIFY(manager.widgetEntries().isEmpty());
        QVERIFY(importDone());
    }

    void aValueThatIsNoArchiveImportsNothingAndSetsTheMarker_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::newRow("text") << QByteArrayLiteral("not an archive");
        QTest::newRow("cut short") << archiveOf({config(QStringLiteral("x"), launch, 1)}).first(60);
        QTest::newRow("a single configuration, not a collection")
            << EVKeyedArchiver::archivedDataWithRootObject(
                   QVariant::fromValue(config(QStringLiteral("x"), launch, 1)));
        QTest::newRow("archive of nothing") << EVKeyedArchiver::archivedDataWithRootObject({});
    }

    void aValueThatIsNoArchiveImportsNothingAndSetsTheMarker()
    {
        QFETCH(QByteArray, value);
        storeOldWidgets(value);
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.setup();
        QVERIFY(manager.widgetEntries().isEmpty());
        QVERIFY(importDone());
        QCOMPARE(EVUserDefaults().value(EVLegacyWidgetsKey).toByteArray(), value);
    }

    void membersThatAreNoConfigurationArePassedOver()
    {
        storeOldWidgets(EVKeyedArchiver::archivedDataWithRootObject(
            QVariantList{QStringLiteral("stray"),
                         QVariant::fromValue(config(QStringLiteral("kept"), launch, 2))}));
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.setup();
        QCOMPARE(titles(manager), QStringList{QStringLiteral("kept")});
    }

    void transferOldDataGivesWhatTheArchiveHolds()
    {
        storeOldWidgets(archiveOf({config(QStringLiteral("Launch"), launch, 3)}));
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        const QVariantList old = manager.transferOldData().toList();
        QCOMPARE(old.size(), 1);
        QCOMPARE(old.at(0).value<EVWidgetConfig>().eventTitle(), QStringLiteral("Launch"));
        QCOMPARE(old.at(0).value<EVWidgetConfig>().minutesBeforeAlert(), 300);
        // Reading is all it does.
        QVERIFY(manager.widgetEntries().isEmpty());
        QVERIFY(!importDone());
    }

    void importRunsOnAnySettings()
    {
        QSettings other(m_home->path() + QStringLiteral("/other.conf"), QSettings::IniFormat);
        other.setValue(EVLegacyWidgetsKey,
                       archiveOf({config(QStringLiteral("elsewhere"), launch, 4)}));
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        EVLegacyImport::setup(manager, other);
        QCOMPARE(titles(manager), QStringList{QStringLiteral("elsewhere")});
        QVERIFY(other.value(EVTransferOldDataKey).toBool());
        QVERIFY(!importDone());
    }
};

TALLYVANE_TEST_MAIN(TestEVLegacyImport)
#include "tst_evlegacyimport.moc"
