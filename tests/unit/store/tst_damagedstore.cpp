#include "LogRecorder.h"
#include "SqlFile.h"
#include "StoreReports.h"
#include "TestMain.h"

#include "engine/EVWidgetWindow.h"
#include "engine/EVWidgetsManager.h"
#include "engine/EVWindowController.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVCustomStyle.h"
#include "store/EVObjectContext.h"
#include "store/EVStoreFile.h"
#include "store/EVWidgetEntry.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSet>

#include <climits>
#include <cmath>
#include <memory>

// Store files damaged by power loss, full disks and restored backups, or changed by hand: none
// of them may crash Tallyvane, hide or duplicate widgets, or make it write outside its folders.
class TestDamagedStore : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;

    static bool writeFile(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
               file.write(bytes) == bytes.size();
    }

    static bool isUuid(const QString &text)
    {
        static const QRegularExpression form(
            QStringLiteral("^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}$"));
        return form.match(text).hasMatch();
    }

    static QStringList titles(const QList<EVWidgetEntry *> &entries)
    {
        QStringList result;
        for (const EVWidgetEntry *entry : entries)
            result.append(entry->eventTitle());
        return result;
    }

    // Every uuid of the store's records, entries and custom styles alike.
    static QStringList allUuids(EVCoreDataDelegate &store)
    {
        QStringList uuids;
        for (const EVWidgetEntry *entry : store.fetchWidgetEntries())
            uuids.append(entry->uuid());
        for (const EVCustomStyle *style : store.managedObjectContext()->customStyles())
            uuids.append(style->uuid());
        return uuids;
    }

    // Entries with these titles, saved as an earlier run would have left them.
    static void saveEntries(const QStringList &entryTitles)
    {
        EVCoreDataDelegate store;
        for (const QString &title : entryTitles)
            store.addWidgetEntry()->setEventTitle(title);
        store.save();
    }

    // The files under HOME, apart from the store's own folder and the picture folder.
    QStringList filesOutsideOurFolders() const
    {
        QStringList outside;
        QDirIterator files(m_home->path(), QDir::Files | QDir::Hidden | QDir::System,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next();
            if (!path.startsWith(m_home->applicationFilesPath() + QLatin1Char('/')) &&
                !path.startsWith(m_home->pictureFolderPath() + QLatin1Char('/')))
                outside.append(path);
        }
        return outside;
    }

    // The page size a store file declares in its header.
    static int pageSize(const QByteArray &file)
    {
        const int declared = (quint8(file.at(16)) << 8) | quint8(file.at(17));
        return declared == 1 ? 65536 : declared;
    }

    static QByteArray withPageOverwritten(QByteArray file, qsizetype page, quint32 seed)
    {
        const int size = pageSize(file);
        QRandomGenerator random(seed);
        for (qsizetype i = page * size; i < (page + 1) * size && i < file.size(); ++i)
            file[i] = char(random.bounded(256));
        return file;
    }

    // Sixty widgets with notes long enough to spread their rows over many pages, every third
    // with a custom style.
    QByteArray storeOfSixtyWidgets()
    {
        {
            EVCoreDataDelegate store;
            for (int i = 0; i < 60; ++i) {
                EVWidgetEntry *entry = store.addWidgetEntry();
                entry->setEventTitle(QStringLiteral("widget %1").arg(i, 2, 10, QLatin1Char('0')));
                entry->setNote(QString(300, QLatin1Char('a' + i % 26)));
                if (i % 3 == 0)
                    store.addCustomStyle(entry)->setColor(QColor(i, 0, 0));
            }
            store.save();
        }
        return fileContents(m_home->storeFilePath());
    }

    // The outcome of opening the store file as it is: either every one of the expected
    // entries, or the failure path with nothing loaded and the file left as it was.
    void verifyLoadsAllOrFails(int expectedEntries, const QString &what)
    {
        const QByteArray before = fileContents(m_home->storeFilePath());
        StoreReports reports;
        int loaded = 0;
        {
            EVCoreDataDelegate store;
            reports.watch(store);
            loaded = int(store.fetchWidgetEntries().size());
            store.fetchWidgetEntries();
        }
        if (reports.errors.isEmpty()) {
            QVERIFY2(
                loaded == expectedEntries,
                qPrintable(QStringLiteral("%1: loaded %2 without a word").arg(what).arg(loaded)));
            return;
        }
        QVERIFY2(loaded == 0,
                 qPrintable(QStringLiteral("%1: partial load of %2").arg(what).arg(loaded)));
        QCOMPARE(reports.errors.size(), 1);
        QCOMPARE(reports.alerts.shown().size(), 1);
        QCOMPARE(reports.terminations.requests(), 1);
        QVERIFY2(fileContents(m_home->storeFilePath()) == before,
                 qPrintable(what + QStringLiteral(": changed")));
    }

