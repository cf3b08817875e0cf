#include "SqlFile.h"
#include "StoreReports.h"
#include "TestMain.h"

#include "store/EVCoreDataDelegate.h"
#include "store/EVCustomStyle.h"
#include "store/EVObjectContext.h"
#include "store/EVStoreFile.h"
#include "store/EVWidgetEntry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <csignal>
#include <memory>

class TestEVCoreDataDelegate : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;

    static int runWriter(const QStringList &arguments)
    {
        QProcess writer;
        writer.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        writer.start(QStringLiteral(STORE_WRITER_PATH), arguments);
        if (!writer.waitForFinished(60000))
            return -1;
        return writer.exitStatus() == QProcess::NormalExit ? writer.exitCode() : -1;
    }

    static QStringList titles(const QList<EVWidgetEntry *> &entries)
    {
        QStringList result;
        for (const EVWidgetEntry *entry : entries)
            result.append(entry->eventTitle());
        return result;
    }

private Q_SLOTS:
    void init() { m_home = std::make_unique<TestHome>(); }
    void cleanup() { m_home.reset(); }

    void firstRunCreatesTheFolderAndAFreshStoreFile()
    {
        QVERIFY(!QFileInfo::exists(m_home->applicationFilesPath()));
        StoreReports reports;
        EVCoreDataDelegate store;
        reports.watch(store);

        QVERIFY(store.fetchWidgetEntries().isEmpty());
        QVERIFY(QFileInfo(m_home->applicationFilesPath()).isDir());
        QVERIFY(QFileInfo(m_home->storeFilePath()).isFile());
        QCOMPARE(QFileInfo(store.storeFilePath()).fileName(),
                 QStringLiteral("TallyWidgets.storedata"));
        QVERIFY(reports.errors.isEmpty());
        QVERIFY(reports.alerts.shown().isEmpty());
    }

    void plainFileInPlaceOfTheFolderReportsError101WithItsPath()
    {
        QVERIFY(QDir().mkpath(QFileInfo(m_home->applicationFilesPath()).path()));
        QFile blocker(m_home->applicationFilesPath());
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.write("not a folder");
        blocker.close();

        StoreReports reports;
        EVCoreDataDelegate store;
        reports.watch(store);
        QVERIFY(!store.persistentStoreCoordinator());

        QCOMPARE(reports.errors.size(), 1);
        QCOMPARE(reports.errors.at(0).domain, QStringLiteral("YOUR_ERROR_DOMAIN"));
        QCOMPARE(reports.errors.at(0).code, 101);
        QCOMPARE(reports.errors.at(0).localizedDescription,
                 QStringLiteral("Expected a folder to store application data, found a file (%1).")
                     .arg(m_home->applicationFilesPath()));
        QCOMPARE(reports.terminations.requests(), 1);
        QCOMPARE(fileContents(m_home->applicationFilesPath()), QByteArray("not a folder"));
    }

    void contextWithoutAStoreReportsOnlyTheStoresOwnErrorOnce()
    {
        QVERIFY(QDir().mkpath(QFileInfo(m_home->applicationFilesPath()).path()));
        QFile blocker(m_home->applicationFilesPath());
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();

        StoreReports reports;
        EVCoreDataDelegate store;
        reports.watch(store);
        QVERIFY(!store.managedObjectContext());
        QVERIFY(store.fetchWidgetEntries().isEmpty());
        QVERIFY(!store.addWidgetEntry());
        QVERIFY(!store.persistentStoreCoordinator());
        QCOMPARE(reports.errors.size(), 1);
        QCOMPARE(reports.errors.at(0).code, 101);
        QCOMPARE(reports.alerts.shown().size(), 1);
        QCOMPARE(reports.terminations.requests(), 1);
    }

    void garbageStoreFileTakesTheReportPathAndIsLeftUntouched()
    {
        QVERIFY(QDir().mkpath(m_home->applicationFilesPath()));
        QByteArray garbage;
        for (int i = 0; i < 4096; ++i)
            garbage.append(char((i * 7919) % 251));
        QFile file(m_home->storeFilePath());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(garbage);
        file.close();

        StoreReports reports;
        EVCoreDataDelegate store;
        reports.watch(store);
        QVERIFY(store.fetchWidgetEntries().isEmpty());
        QVERIFY(!reports.errors.isEmpty());
        QCOMPARE(reports.alerts.shown().at(0).messageText,
                 QStringLiteral("Wow, database initial failed!"));
        QVERIFY(reports.terminations.requests() >= 1);
        QCOMPARE(fileContents(m_home->storeFilePath()), garbage);
    }

    void storeFromANewerVersionIsReportedAndLeftUntouched()
    {
        {
            EVCoreDataDelegate store;
            store.addWidgetEntry();
            store.save();
        }
        QVERIFY(SqlFile(m_home->storeFilePath())
                    .exec(QStringLiteral("PRAGMA user_version = %1")
                              .arg(EVStoreFile::schemaVersion + 1)));
        const QByteArray before = fileContents(m_home->storeFilePath());

        StoreReports reports;
        EVCoreDataDelegate store;
        reports.watch(store);
        QVERIFY(store.fetchWidgetEntries().isEmpty());
        QVERIFY(!reports.errors.isEmpty());
        QVERIFY(reports.errors.at(0).localizedDescription.contains(m_home->storeFilePath()));
        QCOMPARE(fileContents(m_home->storeFilePath()), before);
    }

    void everyColumnTheStoreUsesIsInTheFileWithItsType()
    {
        EVCoreDataDelegate store;
        QVERIFY(store.managedObjectContext());
        SqlFile file(m_home->storeFilePath());
        for (const QString &table :
             {QStringLiteral("widget_entry"), QStringLiteral("custom_style")}) {
            QList<EVStoreFile::ColumnType> inFile;
            for (const QVariantList &column :
                 file.rows(QStringLiteral("PRAGMA table_info(%1)").arg(table)))
                inFile.append({column.at(1).toString(), column.at(2).toString()});
            QCOMPARE(EVStoreFile::tableColumnTypes(table), inFile);
        }
    }

    void entriesComeBackOldestCreatedFirst()
    {
        const QDateTime base = QDateTime::fromSecsSinceEpoch(1800000000);
        {
            EVCoreDataDelegate store;
            for (int offset : {300, 100, 200}) {
                PinnedClock clock(base.addSecs(offset));
                EVWidgetEntry *entry = store.addWidgetEntry();
                entry->setEventTitle(QString::number(offset));
                entry->setEventDate(base.addDays(-offset)); // event order is the reverse
            }
            QCOMPARE(
                titles(store.fetchWidgetEntries()),
                (QStringList{QStringLiteral("100"), QStringLiteral("200"), QStringLiteral("300")}));
            store.save();
        }
        EVCoreDataDelegate reopened;
        QCOMPARE(
            titles(reopened.fetchWidgetEntries()),
            (QStringList{QStringLiteral("100"), QStringLiteral("200"), QStringLiteral("300")}));
    }

    void newEntryIsInsertedWithEveryDefault()
    {
        EVCoreDataDelegate store;
        EVWidgetEntry *entry = store.addWidgetEntry();
        QVERIFY(entry);
        QCOMPARE(entry->eventTitle(), QStringLiteral("Event Title"));
        QCOMPARE(entry->styleIndex(), 9);
        QCOMPARE(entry->iconFilePath(), entry->uuid());
        QCOMPARE(store.fetchWidgetEntries(), QList<EVWidgetEntry *>{entry});
    }

    void firstCustomStyleGetsSidOne()
    {
        EVCoreDataDelegate store;
        EVWidgetEntry *entry = store.addWidgetEntry();
        EVCustomStyle *style = store.addCustomStyle(entry);
        QCOMPARE(style->sid(), 1);
        QCOMPARE(style->widget(), entry);
        QCOMPARE(style->color(), QColor(Qt::black));
        QCOMPARE(entry->customStyles(), QList<EVCustomStyle *>{style});
    }

    void thirdCustomStyleGetsSidThree()
    {
        EVCoreDataDelegate store;
        EVWidgetEntry *entry = store.addWidgetEntry();
        store.addCustomStyle(entry);
        store.addCustomStyle(entry);
        QCOMPARE(store.addCustomStyle(entry)->sid(), 3);
    }

    void removedCustomStyleStaysInTheStoreAttachedToNoEntry()
    {
        QString removedUuid;
        {
            EVCoreDataDelegate store;
            EVWidgetEntry *entry = store.addWidgetEntry();
            EVCustomStyle *first = store.addCustomStyle(entry);
            store.addCustomStyle(entry);
            store.addCustomStyle(entry);
            first->setImageData(QByteArray("picture"));
            removedUuid = first->uuid();
            const QString picture = m_home->pictureFolderPath() + QLatin1Char('/') + removedUuid;
            QVERIFY(QFileInfo::exists(picture));

            store.removeCustomStyle(first, entry);
            QVERIFY(!QFileInfo::exists(picture));
            QCOMPARE(entry->customStyles().size(), 2);
            QCOMPARE(entry->customStyles().at(0)->sid(), 2);
            QCOMPARE(entry->customStyles().at(1)->sid(), 3);
            QVERIFY(!first->widget());
            store.save();
        }
        EVCoreDataDelegate reopened;
        const QList<EVWidgetEntry *> entries = reopened.fetchWidgetEntries();
        QCOMPARE(entries.size(), 1);
        QCOMPARE(entries.at(0)->customStyles().size(), 2);
        QCOMPARE(entries.at(0)->customStyles().at(0)->sid(), 2);
        QCOMPARE(entries.at(0)->customStyles().at(1)->sid(), 3);
        const QList<EVCustomStyle *> all = reopened.managedObjectContext()->customStyles();
        QCOMPARE(all.size(), 3);
        const auto detached = std::find_if(all.begin(), all.end(), [&](EVCustomStyle *style) {
            return style->uuid() == removedUuid;
        });
        QVERIFY(detached != all.end());
        QVERIFY(!(*detached)->widget());
        QCOMPARE((*detached)->sid(), 1);
    }

    void removingAStyleTheEntryDoesNotHoldChangesNothing()
    {
        EVCoreDataDelegate store;
        EVWidgetEntry *owner = store.addWidgetEntry();
        EVWidgetEntry *other = store.addWidgetEntry();
        EVCustomStyle *style = store.addCustomStyle(owner);
        store.removeCustomStyle(style, other);
        QCOMPARE(owner->customStyles(), QList<EVCustomStyle *>{style});
        QVERIFY(other->customStyles().isEmpty());
    }

    void removingAnEntryDeletesItsPictureFilesAndRecords()
    {
        {
            EVCoreDataDelegate store;
            EVWidgetEntry *kept = store.addWidgetEntry();
            kept->setEventTitle(QStringLiteral("kept"));
            EVWidgetEntry *entry = store.addWidgetEntry();
            EVCustomStyle *first = store.addCustomStyle(entry);
            EVCustomStyle *second = store.addCustomStyle(entry);
            first->setImageData(QByteArray("one"));
            second->setImageData(QByteArray("two"));
            store.save();

            const QDir pictures(m_home->pictureFolderPath());
            QVERIFY(pictures.exists(entry->uuid()));
            QVERIFY(pictures.exists(first->uuid()));
            QVERIFY(pictures.exists(second->uuid()));

            store.removeWidgetEntry(entry);
            QVERIFY(!pictures.exists(entry->uuid()));
            QVERIFY(!pictures.exists(first->uuid()));
            QVERIFY(!pictures.exists(second->uuid()));
            QVERIFY(pictures.exists(kept->uuid()));
            QCOMPARE(store.fetchWidgetEntries(), QList<EVWidgetEntry *>{kept});
            store.save();
        }
        EVCoreDataDelegate reopened;
        QCOMPARE(titles(reopened.fetchWidgetEntries()), QStringList{QStringLiteral("kept")});
        QVERIFY(reopened.managedObjectContext()->customStyles().isEmpty());
    }

    void removingAnUnsavedEntryLeavesNothingBehind()
    {
        {
            EVCoreDataDelegate store;
            EVWidgetEntry *entry = store.addWidgetEntry();
            store.addCustomStyle(entry);
            store.removeWidgetEntry(entry);
            store.save();
        }
        EVCoreDataDelegate reopened;
        QVERIFY(reopened.fetchWidgetEntries().isEmpty());
        QVERIFY(reopened.managedObjectContext()->customStyles().isEmpty());
    }

    void everyAttributeRoundTripsExactly()
    {
        const QDateTime created = QDateTime::fromMSecsSinceEpoch(1789012345678);
        const QDateTime event = QDateTime::fromMSecsSinceEpoch(-12345678901);
        const QColor text = QColor::fromRgbF(0.1f, 0.2f, 0.3f, 0.4f);
        const QColor fill = QColor::fromRgb(1, 254, 77, 3);
        QString entryUuid;
        {
            EVCoreDataDelegate store;
            EVWidgetEntry *entry = store.addWidgetEntry();
            entryUuid = entry->uuid();
            entry->setCountdownUnit(3);
            entry->setDateformat(-7);
            entry->setEventCreationDate(created);
            entry->setEventDate(event);
            entry->setEventTitle(QStringLiteral("Ünïcode ✓ title"));
            entry->setIconfile(QByteArray("\0\1\2inline", 9));
            entry->setIgnoredDayType(2);
            entry->setIntervalAlertUnit(4);
            entry->setIntervalBeforeAlert(2147483647);
            entry->setKeepTop(2);
            entry->setLockWidget(true);
            entry->setNote(QStringLiteral("line one\nline two"));
            entry->setPriority(3);
            entry->setSoundAlert(true);
            entry->setStyleIndex(12);
            entry->setTextcolor(text);
            entry->setTimeElement(true);
            entry->setWidgetFrameDesc(QStringLiteral("{{0.1, 0.25}, {0.3, 0.1875}}"));

            EVCustomStyle *style = store.addCustomStyle(entry);
            style->setColor(fill);
            style->setOpacity(0.37f);
            style->setType(1);
            style->setImage(QByteArray("legacy"));
            style->setImagePath(QStringLiteral("custom-path"));
            store.save();
        }
        EVCoreDataDelegate reopened;
        const QList<EVWidgetEntry *> entries = reopened.fetchWidgetEntries();
        QCOMPARE(entries.size(), 1);
        const EVWidgetEntry *entry = entries.at(0);
        QCOMPARE(entry->uuid(), entryUuid);
        QCOMPARE(entry->countdownUnit(), 3);
        QCOMPARE(entry->dateformat(), -7);
        QCOMPARE(entry->eventCreationDate(), created);
        QCOMPARE(entry->eventDate(), event);
        QCOMPARE(entry->eventTitle(), QStringLiteral("Ünïcode ✓ title"));
        QCOMPARE(entry->iconfile(), QByteArray("\0\1\2inline", 9));
        QCOMPARE(entry->iconFilePath(), entryUuid);
        QCOMPARE(entry->ignoredDayType(), 2);
        QCOMPARE(entry->intervalAlertUnit(), 4);
        QCOMPARE(entry->intervalBeforeAlert(), 2147483647);
        QCOMPARE(entry->keepTop(), 2);
        QCOMPARE(entry->lockWidget(), true);
        QCOMPARE(entry->note(), QStringLiteral("line one\nline two"));
        QCOMPARE(entry->priority(), 3);
        QCOMPARE(entry->soundAlert(), true);
        QCOMPARE(entry->styleIndex(), 12);
        QCOMPARE(entry->textcolor(), text);
        QCOMPARE(entry->timeElement(), true);
        QCOMPARE(entry->widgetFrameDesc(), QStringLiteral("{{0.1, 0.25}, {0.3, 0.1875}}"));

        QCOMPARE(entry->customStyles().size(), 1);
        const EVCustomStyle *style = entry->customStyles().at(0);
        QCOMPARE(style->color(), fill);
        QCOMPARE(style->opacity(), 0.37f);
        QCOMPARE(style->type(), 1);
        QCOMPARE(style->sid(), 1);
        QCOMPARE(style->image(), QByteArray("legacy"));
        QCOMPARE(style->imagePath(), QStringLiteral("custom-path"));
        QCOMPARE(style->widget(), entry);
    }

    void noneAndEmptyStayDistinct()
    {
        {
            EVCoreDataDelegate store;
            EVWidgetEntry *empty = store.addWidgetEntry();
            empty->setEventTitle(QStringLiteral(""));
            empty->setNote(QStringLiteral(""));
            empty->setIconfile(QByteArray(""));
            empty->setWidgetFrameDesc(QStringLiteral(""));
            empty->setEventCreationDate(QDateTime::fromSecsSinceEpoch(1));

            EVWidgetEntry *none = store.addWidgetEntry();
            none->setEventTitle(QString());
            none->setNote(QString());
            none->setIconfile(QByteArray());
            none->setIconfileData(QByteArray());
            none->setEventDate(QDateTime());
            none->setTextcolor(QColor());
            none->setEventCreationDate(QDateTime::fromSecsSinceEpoch(2));
            store.save();
        }
        EVCoreDataDelegate reopened;
        const QList<EVWidgetEntry *> entries = reopened.fetchWidgetEntries();
        QCOMPARE(entries.size(), 2);
        const EVWidgetEntry *empty = entries.at(0);
        QVERIFY(empty->eventTitle().isEmpty() && !empty->eventTitle().isNull());
        QVERIFY(empty->note().isEmpty() && !empty->note().isNull());
        QVERIFY(empty->iconfile().isEmpty() && !empty->iconfile().isNull());
        QVERIFY(empty->widgetFrameDesc().isEmpty() && !empty->widgetFrameDesc().isNull());

        const EVWidgetEntry *none = entries.at(1);
        QVERIFY(none->eventTitle().isNull());
        QVERIFY(none->note().isNull());
        QVERIFY(none->iconfile().isNull());
        QVERIFY(none->iconFilePath().isNull());
        QVERIFY(none->widgetFrameDesc().isNull());
        QVERIFY(!none->eventDate().isValid());
        QVERIFY(!none->textcolor().isValid());
    }

    void unsetNumbersStayUnset()
    {
        {
            EVCoreDataDelegate store;
            EVCustomStyle *style = store.addCustomStyle(store.addWidgetEntry());
            style->setOpacity(std::nullopt);
            style->setSid(std::nullopt);
            store.save();
        }
        {
            EVCoreDataDelegate reopened;
            EVCustomStyle *style = reopened.fetchWidgetEntries().at(0)->customStyles().at(0);
            QCOMPARE(style->opacity(), 0.0f);
            QCOMPARE(style->sid(), 0);
            style->setOpacity(0.0f);
            QVERIFY(style->hasChanges());
        }
    }

    void customStylesKeepTheirOrderAcrossSaves()
    {
        {
            EVCoreDataDelegate store;
            EVWidgetEntry *entry = store.addWidgetEntry();
            for (int i = 0; i < 5; ++i)
                store.addCustomStyle(entry)->setColor(QColor(i, 0, 0));
            store.save();
            store.removeCustomStyle(entry->customStyles().at(1), entry);
            store.addCustomStyle(entry)->setColor(QColor(9, 0, 0));
            store.save();
        }
        EVCoreDataDelegate reopened;
        QList<int> reds;
        for (const EVCustomStyle *style : reopened.fetchWidgetEntries().at(0)->customStyles())
            reds.append(style->color().red());
        QCOMPARE(reds, (QList<int>{0, 2, 3, 4, 9}));
    }

    void changesAfterASaveReachTheFileAtTheNextSave()
    {
        EVCoreDataDelegate store;
        EVWidgetEntry *entry = store.addWidgetEntry();
        store.save();
        entry->setEventTitle(QStringLiteral("renamed"));
        store.save();

        EVCoreDataDelegate reopened;
        QCOMPARE(titles(reopened.fetchWidgetEntries()), QStringList{QStringLiteral("renamed")});
    }

    void unsavedChangesAreNotInTheFile()
    {
        EVCoreDataDelegate store;
        EVWidgetEntry *entry = store.addWidgetEntry();
        store.save();
        entry->setEventTitle(QStringLiteral("renamed"));

        EVCoreDataDelegate reopened;
        QCOMPARE(titles(reopened.fetchWidgetEntries()), QStringList{QStringLiteral("Event Title")});
    }

    void aNewProcessReopensWhatTheLastOneSaved()
    {
        QCOMPARE(runWriter({QStringLiteral("save-entries"), QStringLiteral("3"),
                            QStringLiteral("from another process")}),
                 0);
        EVCoreDataDelegate store;
        QCOMPARE(titles(store.fetchWidgetEntries()),
                 QStringList(3, QStringLiteral("from another process")));
    }

    void recordsAddedButNotSavedAreAbsentAfterRestart()
    {
        QCOMPARE(runWriter({QStringLiteral("save-then-add-unsaved")}), 0);
        EVCoreDataDelegate store;
        QCOMPARE(titles(store.fetchWidgetEntries()), QStringList{QStringLiteral("saved")});
    }

    void processKilledWhileSavingLeavesTheLastSaveComplete()
    {
        QCOMPARE(runWriter({QStringLiteral("save-entries"), QStringLiteral("1000"),
                            QStringLiteral("generation 0")}),
                 0);

        QProcess writer;
        writer.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        writer.start(QStringLiteral(STORE_WRITER_PATH), {QStringLiteral("churn")});
        QVERIFY(writer.waitForStarted());
        // Let a few saves complete, then kill it while it is inside the next one.
        int saving = 0;
        while (saving < 4 && writer.waitForReadyRead(30000)) {
            while (writer.canReadLine())
                saving = writer.readLine().trimmed().split(' ').value(1).toInt();
        }
        QVERIFY2(saving >= 4, "the writer never got going");
        QTest::qWait(15);
        ::kill(pid_t(writer.processId()), SIGKILL);
        QVERIFY(writer.waitForFinished(10000));
        QCOMPARE(writer.exitStatus(), QProcess::CrashExit);

        StoreReports reports;
        EVCoreDataDelegate store;
        reports.watch(store);
        const QStringList seen = titles(store.fetchWidgetEntries());
        QVERIFY(reports.errors.isEmpty());
        QCOMPARE(seen.size(), 1000);
        // Every entry carries the same generation: no save was half written.
        QCOMPARE(seen.count(seen.first()), 1000);
        const int generation = seen.first().split(QLatin1Char(' ')).value(1).toInt();
        QVERIFY2(
            generation >= saving - 1,
            qPrintable(QStringLiteral("saw %1 while saving %2").arg(seen.first()).arg(saving)));
    }
};

TALLYVANE_TEST_MAIN(TestEVCoreDataDelegate)
#include "tst_evcoredatadelegate.moc"
