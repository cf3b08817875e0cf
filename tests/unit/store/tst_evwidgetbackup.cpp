#include "StoreSnapshot.h"
#include "TestMain.h"

#include "store/EVCoreDataDelegate.h"
#include "store/EVCustomStyle.h"
#include "store/EVWidgetBackup.h"
#include "store/EVWidgetEntry.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <memory>

class TestEVWidgetBackup : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;

    StoreSnapshot snapshot(const EVCoreDataDelegate &store) const
    {
        return StoreSnapshot::take(store.storeFilePath(), m_home->pictureFolderPath());
    }

    // Widgets that use every kind of value: none, empty, odd numbers, pictures of any bytes.
    static void fillVariedWidgets(EVCoreDataDelegate &store)
    {
        EVWidgetEntry *first = store.addWidgetEntry();
        first->setEventTitle(QStringLiteral("Ünïcode \"quoted\"\nsecond line"));
        first->setEventDate(QDateTime::fromMSecsSinceEpoch(1767225600123));
        first->setEventCreationDate(QDateTime::fromMSecsSinceEpoch(1700000000456));
        first->setTimeElement(true);
        first->setCountdownUnit(0);
        first->setDateformat(std::nullopt);
        first->setKeepTop(2);
        first->setLockWidget(true);
        first->setPriority(3);
        first->setSoundAlert(true);
        first->setIntervalBeforeAlert(-5);
        first->setIntervalAlertUnit(4);
        first->setIgnoredDayType(std::nullopt);
        first->setNote(QString());
        first->setTextcolor(QColor::fromRgbF(0.1f, 0.2f, 0.3f, 0.4f));
        first->setWidgetFrameDesc(QStringLiteral("{{0.1, 0.25}, {0.3, 0.1875}}"));
        QByteArray icon;
        for (int i = 0; i < 256; ++i)
            icon.append(char(i));
        first->setIconfileData(icon);
        first->setIconfile(QByteArray(""));

        EVCustomStyle *colour = store.addCustomStyle(first);
        colour->setColor(QColor::fromRgbF(1.0f, 0.5f, 0.25f, 0.7f));
        colour->setOpacity(0.7f);
        EVCustomStyle *picture = store.addCustomStyle(first);
        picture->setType(1);
        picture->setImageData(QByteArray("\x00\x01 not really a TIFF", 20));
        picture->setOpacity(std::nullopt);
        EVCustomStyle *third = store.addCustomStyle(first);
        third->setSid(std::nullopt);
        third->setColor(QColor());
        store.removeCustomStyle(colour, first);

        EVWidgetEntry *second = store.addWidgetEntry();
        second->setEventTitle(QStringLiteral(""));
        second->setNote(QStringLiteral("a note"));
        second->setEventDate(QDateTime());
        second->setIconfileData(QByteArray());
        second->setIconfile(QByteArray("legacy inline icon"));
        second->setIconFilePath(QString());
        second->setTextcolor(QColor());
        store.save();
    }

    static EVImportReport importText(EVCoreDataDelegate &store, const QByteArray &content)
    {
        return EVWidgetBackup::importInto(&store, QStringLiteral("backup.json"), content);
    }

    static QByteArray backupOf(const QJsonArray &widgets)
    {
        return QJsonDocument(QJsonObject{{QStringLiteral("format"), "tallyvane-backup"},
                                         {QStringLiteral("version"), 1},
                                         {QStringLiteral("widgets"), widgets}})
            .toJson();
    }

    static QJsonObject exportedWidget(EVCoreDataDelegate &store)
    {
        const QJsonDocument document =
            QJsonDocument::fromJson(EVWidgetBackup::exportEntries(store.fetchWidgetEntries()));
        return document.object().value(QStringLiteral("widgets")).toArray().at(0).toObject();
    }

