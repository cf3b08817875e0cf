#include "StoreSnapshot.h"
#include "TestMain.h"

#include "engine/EVCountdown.h"
#include "engine/EVDateText.h"
#include "engine/EVWidgetCommands.h"
#include "engine/EVWidgetWindow.h"
#include "engine/EVWidgetsManager.h"
#include "engine/EVWindowController.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVWidgetEntry.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <memory>

// Commands on widgets, run in New York (see CMakeLists.txt) on a pinned day: Sunday,
// 15 June 2025, at noon.
class TestEVWidgetCommands : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<PinnedClock> m_clock;
    std::unique_ptr<EVCoreDataDelegate> m_store;

    static QDateTime local(int y, int mo, int d, int h = 0, int mi = 0, int s = 0)
    {
        return QDateTime(QDate(y, mo, d), QTime(h, mi, s));
    }

    // The store as the next start finds it.
    static QList<EVWidgetEntry *> savedEntries(EVCoreDataDelegate &fresh)
    {
        return fresh.fetchWidgetEntries();
    }

    QString storeFile() const { return m_store->storeFilePath(); }

    QString writeFile(const QString &name, const QByteArray &content) const
    {
        const QString path = m_home->path() + QLatin1Char('/') + name;
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }

private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<TestHome>();
        m_clock = std::make_unique<PinnedClock>(local(2025, 6, 15, 12));
        m_store = std::make_unique<EVCoreDataDelegate>();
    }
    void cleanup()
    {
        m_store.reset();
        m_clock.reset();
        m_home.reset();
    }

    void addWithEveryOptionMakesThatWidgetAndSavesIt()
    {
        EVWidgetCommands commands(m_store.get());
        const EVCommandResult result = commands.add(
            {QStringLiteral("Holiday"), QStringLiteral("2025-12-24 18:30"), QStringLiteral("Week"),
             QStringLiteral("3"), QStringLiteral("2h"), QStringLiteral("Pack the car")});
        QVERIFY2(result.ok(), qPrintable(result.message));
        QCOMPARE(result.exitCode(), 0);
        const QString uuid = result.output.trimmed();
        QCOMPARE(result.output, uuid + QLatin1Char('\n'));

        EVCoreDataDelegate restarted;
        const QList<EVWidgetEntry *> entries = savedEntries(restarted);
        QCOMPARE(entries.size(), 1);
        const EVWidgetEntry *entry = entries.first();
        QCOMPARE(entry->uuid(), uuid);
        QCOMPARE(entry->eventTitle(), QStringLiteral("Holiday"));
        QCOMPARE(entry->eventDate(), local(2025, 12, 24, 18, 30));
        QCOMPARE(entry->timeElement(), true);
        QCOMPARE(entry->countdownUnit(), 2);
        QCOMPARE(entry->styleIndex(), 3);
        QCOMPARE(entry->soundAlert(), true);
        QCOMPARE(entry->intervalBeforeAlert(), 2);
        QCOMPARE(entry->intervalAlertUnit(), 2);
        QCOMPARE(entry->note(), QStringLiteral("Pack the car"));
    }

    void addWithADateAloneMakesAWidgetWithoutTime()
    {
        EVWidgetCommands commands(m_store.get());
        const EVCommandResult result = commands.add(
            {QString(), QStringLiteral("2025-12-24"), QString(), QString(), QString(), QString()});
        QVERIFY2(result.ok(), qPrintable(result.message));
        const EVWidgetEntry *entry = m_store->fetchWidgetEntries().first();
        QCOMPARE(entry->eventDate(), local(2025, 12, 24));
        QCOMPARE(entry->timeElement(), false);
        // What was not given is what a new widget has.
        QCOMPARE(entry->eventTitle(), QStringLiteral("Event Title"));
        QCOMPARE(entry->countdownUnit(), 1);
        QCOMPARE(entry->styleIndex(), 9);
        QCOMPARE(entry->soundAlert(), false);
        QCOMPARE(entry->note(), QStringLiteral(""));
    }

    void addWithBadInputAddsNothing_data()
    {
        QTest::addColumn<QString>("date");
        QTest::addColumn<QString>("unit");
        QTest::addColumn<QString>("style");
        QTest::addColumn<QString>("remind");
        QTest::addColumn<QString>("message");
        QTest::newRow("impossible date")
            << QStringLiteral("2025-02-30") << QString() << QString() << QString()
            << QStringLiteral("The date \"2025-02-30\" does not exist");
        QTest::newRow("impossible time")
            << QStringLiteral("2025-02-03 24:10") << QString() << QString() << QString()
            << QStringLiteral("The date \"2025-02-03 24:10\" does not exist");
        QTest::newRow("other form")
            << QStringLiteral("24.12.2025") << QString() << QString() << QString()
            << QStringLiteral("The date \"24.12.2025\" is not written as 2025-12-24 or "
                              "2025-12-24 18:30");
        QTest::newRow("skipped by summer time")
            << QStringLiteral("2025-03-09 02:30") << QString() << QString() << QString()
            << QStringLiteral("The time \"2025-03-09 02:30\" does not exist in the local time "
                              "zone");
        QTest::newRow("unknown unit")
            << QString() << QStringLiteral("fortnight") << QString() << QString()
            << QStringLiteral("The counting unit \"fortnight\" is none of time, day, week, "
                              "month, year");
        QTest::newRow("custom style")
            << QString() << QString() << QStringLiteral("12") << QString()
            << QStringLiteral("The style \"12\" is not a number from 0 to 11");
        QTest::newRow("style not a number")
            << QString() << QString() << QStringLiteral("blue") << QString()
            << QStringLiteral("The style \"blue\" is not a number from 0 to 11");
        QTest::newRow("bad lead")
            << QString() << QString() << QString() << QStringLiteral("2x")
            << QStringLiteral("The reminder lead \"2x\" is not a count with a unit, such as "
                              "30s, 15m, 2h, 3d or 1w");
    }

    void addWithBadInputAddsNothing()
    {
        QFETCH(QString, date);
        QFETCH(QString, unit);
        QFETCH(QString, style);
        QFETCH(QString, remind);
        QFETCH(QString, message);
        m_store->addWidgetEntry();
        m_store->save();
        const QByteArray before = fileContents(storeFile());

        EVWidgetCommands commands(m_store.get());
        const EVCommandResult result =
            commands.add({QStringLiteral("x"), date, unit, style, remind, QString()});
        QCOMPARE(result.exitCode(), 1);
        QCOMPARE(result.message, message);
        QCOMPARE(m_store->fetchWidgetEntries().size(), 1);
        QCOMPARE(fileContents(storeFile()), before);
    }

    void listShowsWhatEachWidgetShowsNow()
    {
        EVWidgetEntry *entry = m_store->addWidgetEntry();
        entry->setEventTitle(QStringLiteral("Holiday\twith a tab"));
        entry->setEventDate(local(2025, 12, 24));
        EVWidgetEntry *timed = m_store->addWidgetEntry();
        timed->setEventTitle(QStringLiteral("Soon"));
        timed->setEventDate(local(2025, 6, 15, 15, 15, 42));
        timed->setTimeElement(true);
        timed->setDateformat(0);
        timed->setCountdownUnit(0);

        EVWidgetCommands commands(m_store.get());
        const EVCommandResult text = commands.list(false);
        QVERIFY2(text.ok(), qPrintable(text.message));
        const QStringList lines = text.output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 2);
        QCOMPARE(lines.at(0),
                 entry->uuid() +
                     QStringLiteral("\tHoliday with a tab\tDec 24, 2025\t191\tDays Left"));
        QCOMPARE(lines.at(1),
                 timed->uuid() +
                     QStringLiteral("\tSoon\t2025-06-15 15:15:42\t03:15:42\tSeconds Left"));

        const EVCommandResult json = commands.list(true);
        QVERIFY(json.ok());
        const QJsonArray widgets = QJsonDocument::fromJson(json.output.toUtf8())
                                       .object()
                                       .value(QStringLiteral("widgets"))
                                       .toArray();
        QCOMPARE(widgets.size(), 2);
        const QJsonObject first = widgets.at(0).toObject();
        QCOMPARE(first.value(QStringLiteral("uuid")).toString(), entry->uuid());
        QCOMPARE(first.value(QStringLiteral("title")).toString(),
                 QStringLiteral("Holiday\twith a tab"));
        QCOMPARE(first.value(QStringLiteral("date")).toString(),
                 EVDateText::widgetDateText(*entry));
        const EVCountdown::Lines shown =
            EVCountdown::countdownLines(*entry, local(2025, 6, 15, 12));
        QCOMPARE(first.value(QStringLiteral("majorDesc")).toString(), shown.majorDesc);
        QCOMPARE(first.value(QStringLiteral("secondDesc")).toString(), shown.secondDesc);
    }

    void listOfNoWidgetsIsEmpty()
    {
        EVWidgetCommands commands(m_store.get());
        QCOMPARE(commands.list(false), EVCommandResult::done(QStringLiteral("")));
        const EVCommandResult json = commands.list(true);
        QCOMPARE(QJsonDocument::fromJson(json.output.toUtf8())
                     .object()
                     .value(QStringLiteral("widgets"))
                     .toArray()
                     .size(),
                 0);
    }

    void removeTakesTheWidgetAwayAndSaves()
    {
        EVWidgetEntry *gone = m_store->addWidgetEntry();
        const QString uuid = gone->uuid();
        m_store->addWidgetEntry()->setEventTitle(QStringLiteral("stays"));
        m_store->save();
        EVWidgetCommands commands(m_store.get());
        const EVCommandResult result = commands.remove(uuid.toLower());
        QVERIFY2(result.ok(), qPrintable(result.message));
        EVCoreDataDelegate restarted;
        QCOMPARE(restarted.fetchWidgetEntries().size(), 1);
        QCOMPARE(restarted.fetchWidgetEntries().first()->eventTitle(), QStringLiteral("stays"));
        QVERIFY(!QFile::exists(m_home->pictureFolderPath() + QLatin1Char('/') + uuid));
    }

    void removeOfAnUnknownIdentifierChangesNothing()
    {
        m_store->addWidgetEntry();
        m_store->save();
        const QByteArray before = fileContents(storeFile());
        EVWidgetCommands commands(m_store.get());
        const EVCommandResult result = commands.remove(QStringLiteral("NO-SUCH-WIDGET"));
        QCOMPARE(result.exitCode(), 1);
        QCOMPARE(result.message, QStringLiteral("No widget has the identifier \"NO-SUCH-WIDGET\""));
        QCOMPARE(fileContents(storeFile()), before);
    }

    void onTheRunningManagerWindowsFollowAtOnce()
    {
        EVWidgetsManager manager(m_store.get());
        EVWidgetCommands commands(&manager);
        const EVCommandResult added =
            commands.add({QStringLiteral("Shown"), QStringLiteral("2025-07-01"), QString(),
                          QString(), QString(), QString()});
        QVERIFY2(added.ok(), qPrintable(added.message));
        const QString uuid = added.output.trimmed();
        EVWindowController *controller = manager.widgetControllers().value(uuid);
        QVERIFY(controller);
        QVERIFY(controller->window()->isVisible());
        QCOMPARE(controller->widgetData()->eventTitle(), QStringLiteral("Shown"));
        QCOMPARE(manager.widgetEntries().size(), 1);

        const EVCommandResult removed = commands.remove(uuid);
        QVERIFY2(removed.ok(), qPrintable(removed.message));
        QVERIFY(!manager.widgetControllers().contains(uuid));
        QVERIFY(manager.widgetEntries().isEmpty());
    }

    void importOnTheRunningManagerOpensAWindowPerWidget()
    {
        EVWidgetsManager manager(m_store.get());
        EVWidgetCommands commands(&manager);
        const QByteArray calendar = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//x//y//EN\r\n"
                                    "BEGIN:VEVENT\r\nUID:a@x\r\nDTSTAMP:20250101T000000Z\r\n"
                                    "DTSTART;VALUE=DATE:20250801\r\nSUMMARY:A\r\nEND:VEVENT\r\n"
                                    "BEGIN:VEVENT\r\nUID:b@x\r\nDTSTAMP:20250101T000000Z\r\n"
                                    "DTSTART;VALUE=DATE:20250802\r\nSUMMARY:B\r\nEND:VEVENT\r\n"
                                    "END:VCALENDAR\r\n";
        const EVCommandResult result = commands.importCalendar(QStringLiteral("x.ics"), calendar);
        QVERIFY2(result.ok(), qPrintable(result.message));
        QCOMPARE(result.output, QStringLiteral("Imported 2 widgets from x.ics\n"));
        QCOMPARE(manager.widgetControllers().size(), 2);
        for (EVWidgetEntry *entry : manager.widgetEntries())
            QVERIFY(manager.widgetWindowController(entry)->window()->isVisible());
        EVCoreDataDelegate restarted;
        QCOMPARE(restarted.fetchWidgetEntries().size(), 2);
    }

    void backupThroughFilesAndRequestsIntoAnEmptyProfile()
    {
        EVWidgetCommands commands(m_store.get());
        for (const char *title : {"one", "two"})
            QVERIFY(commands
                        .add({QLatin1String(title),
                              QStringLiteral("2026-01-0%1 08:00").arg(title[0] == 'o' ? 1 : 2),
                              QStringLiteral("month"), QStringLiteral("0"), QStringLiteral("1w"),
                              QStringLiteral("note")})
                        .ok());
        const StoreSnapshot before = StoreSnapshot::take(storeFile(), m_home->pictureFolderPath());
        const QString path = m_home->path() + QStringLiteral("/backup.json");
        // As a second launch does it: the request goes to the instance, the file is written
        // where the command line runs.
        const EVCommandResult exported = EVWidgetCommands::writeExportFile(
            EVCommandResult::fromJson(commands.run({{QStringLiteral("command"), "export"}})), path);
        QVERIFY2(exported.ok(), qPrintable(exported.message));
        QVERIFY(exported.fileContent.isNull());
        QVERIFY(QFile::exists(path));
        const QByteArray backup = fileContents(path);

        m_store.reset();
        m_home = std::make_unique<TestHome>();
        m_store = std::make_unique<EVCoreDataDelegate>();
        const QString copied = writeFile(QStringLiteral("backup.json"), backup);
        EVCommandResult failure;
        const std::optional<QJsonObject> request =
            EVWidgetCommands::importRequest(QStringLiteral("import"), copied, &failure);
        QVERIFY2(request, qPrintable(failure.message));
        EVWidgetCommands fresh(m_store.get());
        const EVCommandResult imported = EVCommandResult::fromJson(fresh.run(*request));
        QVERIFY2(imported.ok(), qPrintable(imported.message));
        QCOMPARE(imported.output, QStringLiteral("Imported 2 widgets from %1\n").arg(copied));
        m_store = std::make_unique<EVCoreDataDelegate>();
        m_store->fetchWidgetEntries();
        const StoreSnapshot after = StoreSnapshot::take(storeFile(), m_home->pictureFolderPath());
        QVERIFY2(after == before, qPrintable(before.differenceFrom(after)));

        // The same file again adds nothing and says why.
        EVWidgetCommands again(m_store.get());
        const EVCommandResult twice = EVCommandResult::fromJson(again.run(*request));
        QVERIFY(twice.ok());
        QVERIFY(twice.output.startsWith(QStringLiteral("Imported 0 widgets from ")));
        QCOMPARE(twice.output.count(QStringLiteral("\nSkipped ")), 2);
        QVERIFY(
            twice.output.contains(QStringLiteral("a widget with this identifier already exists")));
    }

    void calendarThroughFilesAndRequests()
    {
        EVWidgetCommands commands(m_store.get());
        const EVCommandResult added =
            commands.add({QStringLiteral("Dentist"), QStringLiteral("2025-07-01 09:15"), QString(),
                          QString(), QStringLiteral("15m"), QString()});
        QVERIFY(added.ok());
        const QString path = m_home->path() + QStringLiteral("/widgets.ics");
        const EVCommandResult exported = EVWidgetCommands::writeExportFile(
            EVCommandResult::fromJson(commands.run({{QStringLiteral("command"), "export-ics"}})),
            path);
        QVERIFY2(exported.ok(), qPrintable(exported.message));
        const QByteArray calendar = fileContents(path);
        QVERIFY(calendar.contains("UID:" + added.output.trimmed().toLatin1()));
        QVERIFY(calendar.contains("TRIGGER:-PT15M"));

        m_store.reset();
        m_home = std::make_unique<TestHome>();
        m_store = std::make_unique<EVCoreDataDelegate>();
        EVCommandResult failure;
        const std::optional<QJsonObject> request = EVWidgetCommands::importRequest(
            QStringLiteral("import-ics"), writeFile(QStringLiteral("widgets.ics"), calendar),
            &failure);
        QVERIFY(request);
        EVWidgetCommands fresh(m_store.get());
        const EVCommandResult imported = EVCommandResult::fromJson(fresh.run(*request));
        QVERIFY2(imported.ok(), qPrintable(imported.message));
        const EVWidgetEntry *entry = m_store->fetchWidgetEntries().first();
        QCOMPARE(entry->uuid(), added.output.trimmed());
        QCOMPARE(entry->eventTitle(), QStringLiteral("Dentist"));
        QCOMPARE(entry->eventDate(), local(2025, 7, 1, 9, 15));
        QCOMPARE(entry->intervalBeforeAlert(), 15);
        QCOMPARE(entry->intervalAlertUnit(), 1);
    }

    void badImportLeavesTheStoreByteForByte_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("message");
        QTest::newRow("malformed JSON")
            << QStringLiteral("import") << QByteArray("{\n\"format\": \"tallyvane-backup\",\n}")
            << QStringLiteral("bad.file:3: malformed JSON");
        QTest::newRow("unknown field")
            << QStringLiteral("import")
            << QByteArray("{\"format\": \"tallyvane-backup\", \"version\": 1, \"widgets\": [],\n"
                          "\"extra\": 1}")
            << QStringLiteral("bad.file:2: unknown field \"extra\"");
        QTest::newRow("malformed calendar")
            << QStringLiteral("import-ics")
            << QByteArray(
                   "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nDTSTART:20250101\r\nEND:VCALENDAR\r\n")
            << QStringLiteral("bad.file:4: END:VCALENDAR where BEGIN:VEVENT of line 2 is still "
                              "open");
    }

    void badImportLeavesTheStoreByteForByte()
    {
        QFETCH(QString, command);
        QFETCH(QByteArray, content);
        QFETCH(QString, message);
        EVWidgetCommands commands(m_store.get());
        QVERIFY(commands.add({QStringLiteral("kept"), {}, {}, {}, {}, {}}).ok());
        const QByteArray before = fileContents(storeFile());
        const StoreSnapshot snapshot =
            StoreSnapshot::take(storeFile(), m_home->pictureFolderPath());

        const EVCommandResult result = EVCommandResult::fromJson(
            commands.run({{QStringLiteral("command"), command},
                          {QStringLiteral("fileName"), QStringLiteral("bad.file")},
                          {QStringLiteral("content"), QString::fromUtf8(content)}}));
        QCOMPARE(result.exitCode(), 1);
        QVERIFY2(result.message.startsWith(message), qPrintable(result.message));
        QVERIFY(!result.message.contains(QLatin1Char('\n')));
        QCOMPARE(fileContents(storeFile()), before);
        QVERIFY(StoreSnapshot::take(storeFile(), m_home->pictureFolderPath()) == snapshot);
    }

    void fileThatCannotBeReadIsNamed()
    {
        EVCommandResult failure;
        const QString missing = m_home->path() + QStringLiteral("/missing.json");
        QVERIFY(!EVWidgetCommands::importRequest(QStringLiteral("import"), missing, &failure));
        QCOMPARE(failure.exitCode(), 1);
        QVERIFY2(failure.message.startsWith(missing + QStringLiteral(": cannot be read: ")),
                 qPrintable(failure.message));

        QVERIFY(
            !EVWidgetCommands::importRequest(QStringLiteral("import"), m_home->path(), &failure));
        QVERIFY2(failure.message.startsWith(m_home->path() + QStringLiteral(": cannot be read")),
                 qPrintable(failure.message));

        const QString latin1 = writeFile(QStringLiteral("latin1.ics"),
                                         QByteArray("BEGIN:VCALENDAR\nSUMMARY:caf\xe9\n"));
        QVERIFY(!EVWidgetCommands::importRequest(QStringLiteral("import-ics"), latin1, &failure));
        QCOMPARE(failure.message, latin1 + QStringLiteral(":2: not UTF-8 text"));
    }

    void exportToAFileThatCannotBeWrittenIsNamed()
    {
        EVWidgetCommands commands(m_store.get());
        const QString path = m_home->path() + QStringLiteral("/no/such/folder/backup.json");
        const EVCommandResult result =
            EVWidgetCommands::writeExportFile(commands.exportBackup(), path);
        QCOMPARE(result.exitCode(), 1);
        QVERIFY2(result.message.startsWith(path + QStringLiteral(": cannot be written")),
                 qPrintable(result.message));
    }

    void wrongRequestsAreUsageErrors_data()
    {
        QTest::addColumn<QJsonObject>("request");
        QTest::addColumn<QString>("message");
        QTest::newRow("unknown command") << QJsonObject{{QStringLiteral("command"), "frobnicate"}}
                                         << QStringLiteral("Unknown command \"frobnicate\"");
        QTest::newRow("no command") << QJsonObject{} << QStringLiteral("Unknown command \"\"");
        QTest::newRow("option of another command")
            << QJsonObject{{QStringLiteral("command"), "list"}, {QStringLiteral("title"), "x"}}
            << QStringLiteral("The command list takes no \"title\"");
        QTest::newRow("number for a text")
            << QJsonObject{{QStringLiteral("command"), "add"}, {QStringLiteral("style"), 3}}
            << QStringLiteral("\"style\" must be a text");
        QTest::newRow("text for a flag")
            << QJsonObject{{QStringLiteral("command"), "list"}, {QStringLiteral("json"), "yes"}}
            << QStringLiteral("\"json\" must be true or false");
        QTest::newRow("remove without identifier")
            << QJsonObject{{QStringLiteral("command"), "remove"}}
            << QStringLiteral("remove needs the widget's identifier");
        QTest::newRow("import without content")
            << QJsonObject{{QStringLiteral("command"), "import"}, {QStringLiteral("fileName"), "a"}}
            << QStringLiteral("import needs the file's name and content");
    }

    void wrongRequestsAreUsageErrors()
    {
        QFETCH(QJsonObject, request);
        QFETCH(QString, message);
        EVWidgetCommands commands(m_store.get());
        const QJsonObject reply = commands.run(request);
        QCOMPARE(reply.value(QStringLiteral("exitCode")).toInt(), 2);
        QCOMPARE(reply.value(QStringLiteral("status")).toString(), QStringLiteral("usage"));
        QCOMPARE(reply.value(QStringLiteral("message")).toString(), message);
        QVERIFY(m_store->fetchWidgetEntries().isEmpty());
    }

    void addAndRemoveAsRequests()
    {
        EVWidgetCommands commands(m_store.get());
        const QJsonObject added = commands.run({{QStringLiteral("command"), "add"},
                                                {QStringLiteral("title"), "By request"},
                                                {QStringLiteral("remind"), "3d"}});
        QCOMPARE(added.value(QStringLiteral("status")).toString(), QStringLiteral("done"));
        QCOMPARE(added.value(QStringLiteral("exitCode")).toInt(), 0);
        QVERIFY(!added.contains(QStringLiteral("fileContent")));
        const QString uuid = added.value(QStringLiteral("output")).toString().trimmed();
        const EVWidgetEntry *entry = m_store->fetchWidgetEntries().first();
        QCOMPARE(entry->uuid(), uuid);
        QCOMPARE(entry->intervalBeforeAlert(), 3);
        QCOMPARE(entry->intervalAlertUnit(), 3);

        const QJsonObject listed =
            commands.run({{QStringLiteral("command"), "list"}, {QStringLiteral("json"), true}});
        QVERIFY(listed.value(QStringLiteral("output")).toString().contains(uuid));

        const QJsonObject removed =
            commands.run({{QStringLiteral("command"), "remove"}, {QStringLiteral("uuid"), uuid}});
        QCOMPARE(removed.value(QStringLiteral("exitCode")).toInt(), 0);
        QVERIFY(m_store->fetchWidgetEntries().isEmpty());
    }

    void resultsSurviveTheirJsonForm()
    {
        EVCommandResult exported = EVCommandResult::done(QStringLiteral("out\n"));
        exported.fileContent = QStringLiteral("{}");
        for (const EVCommandResult &result :
             {EVCommandResult::done(QStringLiteral("a\tb\n")), exported,
              EVCommandResult::badInput(QStringLiteral("x.json:3: bad")),
              EVCommandResult::usage(QStringLiteral("wrong"))})
            QCOMPARE(EVCommandResult::fromJson(result.toJson()), result);
        const EVCommandResult unreadable = EVCommandResult::fromJson({{QStringLiteral("x"), 1}});
        QCOMPARE(unreadable.exitCode(), 1);
        QVERIFY(!unreadable.message.isEmpty());
    }
};

TALLYVANE_TEST_MAIN(TestEVWidgetCommands)
#include "tst_evwidgetcommands.moc"