private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<TestHome>();
        QVERIFY(setOffscreenScreenSize(1000, 800));
    }
    void cleanup()
    {
        m_home.reset();
        QVERIFY(setOffscreenScreenSize(800, 600));
    }

    void schemaVersionBelowZeroTakesTheFailurePath_data()
    {
        QTest::addColumn<int>("version");
        QTest::newRow("-1") << -1;
        QTest::newRow("lowest") << INT_MIN;
    }
    void schemaVersionBelowZeroTakesTheFailurePath()
    {
        QFETCH(int, version);
        saveEntries({QStringLiteral("kept")});
        QVERIFY(SqlFile(m_home->storeFilePath())
                    .exec(QStringLiteral("PRAGMA user_version = %1").arg(version)));
        const QByteArray before = fileContents(m_home->storeFilePath());

        StoreReports reports;
        EVCoreDataDelegate store;
        reports.watch(store);
        QVERIFY(store.fetchWidgetEntries().isEmpty());
        QCOMPARE(reports.errors.size(), 1);
        QVERIFY(reports.errors.at(0).localizedDescription.contains(m_home->storeFilePath()));
        QCOMPARE(reports.terminations.requests(), 1);
        QCOMPARE(fileContents(m_home->storeFilePath()), before);
    }

    void storedFrameThatCannotBeShownCountsAsNoFrame_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("wider than any number") << QStringLiteral("{{0, 0}, {1e308, 1}}");
        QTest::newRow("far off every screen") << QStringLiteral("{{-3e9, 3e9}, {0.5, 0.5}}");
        QTest::newRow("a hundred screens") << QStringLiteral("{{0, 0}, {100, 100}}");
        QTest::newRow("five screens wide") << QStringLiteral("{{0, 0}, {5, 0.2}}");
        QTest::newRow("not a number") << QStringLiteral("{{nan, 0.1}, {0.2, 0.2}}");
        QTest::newRow("infinite") << QStringLiteral("{{0.1, 0.1}, {inf, 0.2}}");
        QTest::newRow("negative size") << QStringLiteral("{{0.5, 0.5}, {-0.2, 0.2}}");
        QTest::newRow("no height") << QStringLiteral("{{0.5, 0.5}, {0.2, 0}}");
        QTest::newRow("right of the screen") << QStringLiteral("{{1.5, 0.1}, {0.2, 0.2}}");
        QTest::newRow("above the screen") << QStringLiteral("{{0.1, -0.5}, {0.2, 0.2}}");
    }
    void storedFrameThatCannotBeShownCountsAsNoFrame()
    {
        QFETCH(QString, text);
        EVWidgetEntry entry;
        entry.setWidgetFrameDesc(text);
        QCOMPARE(entry.frame(), QRectF());
    }

    void storedFrameReachingPartlyOffTheScreenIsKept()
    {
        EVWidgetEntry entry;
        entry.setWidgetFrameDesc(QStringLiteral("{{0.9, -0.1}, {0.3, 0.2}}"));
        QCOMPARE(entry.frame(), QRectF(900, -80, 300, 160));
    }

    void windowKeepsItsOwnSizeAndPlaceForAFrameThatCannotBeShown_data()
    {
        storedFrameThatCannotBeShownCountsAsNoFrame_data();
    }
    void windowKeepsItsOwnSizeAndPlaceForAFrameThatCannotBeShown()
    {
        QFETCH(QString, text);
        EVWidgetEntry entry;
        entry.resetDefault();
        entry.setWidgetFrameDesc(text);
        EVWindowController controller;
        controller.setWidgetData(&entry);
        controller.display(true);
        QVERIFY(QTest::qWaitForWindowExposed(controller.window()));
        QCOMPARE(controller.window()->geometry(), QRect(0, 0, 300, 150));
        controller.destroy();
    }

    void damagedPageInTheMiddleTakesTheFailurePath()
    {
        QByteArray file = storeOfSixtyWidgets();
        // The page that holds the row of the thirtieth widget.
        const qsizetype row = file.indexOf("widget 30");
        QVERIFY(row > 0);
        const qsizetype page = row / pageSize(file);
        QVERIFY(page > 0);
        QVERIFY(writeFile(m_home->storeFilePath(), withPageOverwritten(file, page, 30)));

        const QByteArray damaged = fileContents(m_home->storeFilePath());
        StoreReports reports;
        EVCoreDataDelegate store;
        reports.watch(store);
        QVERIFY(store.fetchWidgetEntries().isEmpty());
        QCOMPARE(reports.errors.size(), 1);
        QCOMPARE(reports.alerts.shown().size(), 1);
        QCOMPARE(reports.alerts.shown().at(0).messageText,
                 QStringLiteral("Wow, database initial failed!"));
        QCOMPARE(reports.mail.opened().size(), 1);
        QCOMPARE(reports.terminations.requests(), 1);
        QCOMPARE(fileContents(m_home->storeFilePath()), damaged);
    }

    void storeOfSixtyWithAnyPageOverwrittenLoadsAllOrFails()
    {
        const QByteArray pristine = storeOfSixtyWidgets();
        const qsizetype pages = pristine.size() / pageSize(pristine);
        QVERIFY(pages >= 8);
        for (qsizetype page = 0; page < pages; ++page) {
            for (quint32 seed : {1u, 2u}) {
                QVERIFY(
                    writeFile(m_home->storeFilePath(), withPageOverwritten(pristine, page, seed)));
                verifyLoadsAllOrFails(60, QStringLiteral("page %1, seed %2").arg(page).arg(seed));
                if (QTest::currentTestFailed())
                    return;
            }
        }
    }

    void rowsWithIdsNotPositiveAreNeverDuplicatedBySaving()
    {
        {
            EVCoreDataDelegate store;
            EVWidgetEntry *first = store.addWidgetEntry();
            first->setEventTitle(QStringLiteral("first"));
            first->setEventCreationDate(QDateTime::fromSecsSinceEpoch(1800000000));
            store.addCustomStyle(first)->setColor(QColor(1, 2, 3));
            EVWidgetEntry *second = store.addWidgetEntry();
            second->setEventTitle(QStringLiteral("second"));
            second->setEventCreationDate(QDateTime::fromSecsSinceEpoch(1800000001));
            store.save();
        }
        {
            SqlFile file(m_home->storeFilePath());
            QVERIFY(file.exec(QStringLiteral("UPDATE custom_style SET widget_id = 0, id = -3")));
            QVERIFY(file.exec(QStringLiteral("UPDATE widget_entry SET id = 0 WHERE id = 1")));
            QVERIFY(file.exec(QStringLiteral("UPDATE widget_entry SET id = -7 WHERE id = 2")));
        }
        for (int run = 0; run < 3; ++run) {
            StoreReports reports;
            EVCoreDataDelegate store;
            reports.watch(store);
            const QList<EVWidgetEntry *> entries = store.fetchWidgetEntries();
            QCOMPARE(titles(entries),
                     (QStringList{QStringLiteral("first"), QStringLiteral("second")}));
            QCOMPARE(entries.at(0)->customStyles().size(), 1);
            QCOMPARE(entries.at(0)->customStyles().at(0)->color(), QColor(1, 2, 3));
            store.save();
            QVERIFY(reports.errors.isEmpty());
        }
        SqlFile file(m_home->storeFilePath());
        QCOMPARE(file.value(QStringLiteral("SELECT count(*) FROM widget_entry")).toInt(), 2);
        QCOMPARE(file.value(QStringLiteral("SELECT count(*) FROM custom_style")).toInt(), 1);
    }

    void uuidThatIsNotAUuidNeverNamesAFileOutsideThePictureFolder()
    {
        {
            EVCoreDataDelegate store;
            store.addCustomStyle(store.addWidgetEntry());
            store.save();
        }
        {
            SqlFile file(m_home->storeFilePath());
            QVERIFY(file.exec(QStringLiteral("UPDATE widget_entry SET uuid = '../escape', "
                                             "icon_file_path = NULL, iconfile = X'69636F6E'")));
            QVERIFY(file.exec(QStringLiteral("UPDATE custom_style SET uuid = '../../style', "
                                             "image_path = NULL, image = X'7374796C65'")));
        }
        EVCoreDataDelegate store;
        EVWidgetEntry *entry = store.fetchWidgetEntries().value(0);
        QVERIFY(entry);
        EVCustomStyle *style = entry->customStyles().value(0);
        QVERIFY(style);
        QVERIFY2(isUuid(entry->uuid()), qPrintable(entry->uuid()));
        QVERIFY2(isUuid(style->uuid()), qPrintable(style->uuid()));
        QCOMPARE(entry->iconfileData(), QByteArray("icon"));
        QCOMPARE(style->imageData(), QByteArray("style"));
        QCOMPARE(fileContents(m_home->pictureFolderPath() + QLatin1Char('/') + entry->uuid()),
                 QByteArray("icon"));
        QCOMPARE(fileContents(m_home->pictureFolderPath() + QLatin1Char('/') + style->uuid()),
                 QByteArray("style"));
        QCOMPARE(filesOutsideOurFolders(), QStringList());
    }

    void storedPicturePathPointingElsewhereIsIgnored()
    {
        {
            EVCoreDataDelegate store;
            store.addCustomStyle(store.addWidgetEntry());
            store.save();
        }
        QVERIFY(writeFile(m_home->documentsPath() + QStringLiteral("/private"), "not a picture"));
        {
            SqlFile file(m_home->storeFilePath());
            QVERIFY(file.exec(QStringLiteral(
                "UPDATE widget_entry SET icon_file_path = '../private', iconfile = NULL")));
            QVERIFY(
                file.exec(QStringLiteral("UPDATE custom_style SET image_path = '%1', image = NULL")
                              .arg(m_home->documentsPath() + QStringLiteral("/private"))));
        }
        EVCoreDataDelegate store;
        EVWidgetEntry *entry = store.fetchWidgetEntries().value(0);
        QVERIFY(entry);
        QVERIFY(entry->iconfileData().isNull());
        QVERIFY(entry->customStyles().value(0)->imageData().isNull());
        QCOMPARE(fileContents(m_home->documentsPath() + QStringLiteral("/private")),
                 QByteArray("not a picture"));
    }

    void rowsSharingAUuidOrHavingNoneGetAWindowEach()
    {
        {
            EVCoreDataDelegate store;
            for (const char *title : {"first", "second", "third"})
                store.addWidgetEntry()->setEventTitle(QString::fromLatin1(title));
            store.fetchWidgetEntries().at(0)->setIconfileData("first icon");
            store.save();
        }
        {
            SqlFile file(m_home->storeFilePath());
            QVERIFY(file.exec(QStringLiteral("UPDATE widget_entry SET uuid = (SELECT uuid FROM "
                                             "widget_entry WHERE id = 1), icon_file_path = (SELECT "
                                             "icon_file_path FROM widget_entry WHERE id = 1) "
                                             "WHERE id = 2")));
            QVERIFY(file.exec(QStringLiteral("UPDATE widget_entry SET uuid = NULL WHERE id = 3")));
        }
        QStringList repaired;
        {
            EVCoreDataDelegate store;
            EVWidgetsManager manager(&store);
            manager.refreshAll();
            QCOMPARE(manager.widgetControllers().size(), 3);
            const QList<EVWidgetEntry *> entries = store.fetchWidgetEntries();
            for (EVWidgetEntry *entry : entries) {
                QVERIFY2(isUuid(entry->uuid()), qPrintable(entry->uuid()));
                QCOMPARE(manager.widgetWindowController(entry)->widgetData(), entry);
                repaired.append(entry->uuid());
            }
            QCOMPARE(QSet<QString>(repaired.begin(), repaired.end()).size(), 3);
            // The widget that shared the first one's icon keeps a copy of its own.
            QCOMPARE(entries.at(1)->iconFilePath(), entries.at(1)->uuid());
            QCOMPARE(entries.at(1)->iconfileData(), QByteArray("first icon"));
            QCOMPARE(entries.at(0)->iconfileData(), QByteArray("first icon"));
            manager.teardown();
            store.save();
        }
        EVCoreDataDelegate reopened;
        QStringList saved;
        for (const EVWidgetEntry *entry : reopened.fetchWidgetEntries())
            saved.append(entry->uuid());
        QCOMPARE(saved, repaired);
    }

    void storeThatCannotBeOpenedIsReportedOnce()
    {
        QVERIFY(QDir().mkpath(m_home->applicationFilesPath()));
        QByteArray garbage;
        for (int i = 0; i < 4096; ++i)
            garbage.append(char((i * 7919) % 251));
        QVERIFY(writeFile(m_home->storeFilePath(), garbage));

        StoreReports reports;
        EVCoreDataDelegate store;
        reports.watch(store);
        for (int call = 0; call < 12; ++call)
            QVERIFY(store.fetchWidgetEntries().isEmpty());
        QVERIFY(!store.addWidgetEntry());
        QVERIFY(!store.managedObjectContext());
        QVERIFY(!store.persistentStoreCoordinator());
        store.save();
        QCOMPARE(reports.errors.size(), 1);
        QCOMPARE(reports.alerts.shown().size(), 1);
        QCOMPARE(reports.mail.opened().size(), 1);
        QCOMPARE(reports.terminations.requests(), 1);
        QCOMPARE(fileContents(m_home->storeFilePath()), garbage);
    }

    void everyColumnWrongNullOrExtremeOpensShowsEveryWidgetAndSaves()
    {
        saveEntries({});
        const QStringList values{QStringLiteral("NULL"),
                                 QStringLiteral("'text'"),
                                 QStringLiteral("''"),
                                 QStringLiteral("X'00FF'"),
                                 QStringLiteral("X''"),
                                 QStringLiteral("9223372036854775807"),
                                 QStringLiteral("-9223372036854775808"),
                                 QStringLiteral("2147483648"),
                                 QStringLiteral("-2147483649"),
                                 QStringLiteral("-1"),
                                 QStringLiteral("0"),
                                 QStringLiteral("1"),
                                 QStringLiteral("7"),
                                 QStringLiteral("0.5"),
                                 QStringLiteral("1e308"),
                                 QStringLiteral("-1e308"),
                                 QStringLiteral("9e999"),
                                 QStringLiteral("-9e999"),
                                 QStringLiteral("'../../escape'"),
                                 QStringLiteral("'/tmp'"),
                                 QStringLiteral("'{{0, 0}, {1e308, 1}}'"),
                                 QStringLiteral("'{{nan, nan}, {inf, inf}}'"),
                                 QStringLiteral("'6F9619FF-8B86-D011-B42D-00C04FC964FF'")};
        {
            SqlFile file(m_home->storeFilePath());
            for (const QString &table :
                 {QStringLiteral("widget_entry"), QStringLiteral("custom_style")}) {
                QStringList columns = EVStoreFile::tableColumns(table);
                columns.removeFirst(); // the row id
                for (const QString &value : values) {
                    QVERIFY(file.exec(QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                                          .arg(table, columns.join(u','),
                                               QStringList(columns.size(), value).join(u','))));
                }
            }
            // Rows whose ids are not positive, and custom styles placed at every odd position
            // of every entry.
            for (const char *id : {"0", "-1", "-9223372036854775808"}) {
                QVERIFY(file.exec(
                    QStringLiteral("INSERT INTO widget_entry (id, uuid, style_index) VALUES (%1, "
                                   "'6F9619FF-8B86-D011-B42D-00C04FC964FF', 13)")
                        .arg(QLatin1String(id))));
            }
            for (const QString &value : values) {
                QVERIFY(file.exec(QStringLiteral("INSERT INTO custom_style (widget_id, position, "
                                                 "uuid, opacity, type) SELECT id, %1, %1, %1, %1 "
                                                 "FROM widget_entry")
                                      .arg(value)));
            }
        }
        const int rows = int(values.size()) + 3;

        StoreReports reports;
        QStringList uuids;
        {
            EVCoreDataDelegate store;
            reports.watch(store);
            EVWidgetsManager manager(&store);
            manager.refreshAll();
            manager.refreshAll();
            QCOMPARE(store.fetchWidgetEntries().size(), rows);
            QCOMPARE(manager.widgetControllers().size(), rows);
            uuids = allUuids(store);
            QCOMPARE(QSet<QString>(uuids.begin(), uuids.end()).size(), uuids.size());
            for (const QString &uuid : std::as_const(uuids))
                QVERIFY2(isUuid(uuid), qPrintable(uuid));
            for (EVWidgetEntry *entry : store.fetchWidgetEntries()) {
                const QRect window = manager.widgetWindowController(entry)->window()->geometry();
                QVERIFY2(window.width() <= 4000 && window.height() <= 3200,
                         qPrintable(entry->widgetFrameDesc()));
                QVERIFY(entry->styleIndex() >= 0);
                QVERIFY(entry->styleIndex() < 12 + entry->customStyles().size());
                entry->iconfileData();
                for (EVCustomStyle *style : entry->customStyles())
                    style->imageData();
            }
            manager.save();
            manager.teardown();
        }
        QVERIFY(reports.errors.isEmpty());
        QCOMPARE(filesOutsideOurFolders(), QStringList());

        EVCoreDataDelegate reopened;
        reports.watch(reopened);
        QCOMPARE(reopened.fetchWidgetEntries().size(), rows);
        const QStringList saved = allUuids(reopened);
        QCOMPARE(QSet<QString>(saved.begin(), saved.end()),
                 QSet<QString>(uuids.begin(), uuids.end()));
        QVERIFY(reports.errors.isEmpty());
    }

    void valueOutOfRangeTakesItsDefaultOrItsDocumentedBehaviour()
    {
        saveEntries({});
        {
            SqlFile file(m_home->storeFilePath());
            QVERIFY(file.exec(QStringLiteral(
                "INSERT INTO widget_entry (uuid, countdown_unit, dateformat, event_creation_date, "
                "event_date, event_title, ignored_day_type, interval_alert_unit, "
                "interval_before_alert, keep_top, lock_widget, note, priority, sound_alert, "
                "style_index, textcolor_red, textcolor_green, textcolor_blue, textcolor_alpha, "
                "time_element) VALUES ('6F9619FF-8B86-D011-B42D-00C04FC964FF', 7, 9, "
                "1800000000000, 9223372036854775807, X'00', 3, 5, -4, 3, 2, X'01', 4, -1, 12, "
                "1.5, 0.5, 0.5, 1, 'yes')")));
            QVERIFY(file.exec(QStringLiteral(
                "INSERT INTO custom_style (uuid, color_red, color_green, color_blue, color_alpha, "
                "opacity, sid, type, widget_id, position) VALUES "
                "('6F9619FF-8B86-D011-B42D-00C04FC964FE', 0.2, 0.4, 0.6, 0.8, 2.5, -5, 2, 1, 0)")));
        }
        EVCoreDataDelegate store;
        const EVWidgetEntry *entry = store.fetchWidgetEntries().value(0);
        QVERIFY(entry);
        // Values whose consequences are documented stay: any unit outside 1 to 4 counts in
        // time, any date format outside 0 to 5 takes the table's last row.
        QCOMPARE(entry->countdownUnit(), 7);
        QCOMPARE(entry->dateformat(), 9);
        QCOMPARE(entry->eventCreationDate(), QDateTime::fromSecsSinceEpoch(1800000000));
        QCOMPARE(entry->eventDate(), QDateTime::fromSecsSinceEpoch(1800000000 + 2592000));
        QCOMPARE(entry->eventTitle(), QStringLiteral("Event Title"));
        QCOMPARE(entry->ignoredDayType(), 0);
        QCOMPARE(entry->intervalAlertUnit(), 1);
        QCOMPARE(entry->intervalBeforeAlert(), -4);
        QCOMPARE(entry->keepTop(), 0);
        QCOMPARE(entry->lockWidget(), false);
        QCOMPARE(entry->note(), QStringLiteral(""));
        QCOMPARE(entry->priority(), 0);
        QCOMPARE(entry->soundAlert(), false);
        QCOMPARE(entry->styleIndex(), 12);
        QCOMPARE(entry->textcolor(), QColor(Qt::white));
        QCOMPARE(entry->timeElement(), false);
        QCOMPARE(entry->customStyles().size(), 1);
        const EVCustomStyle *style = entry->customStyles().at(0);
        QCOMPARE(style->color(), QColor::fromRgbF(0.2f, 0.4f, 0.6f, 0.8f));
        QCOMPARE(style->opacity(), 0.0f);
        QCOMPARE(style->sid(), -5);
        QCOMPARE(style->type(), 0);
    }

    void styleIndexPointingPastTheCustomStylesTakesTheDefaultStyle_data()
    {
        QTest::addColumn<int>("styleIndex");
        QTest::newRow("past the one style") << 13;
        QTest::newRow("below zero") << -3;
        QTest::newRow("far past") << INT_MAX;
    }
    void styleIndexPointingPastTheCustomStylesTakesTheDefaultStyle()
    {
        QFETCH(int, styleIndex);
        {
            EVCoreDataDelegate store;
            store.addCustomStyle(store.addWidgetEntry());
            store.save();
        }
        QVERIFY(
            SqlFile(m_home->storeFilePath())
                .exec(QStringLiteral("UPDATE widget_entry SET style_index = %1").arg(styleIndex)));
        EVCoreDataDelegate store;
        QCOMPARE(store.fetchWidgetEntries().value(0)->styleIndex(), 9);
    }

    void eachKindOfRepairIsLoggedOnce()
    {
        saveEntries(
            {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d")});
        QVERIFY(
            SqlFile(m_home->storeFilePath())
                .exec(QStringLiteral("UPDATE widget_entry SET keep_top = 9, uuid = 'not a uuid'")));
        LogRecorder log("tallyvane.store");
        EVCoreDataDelegate store;
        QCOMPARE(store.fetchWidgetEntries().size(), 4);
        store.fetchWidgetEntries();
        QStringList lines;
        for (const LogRecorder::Line &line : log.lines())
            lines.append(line.text);
        QCOMPARE(lines.filter(QStringLiteral("keep_top")).size(), 1);
        QCOMPARE(lines.filter(QStringLiteral("uuid")).size(), 1);
        QCOMPARE(lines.size(), 2);
    }

    void tablesThatAreNotTheStoresOwnTakeTheFailurePath_data()
    {
        QTest::addColumn<QStringList>("changes");
        QTest::newRow("a trigger that copies every new widget") << QStringList{QStringLiteral(
            "CREATE TRIGGER copy AFTER INSERT ON widget_entry BEGIN INSERT INTO widget_entry "
            "(uuid) VALUES (NEW.uuid); END")};
        QTest::newRow("a view in place of a table") << QStringList{
            QStringLiteral("DROP TABLE custom_style"),
            QStringLiteral("CREATE VIEW custom_style AS SELECT id, uuid, 0 AS color_red, 0 AS "
                           "color_green, 0 AS color_blue, 0 AS color_alpha, iconfile AS image, "
                           "icon_file_path AS image_path, 0 AS opacity, 0 AS sid, 0 AS type, id "
                           "AS widget_id, 0 AS position FROM widget_entry")};
        QTest::newRow("a column missing")
            << QStringList{QStringLiteral("ALTER TABLE widget_entry DROP COLUMN note")};
        QTest::newRow("a row id that is no row id")
            << QStringList{QStringLiteral("ALTER TABLE widget_entry RENAME TO old"),
                           QStringLiteral("CREATE TABLE widget_entry AS SELECT * FROM old"),
                           QStringLiteral("DROP TABLE old")};
    }
    void tablesThatAreNotTheStoresOwnTakeTheFailurePath()
    {
        QFETCH(QStringList, changes);
        saveEntries({QStringLiteral("a")});
        {
            SqlFile file(m_home->storeFilePath());
            for (const QString &statement : changes)
                QVERIFY(file.exec(statement));
        }
        const QByteArray before = fileContents(m_home->storeFilePath());
        StoreReports reports;
        EVCoreDataDelegate store;
        reports.watch(store);
        QVERIFY(store.fetchWidgetEntries().isEmpty());
        store.addWidgetEntry();
        store.save();
        QCOMPARE(reports.errors.size(), 1);
        QCOMPARE(fileContents(m_home->storeFilePath()), before);
    }
};

TALLYVANE_TEST_MAIN(TestDamagedStore)
#include "tst_damagedstore.moc"