private Q_SLOTS:
    void init() { m_home = std::make_unique<TestHome>(); }
    void cleanup() { m_home.reset(); }

    void exportNamesItsFormatAndVersion()
    {
        EVCoreDataDelegate store;
        store.addWidgetEntry();
        const QJsonObject root =
            QJsonDocument::fromJson(EVWidgetBackup::exportEntries(store.fetchWidgetEntries()))
                .object();
        QCOMPARE(root.value(QStringLiteral("format")).toString(),
                 QStringLiteral("tallyvane-backup"));
        QCOMPARE(root.value(QStringLiteral("version")).toInt(), 1);
        QCOMPARE(root.value(QStringLiteral("widgets")).toArray().size(), 1);
    }

    void exportWritesPicturesAsBase64AndNoneAsNull()
    {
        EVCoreDataDelegate store;
        EVWidgetEntry *entry = store.addWidgetEntry();
        entry->setIconfileData(QByteArray("icon bytes"));
        entry->setNote(QString());
        entry->setEventTitle(QStringLiteral(""));
        entry->setCountdownUnit(std::nullopt);
        const QJsonObject widget = exportedWidget(store);
        QCOMPARE(widget.value(QStringLiteral("iconfileData")).toString(),
                 QString::fromLatin1(QByteArray("icon bytes").toBase64()));
        QVERIFY(widget.value(QStringLiteral("note")).isNull());
        QVERIFY(widget.value(QStringLiteral("eventTitle")).isString());
        QCOMPARE(widget.value(QStringLiteral("eventTitle")).toString(), QString());
        QVERIFY(widget.value(QStringLiteral("countdownUnit")).isNull());
        QVERIFY(widget.value(QStringLiteral("iconfile")).isNull());
        QCOMPARE(widget.value(QStringLiteral("uuid")).toString(), entry->uuid());
    }

    void exportWritesDatesInUtcWithMillisecondsAndColoursAsFractions()
    {
        EVCoreDataDelegate store;
        EVWidgetEntry *entry = store.addWidgetEntry();
        entry->setEventDate(QDateTime(QDate(2026, 7, 4), QTime(9, 30, 0, 250)));
        entry->setTextcolor(QColor::fromRgbF(1.0f, 0.5f, 0.0f, 0.25f));
        const QJsonObject widget = exportedWidget(store);
        // TZ is America/New_York: 09:30 in July is 13:30 UTC.
        QCOMPARE(widget.value(QStringLiteral("eventDate")).toString(),
                 QStringLiteral("2026-07-04T13:30:00.250Z"));
        const QJsonArray colour = widget.value(QStringLiteral("textcolor")).toArray();
        QCOMPARE(colour.size(), 4);
        QCOMPARE(colour.at(0).toDouble(), 1.0);
        QVERIFY(qAbs(colour.at(1).toDouble() - 0.5) < 1e-4);
        QCOMPARE(colour.at(2).toDouble(), 0.0);
        QVERIFY(qAbs(colour.at(3).toDouble() - 0.25) < 1e-4);
    }

    void roundTripIntoAnEmptyProfileKeepsEveryFieldAndPicture()
    {
        QByteArray backup;
        StoreSnapshot before;
        {
            EVCoreDataDelegate store;
            fillVariedWidgets(store);
            before = snapshot(store);
            backup = EVWidgetBackup::exportEntries(store.fetchWidgetEntries());
        }
        QCOMPARE(before.entries.size(), 2);
        // A removed style stays in the store attached to no widget; it belongs to no backup.
        QCOMPARE(before.styles.size(), 3);
        before.styles.removeIf([](const auto &style) {
            return style.value().value(QStringLiteral("widget_uuid")) == QLatin1String("NULL");
        });
        QCOMPARE(before.styles.size(), 2);

        m_home = std::make_unique<TestHome>();
        {
            EVCoreDataDelegate store;
            const EVImportReport report = importText(store, backup);
            QVERIFY2(report.ok(), qPrintable(report.error));
            QCOMPARE(report.added.size(), 2);
            QVERIFY(report.skipped.isEmpty());
            store.save();
        }
        EVCoreDataDelegate reopened;
        reopened.fetchWidgetEntries();
        const StoreSnapshot after = snapshot(reopened);
        QVERIFY2(after == before, qPrintable(before.differenceFrom(after)));
        // And the backup of the copy is the backup of the original.
        QCOMPARE(EVWidgetBackup::exportEntries(reopened.fetchWidgetEntries()), backup);
    }

    void importedStylesKeepTheirOrderAndOwner()
    {
        QByteArray backup;
        QStringList styleUuids;
        {
            EVCoreDataDelegate store;
            EVWidgetEntry *entry = store.addWidgetEntry();
            for (int i = 0; i < 3; ++i)
                styleUuids.append(store.addCustomStyle(entry)->uuid());
            backup = EVWidgetBackup::exportEntries(store.fetchWidgetEntries());
        }
        m_home = std::make_unique<TestHome>();
        EVCoreDataDelegate store;
        const EVImportReport report = importText(store, backup);
        QVERIFY2(report.ok(), qPrintable(report.error));
        EVWidgetEntry *entry = report.added.at(0);
        QCOMPARE(entry->customStyles().size(), 3);
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(entry->customStyles().at(i)->uuid(), styleUuids.at(i));
            QCOMPARE(entry->customStyles().at(i)->widget(), entry);
            QCOMPARE(entry->customStyles().at(i)->sid(), i + 1);
        }
    }

    void importAddsBesideExistingWidgetsAndSkipsAKnownIdentifier()
    {
        EVCoreDataDelegate store;
        EVWidgetEntry *kept = store.addWidgetEntry();
        kept->setEventTitle(QStringLiteral("kept"));
        const QByteArray backup = EVWidgetBackup::exportEntries({kept});
        kept->setEventTitle(QStringLiteral("edited since the backup"));

        QJsonObject root = QJsonDocument::fromJson(backup).object();
        QJsonArray widgets = root.value(QStringLiteral("widgets")).toArray();
        QJsonObject other = widgets.at(0).toObject();
        other.insert(QStringLiteral("uuid"),
                     QStringLiteral("0A1B2C3D-0000-4000-8000-00000000000E"));
        other.insert(QStringLiteral("iconFilePath"),
                     QStringLiteral("0A1B2C3D-0000-4000-8000-00000000000E"));
        other.insert(QStringLiteral("eventTitle"), QStringLiteral("new"));
        widgets.append(other);

        const EVImportReport report = importText(store, backupOf(widgets));
        QVERIFY2(report.ok(), qPrintable(report.error));
        QCOMPARE(report.added.size(), 1);
        QCOMPARE(report.added.at(0)->eventTitle(), QStringLiteral("new"));
        QCOMPARE(report.skipped.size(), 1);
        QVERIFY(report.skipped.at(0).startsWith(kept->uuid()));
        QVERIFY(report.skipped.at(0).contains(QStringLiteral("already exists")));
        QCOMPARE(store.fetchWidgetEntries().size(), 2);
        QCOMPARE(kept->eventTitle(), QStringLiteral("edited since the backup"));
        QCOMPARE(report.added.at(0)->iconfileData(), kept->iconfileData());
    }

    void aWidgetWhoseStyleIdentifierExistsIsSkipped()
    {
        EVCoreDataDelegate store;
        EVWidgetEntry *entry = store.addWidgetEntry();
        EVCustomStyle *style = store.addCustomStyle(entry);
        QJsonObject widget = exportedWidget(store);
        widget.insert(QStringLiteral("uuid"),
                      QStringLiteral("0A1B2C3D-0000-4000-8000-000000000001"));
        widget.insert(QStringLiteral("iconFilePath"), QJsonValue());
        widget.insert(QStringLiteral("iconfileData"), QJsonValue());
        const EVImportReport report = importText(store, backupOf({widget}));
        QVERIFY2(report.ok(), qPrintable(report.error));
        QVERIFY(report.added.isEmpty());
        QCOMPARE(report.skipped.size(), 1);
        QVERIFY(report.skipped.at(0).contains(style->uuid()));
    }

    void badInputChangesNothing_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("message");

        QTest::newRow("malformed JSON")
            << QByteArray(
                   "{\n  \"format\": \"tallyvane-backup\",\n  \"version\": 1\n  \"widgets\": []\n}")
            << QStringLiteral("backup.json:4: malformed JSON");
        QTest::newRow("empty file")
            << QByteArray() << QStringLiteral("backup.json:1: malformed JSON");
        QTest::newRow("not an object")
            << QByteArray("[1, 2]") << QStringLiteral("backup.json:1: not a Tallyvane backup");
        QTest::newRow("other format")
            << QByteArray("{\"format\": \"other\", \"version\": 1, \"widgets\": []}")
            << QStringLiteral("backup.json:1: not a Tallyvane backup: \"format\" must be "
                              "\"tallyvane-backup\"");
        QTest::newRow("newer version")
            << QByteArray("{\"format\": \"tallyvane-backup\",\n\"version\": 2,\n\"widgets\": []}")
            << QStringLiteral("backup.json:2: written by a newer Tallyvane: backup version 2, "
                              "this version reads version 1");
        QTest::newRow("unknown top-level field")
            << QByteArray("{\"format\": \"tallyvane-backup\", \"version\": 1,\n\"widgets\": "
                          "[],\n\"comment\": \"hi\"}")
            << QStringLiteral("backup.json:3: unknown field \"comment\"");
        QTest::newRow("repeated field")
            << QByteArray("{\"format\": \"tallyvane-backup\",\n\"version\": 1,\n\"version\": "
                          "1,\n\"widgets\": []}")
            << QStringLiteral("backup.json:3: the field \"version\" appears twice in one object");
    }

    void badInputChangesNothing()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, message);
        EVCoreDataDelegate store;
        store.addWidgetEntry()->setIconfileData(QByteArray("icon"));
        store.save();
        const StoreSnapshot before = snapshot(store);
        const QByteArray fileBefore = fileContents(store.storeFilePath());

        const EVImportReport report = importText(store, content);
        QVERIFY(!report.ok());
        QVERIFY2(report.error.startsWith(message), qPrintable(report.error));
        QVERIFY(report.added.isEmpty());
        store.save();
        QCOMPARE(fileContents(store.storeFilePath()), fileBefore);
        QVERIFY(snapshot(store) == before);
    }

    // Each defect sits in the second of two good widgets, so that the first must not arrive.
    void aBadWidgetKeepsEveryWidgetOut_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QJsonValue>("value");
        QTest::addColumn<QString>("message");

        QTest::newRow("unknown field") << QStringLiteral("colour") << QJsonValue(1)
                                       << QStringLiteral("widget 2: unknown field \"colour\"");
        QTest::newRow("impossible date")
            << QStringLiteral("eventDate") << QJsonValue(QStringLiteral("2025-02-30T10:00:00.000Z"))
            << QStringLiteral("widget 2: \"eventDate\" must be a real date and time");
        QTest::newRow("date without offset")
            << QStringLiteral("eventDate") << QJsonValue(QStringLiteral("2025-02-03T10:00:00.000"))
            << QStringLiteral("widget 2: \"eventDate\" must be a real date and time");
        QTest::newRow("fractional number")
            << QStringLiteral("styleIndex") << QJsonValue(1.5)
            << QStringLiteral("widget 2: \"styleIndex\" must be a whole number or null");
        QTest::newRow("number out of range")
            << QStringLiteral("priority") << QJsonValue(4294967296.0)
            << QStringLiteral("widget 2: \"priority\" must be a whole number or null");
        QTest::newRow("text for a boolean")
            << QStringLiteral("lockWidget") << QJsonValue(QStringLiteral("yes"))
            << QStringLiteral("widget 2: \"lockWidget\" must be true, false or null");
        QTest::newRow("broken base64")
            << QStringLiteral("iconfileData") << QJsonValue(QStringLiteral("@@@"))
            << QStringLiteral("widget 2: \"iconfileData\" must be base64 text or null");
        QTest::newRow("colour of three numbers")
            << QStringLiteral("textcolor") << QJsonValue(QJsonArray{1, 1, 1})
            << QStringLiteral("widget 2: \"textcolor\" must be four numbers");
        QTest::newRow("uuid naming a path")
            << QStringLiteral("uuid") << QJsonValue(QStringLiteral("../escape"))
            << QStringLiteral("widget 2: \"uuid\" must be a name without \"/\"");
        QTest::newRow("uuid of the first widget")
            << QStringLiteral("uuid") << QJsonValue(QStringLiteral("FIRST"))
            << QStringLiteral("widget 2: the uuid FIRST appears twice in this file");
        QTest::newRow("picture path elsewhere")
            << QStringLiteral("iconFilePath") << QJsonValue(QStringLiteral("someone-else"))
            << QStringLiteral(
                   "widget 2: \"iconFilePath\" must be empty, null or the record's uuid");
        QTest::newRow("styles not a list")
            << QStringLiteral("customStyles") << QJsonValue(QStringLiteral("none"))
            << QStringLiteral("widget 2: \"customStyles\" must be a list of styles");
        QTest::newRow("bad style")
            << QStringLiteral("customStyles")
            << QJsonValue(QJsonArray{QJsonObject{{QStringLiteral("uuid"), QStringLiteral("S")}}})
            << QStringLiteral("widget 2, custom style 1: the field \"color\" is missing");
    }

    void aBadWidgetKeepsEveryWidgetOut()
    {
        QFETCH(QString, field);
        QFETCH(QJsonValue, value);
        QFETCH(QString, message);

        QJsonObject good;
        {
            TestHome elsewhere;
            EVCoreDataDelegate source;
            source.addWidgetEntry();
            good = exportedWidget(source);
        }
        good.insert(QStringLiteral("uuid"), QStringLiteral("FIRST"));
        good.insert(QStringLiteral("iconFilePath"), QStringLiteral("FIRST"));
        QJsonObject bad = good;
        bad.insert(QStringLiteral("uuid"), QStringLiteral("SECOND"));
        bad.insert(QStringLiteral("iconFilePath"), QStringLiteral("SECOND"));
        bad.insert(field, value);
        if (field == QLatin1String("uuid"))
            bad.insert(QStringLiteral("iconFilePath"), QJsonValue());
        if (field == QLatin1String("uuid") || field == QLatin1String("iconFilePath"))
            bad.insert(QStringLiteral("iconfileData"), QJsonValue());

        EVCoreDataDelegate store;
        store.save();
        const QByteArray fileBefore = fileContents(store.storeFilePath());
        const QByteArray content = backupOf({good, bad});
        const EVImportReport report = importText(store, content);
        QVERIFY(!report.ok());
        QVERIFY2(report.error.contains(message), qPrintable(report.error));
        // The message names the line where the defect is.
        const QString prefix = report.error.section(QLatin1Char(':'), 0, 1);
        const int line = prefix.section(QLatin1Char(':'), 1).toInt();
        const QList<QByteArray> lines = content.split('\n');
        QVERIFY2(line > 0 && line <= lines.size(), qPrintable(report.error));
        // A missing field sends the reader to the record that lacks it.
        const QByteArray expected =
            message.contains(QLatin1String("missing")) ? "{" : "\"" + field.toUtf8() + "\"";
        QVERIFY2(lines.at(line - 1).contains(expected), lines.at(line - 1).constData());
        QVERIFY(store.fetchWidgetEntries().isEmpty());
        QVERIFY(QDir(m_home->pictureFolderPath()).entryList(QDir::Files).isEmpty());
        store.save();
        QCOMPARE(fileContents(store.storeFilePath()), fileBefore);
    }

    void aMissingFieldIsNamed()
    {
        EVCoreDataDelegate store;
        store.addWidgetEntry();
        QJsonObject widget = exportedWidget(store);
        store.removeWidgetEntry(store.fetchWidgetEntries().at(0));
        widget.remove(QStringLiteral("note"));
        const EVImportReport report = importText(store, backupOf({widget}));
        QVERIFY(!report.ok());
        QVERIFY2(report.error.endsWith(QStringLiteral("widget 1: the field \"note\" is missing")),
                 qPrintable(report.error));
    }

    void anEmptyPictureIsNotNone()
    {
        EVCoreDataDelegate store;
        EVWidgetEntry *entry = store.addWidgetEntry();
        entry->setIconfileData(QByteArray(""));
        QJsonObject widget = exportedWidget(store);
        QCOMPARE(widget.value(QStringLiteral("iconfileData")).toString(), QStringLiteral(""));
        store.removeWidgetEntry(entry);
        const EVImportReport report = importText(store, backupOf({widget}));
        QVERIFY2(report.ok(), qPrintable(report.error));
        const QByteArray icon = report.added.at(0)->iconfileData();
        QVERIFY(!icon.isNull());
        QVERIFY(icon.isEmpty());
    }
};

TALLYVANE_TEST_MAIN(TestEVWidgetBackup)
#include "tst_evwidgetbackup.moc"
