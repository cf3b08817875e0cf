#include "StoreSnapshot.h"
#include "TestMain.h"

#include "store/EVCalendarFile.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVWidgetEntry.h"

#include <QDir>

#include <memory>

// Calendar files as other producers write them, read in New York (see CMakeLists.txt) on a
// pinned day: Sunday, 15 June 2025, at noon.
class TestEVCalendarFile : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<PinnedClock> m_clock;
    std::unique_ptr<EVCoreDataDelegate> m_store;

    // Lines joined by CRLF, as the standard wants them.
    static QByteArray crlf(const QByteArray &text)
    {
        QByteArray joined = text;
        return joined.replace("\n", "\r\n");
    }

    static QByteArray calendar(const QByteArray &body)
    {
        return crlf("BEGIN:VCALENDAR\nVERSION:2.0\nPRODID:-//Example Corp.//Calendar 1.0//EN\n" +
                    body + "END:VCALENDAR\n");
    }

    EVImportReport importCalendar(const QByteArray &content)
    {
        return EVCalendarFile::importInto(m_store.get(), QStringLiteral("calendar.ics"), content);
    }

    // The one widget that importing the calendar makes.
    EVWidgetEntry *importOne(const QByteArray &content)
    {
        const EVImportReport report = importCalendar(content);
        if (!report.ok()) {
            qWarning("%s", qPrintable(report.error));
            return nullptr;
        }
        return report.added.size() == 1 ? report.added.first() : nullptr;
    }

private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<TestHome>();
        m_clock = std::make_unique<PinnedClock>(localDateTime(2025, 6, 15, 12));
        m_store = std::make_unique<EVCoreDataDelegate>();
    }
    void cleanup()
    {
        m_store.reset();
        m_clock.reset();
        m_home.reset();
    }

    void allDayEventMakesAWidgetWithoutTime()
    {
        EVWidgetEntry *entry = importOne(calendar("BEGIN:VEVENT\n"
                                                  "UID:20250101T000000-1@example.com\n"
                                                  "DTSTAMP:20250101T000000Z\n"
                                                  "DTSTART;VALUE=DATE:20251224\n"
                                                  "DTEND;VALUE=DATE:20251225\n"
                                                  "SUMMARY:Christmas Eve\n"
                                                  "DESCRIPTION:Presents\\, tree\\; and\\ncarols\n"
                                                  "END:VEVENT\n"));
        QVERIFY(entry);
        QCOMPARE(entry->eventTitle(), QStringLiteral("Christmas Eve"));
        QCOMPARE(entry->eventDate(), localDateTime(2025, 12, 24));
        QCOMPARE(entry->timeElement(), false);
        QCOMPARE(entry->note(), QStringLiteral("Presents, tree; and\ncarols"));
        QCOMPARE(entry->soundAlert(), false);
        // Everything else as a new widget has it.
        QCOMPARE(entry->styleIndex(), 9);
        QCOMPARE(entry->countdownUnit(), 1);
        QVERIFY(!entry->iconfileData().isEmpty());
        QCOMPARE(entry->iconFilePath(), entry->uuid());
    }

    void utcEventIsTakenToLocalTime()
    {
        EVWidgetEntry *entry = importOne(calendar("BEGIN:VEVENT\nUID:utc-1\n"
                                                  "DTSTAMP:20250101T000000Z\n"
                                                  "DTSTART:20250701T160000Z\n"
                                                  "SUMMARY:Launch\nEND:VEVENT\n"));
        QVERIFY(entry);
        QCOMPARE(entry->eventDate(), localDateTime(2025, 7, 1, 12));
        QCOMPARE(entry->timeElement(), true);
        QCOMPARE(entry->note(), QStringLiteral(""));
    }

    void eventInAZoneTheCalendarDefines()
    {
        // As Outlook writes it: a Windows zone name, defined in the file.
        EVWidgetEntry *entry = importOne(calendar("BEGIN:VTIMEZONE\n"
                                                  "TZID:W. Europe Standard Time\n"
                                                  "BEGIN:STANDARD\n"
                                                  "DTSTART:16010101T030000\n"
                                                  "TZOFFSETFROM:+0200\n"
                                                  "TZOFFSETTO:+0100\n"
                                                  "RRULE:FREQ=YEARLY;BYDAY=-1SU;BYMONTH=10\n"
                                                  "END:STANDARD\n"
                                                  "BEGIN:DAYLIGHT\n"
                                                  "DTSTART:16010101T020000\n"
                                                  "TZOFFSETFROM:+0100\n"
                                                  "TZOFFSETTO:+0200\n"
                                                  "RRULE:FREQ=YEARLY;BYDAY=-1SU;BYMONTH=3\n"
                                                  "END:DAYLIGHT\n"
                                                  "END:VTIMEZONE\n"
                                                  "BEGIN:VEVENT\n"
                                                  "UID:040000008200E00074C5B7101A82E008\n"
                                                  "DTSTAMP:20250101T000000Z\n"
                                                  "DTSTART;TZID=W. Europe Standard Time:"
                                                  "20250701T100000\n"
                                                  "DTEND;TZID=W. Europe Standard Time:"
                                                  "20250701T110000\n"
                                                  "SUMMARY;LANGUAGE=de-DE:Besprechung\n"
                                                  "END:VEVENT\n"));
        QVERIFY(entry);
        // 10:00 summer time in Berlin is 08:00 UTC, 04:00 in New York.
        QCOMPARE(entry->eventDate(), localDateTime(2025, 7, 1, 4));
        QCOMPARE(entry->eventTitle(), QStringLiteral("Besprechung"));
    }

    void eventInAKnownZoneThatTheCalendarDoesNotDefine()
    {
        EVWidgetEntry *entry = importOne(calendar("BEGIN:VEVENT\nUID:tokyo-1\n"
                                                  "DTSTAMP:20250101T000000Z\n"
                                                  "DTSTART;TZID=Asia/Tokyo:20250701T090000\n"
                                                  "SUMMARY:Tokyo\nEND:VEVENT\n"));
        QVERIFY(entry);
        QCOMPARE(entry->eventDate(), localDateTime(2025, 6, 30, 20));
        QCOMPARE(entry->timeElement(), true);
    }

    void floatingTimeIsLocalTime()
    {
        EVWidgetEntry *entry = importOne(calendar("BEGIN:VEVENT\nUID:floating-1\n"
                                                  "DTSTAMP:20250101T000000Z\n"
                                                  "DTSTART:20250701T090000\n"
                                                  "SUMMARY:Alarm clock\nEND:VEVENT\n"));
        QVERIFY(entry);
        QCOMPARE(entry->eventDate(), localDateTime(2025, 7, 1, 9));
    }

    void floatingTimeThatSummerTimeSkipsIsReadWithTheOffsetBefore()
    {
        // 02:30 on 9 March 2025 does not exist in New York; at -05:00 it is 03:30 summer time.
        EVWidgetEntry *entry = importOne(calendar("BEGIN:VEVENT\nUID:gap-1\n"
                                                  "DTSTAMP:20250101T000000Z\n"
                                                  "DTSTART:20250309T023000\n"
                                                  "SUMMARY:Gap\nEND:VEVENT\n"));
        QVERIFY(entry);
        QCOMPARE(entry->eventDate(), QDateTime(QDate(2025, 3, 9), QTime(7, 30), Qt::UTC));
    }

    void yearlyBirthdaysBecomeTheirNextOccurrence_data()
    {
        QTest::addColumn<QByteArray>("start");
        QTest::addColumn<QDate>("next");
        QTest::newRow("earlier in the year") << QByteArray("19900320") << QDate(2026, 3, 20);
        QTest::newRow("later in the year") << QByteArray("19900820") << QDate(2025, 8, 20);
        QTest::newRow("today") << QByteArray("19900615") << QDate(2025, 6, 15);
        QTest::newRow("a leap day") << QByteArray("19960229") << QDate(2028, 2, 29);
    }

    void yearlyBirthdaysBecomeTheirNextOccurrence()
    {
        QFETCH(QByteArray, start);
        QFETCH(QDate, next);
        // As address books export birthdays.
        EVWidgetEntry *entry = importOne(calendar("BEGIN:VEVENT\nUID:bday-1@contacts\n"
                                                  "DTSTAMP:20250101T000000Z\n"
                                                  "DTSTART;VALUE=DATE:" +
                                                  start +
                                                  "\n"
                                                  "RRULE:FREQ=YEARLY\n"
                                                  "SUMMARY:Ada's birthday\n"
                                                  "END:VEVENT\n"));
        QVERIFY(entry);
        QCOMPARE(entry->eventDate(), QDateTime(next, QTime(0, 0)));
        QCOMPARE(entry->timeElement(), false);
    }

    void weeklyEventSkipsAnExcludedDate()
    {
        // Mondays at 10:00 UTC; the next one, 16 June, is excluded.
        EVWidgetEntry *entry = importOne(calendar("BEGIN:VEVENT\nUID:weekly-1\n"
                                                  "DTSTAMP:20250101T000000Z\n"
                                                  "DTSTART:20250602T100000Z\n"
                                                  "RRULE:FREQ=WEEKLY;BYDAY=MO\n"
                                                  "EXDATE:20250616T100000Z\n"
                                                  "SUMMARY:Stand-up\nEND:VEVENT\n"));
        QVERIFY(entry);
        QCOMPARE(entry->eventDate(), localDateTime(2025, 6, 23, 6));
    }

    void minutelyRuleFromLongAgoFindsTheNextOccurrence()
    {
        EVWidgetEntry *entry = importOne(calendar("BEGIN:VEVENT\nUID:minutely-1\n"
                                                  "DTSTAMP:20250101T000000Z\n"
                                                  "DTSTART:20000101T000030Z\n"
                                                  "RRULE:FREQ=MINUTELY;INTERVAL=15\n"
                                                  "SUMMARY:Often\nEND:VEVENT\n"));
        QVERIFY(entry);
        QCOMPARE(entry->eventDate(), localDateTime(2025, 6, 15, 12, 0, 30));
    }

    void finishedSeriesKeepsItsLastOccurrence()
    {
        EVWidgetEntry *entry = importOne(calendar("BEGIN:VEVENT\nUID:done-1\n"
                                                  "DTSTAMP:20250101T000000Z\n"
                                                  "DTSTART;VALUE=DATE:20200106\n"
                                                  "RRULE:FREQ=WEEKLY;COUNT=3\n"
                                                  "SUMMARY:Course\nEND:VEVENT\n"));
        QVERIFY(entry);
        QCOMPARE(entry->eventDate(), localDateTime(2020, 1, 20));
    }

    void alarmBeforeTheStartArmsTheReminder_data()
    {
        QTest::addColumn<QByteArray>("trigger");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("unit");
        QTest::newRow("-PT15M") << QByteArray("TRIGGER:-PT15M") << 15 << 1;
        QTest::newRow("-P1D") << QByteArray("TRIGGER;RELATED=START:-P1D") << 1 << 3;
        QTest::newRow("-PT90M") << QByteArray("TRIGGER:-PT90M") << 90 << 1;
        QTest::newRow("-PT120M") << QByteArray("TRIGGER:-PT120M") << 2 << 2;
        QTest::newRow("-P2W") << QByteArray("TRIGGER:-P2W") << 2 << 4;
        QTest::newRow("-PT30S") << QByteArray("TRIGGER:-PT30S") << 30 << 0;
        QTest::newRow("-P1DT12H") << QByteArray("TRIGGER:-P1DT12H") << 36 << 2;
    }

    void alarmBeforeTheStartArmsTheReminder()
    {
        QFETCH(QByteArray, trigger);
        QFETCH(int, count);
        QFETCH(int, unit);
        EVWidgetEntry *entry = importOne(calendar("BEGIN:VEVENT\nUID:alarm-1\n"
                                                  "DTSTAMP:20250101T000000Z\n"
                                                  "DTSTART:20250701T160000Z\n"
                                                  "SUMMARY:Dentist\n"
                                                  "BEGIN:VALARM\nACTION:DISPLAY\n"
                                                  "DESCRIPTION:Reminder\n" +
                                                  trigger + "\nEND:VALARM\nEND:VEVENT\n"));
        QVERIFY(entry);
        QCOMPARE(entry->soundAlert(), true);
        QCOMPARE(entry->intervalBeforeAlert(), count);
        QCOMPARE(entry->intervalAlertUnit(), unit);
    }

    void onlyTheFirstAlarmBeforeTheStartCounts()
    {
        EVWidgetEntry *entry = importOne(calendar("BEGIN:VEVENT\nUID:alarm-2\n"
                                                  "DTSTAMP:20250101T000000Z\n"
                                                  "DTSTART:20250701T160000Z\n"
                                                  "SUMMARY:Flight\n"
                                                  "BEGIN:VALARM\nACTION:DISPLAY\nDESCRIPTION:x\n"
                                                  "TRIGGER;VALUE=DATE-TIME:20250630T120000Z\n"
                                                  "END:VALARM\n"
                                                  "BEGIN:VALARM\nACTION:DISPLAY\nDESCRIPTION:x\n"
                                                  "TRIGGER;RELATED=END:-PT5M\nEND:VALARM\n"
                                                  "BEGIN:VALARM\nACTION:DISPLAY\nDESCRIPTION:x\n"
                                                  "TRIGGER:PT10M\nEND:VALARM\n"
                                                  "BEGIN:VALARM\nACTION:AUDIO\n"
                                                  "TRIGGER:-PT3H\nEND:VALARM\n"
                                                  "BEGIN:VALARM\nACTION:DISPLAY\nDESCRIPTION:x\n"
                                                  "TRIGGER:-PT1H\nEND:VALARM\n"
                                                  "END:VEVENT\n"));
        QVERIFY(entry);
        QCOMPARE(entry->soundAlert(), true);
        QCOMPARE(entry->intervalBeforeAlert(), 3);
        QCOMPARE(entry->intervalAlertUnit(), 2);
    }

    void alarmsAfterTheStartArmNothing()
    {
        EVWidgetEntry *entry = importOne(calendar("BEGIN:VEVENT\nUID:alarm-3\n"
                                                  "DTSTAMP:20250101T000000Z\n"
                                                  "DTSTART:20250701T160000Z\n"
                                                  "SUMMARY:Late\n"
                                                  "BEGIN:VALARM\nACTION:DISPLAY\nDESCRIPTION:x\n"
                                                  "TRIGGER:PT10M\nEND:VALARM\n"
                                                  "END:VEVENT\n"));
        QVERIFY(entry);
        QCOMPARE(entry->soundAlert(), false);
    }

    void foldedLinesAndNonAsciiSummaries()
    {
        // Folded every few octets, twice in the middle of a character, as the standard allows;
        // the last fold with a tab.
        const QByteArray summary = QStringLiteral("Geburtstag von Jürgen Müller – 🎂 im Café Zoë "
                                                  "und noch viel mehr Text bis weit über die "
                                                  "fünfundsiebzig Oktette hinaus")
                                       .toUtf8();
        // Folded inside "ü" (octets 16 and 17) and inside the cake (octets 35 to 38).
        const QList<qsizetype> folds{17, 37, 60, 80, 100, 120, summary.size()};
        QVERIFY(QString::fromUtf8(summary.first(17)).endsWith(QChar(0xFFFD)));
        QByteArray folded = "SUMMARY:" + summary.first(17);
        for (qsizetype i = 0; i + 1 < folds.size(); ++i)
            folded += (i == folds.size() - 2 ? "\n\t" : "\n ") +
                      summary.mid(folds.at(i), folds.at(i + 1) - folds.at(i));
        EVWidgetEntry *entry = importOne(calendar("BEGIN:VEVENT\nUID:fold-1\n"
                                                  "DTSTAMP:20250101T000000Z\n"
                                                  "DTSTART;VALUE=DATE:20250901\n" +
                                                  folded +
                                                  "\nDESCRIPTION:Ein langer Hinweis, der "
                                                  "ebenfalls über mehrere Zeilen\n  gefaltet "
                                                  "ist: Grüße an alle! 日本語のテキスト\n"
                                                  "END:VEVENT\n"));
        QVERIFY(entry);
        QCOMPARE(entry->eventTitle(), QString::fromUtf8(summary));
        QCOMPARE(entry->note(),
                 QStringLiteral("Ein langer Hinweis, der ebenfalls über mehrere "
                                "Zeilen gefaltet ist: Grüße an alle! 日本語のテキスト"));
    }

    void calendarFromAWebCalendarWithSeveralEvents()
    {
        // Shaped like a published web calendar: method, calendar name, zones, attendees,
        // lines ended by LF alone, and an event without a title.
        const QByteArray content =
            "BEGIN:VCALENDAR\n"
            "PRODID:-//Google Inc//Google Calendar 70.9054//EN\n"
            "VERSION:2.0\n"
            "CALSCALE:GREGORIAN\n"
            "METHOD:PUBLISH\n"
            "X-WR-CALNAME:Family\n"
            "X-WR-TIMEZONE:America/Los_Angeles\n"
            "BEGIN:VTIMEZONE\n"
            "TZID:America/Los_Angeles\n"
            "X-LIC-LOCATION:America/Los_Angeles\n"
            "BEGIN:DAYLIGHT\n"
            "TZOFFSETFROM:-0800\n"
            "TZOFFSETTO:-0700\n"
            "TZNAME:PDT\n"
            "DTSTART:19700308T020000\n"
            "RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=2SU\n"
            "END:DAYLIGHT\n"
            "BEGIN:STANDARD\n"
            "TZOFFSETFROM:-0700\n"
            "TZOFFSETTO:-0800\n"
            "TZNAME:PST\n"
            "DTSTART:19701101T020000\n"
            "RRULE:FREQ=YEARLY;BYMONTH=11;BYDAY=1SU\n"
            "END:STANDARD\n"
            "END:VTIMEZONE\n"
            "BEGIN:VEVENT\n"
            "DTSTART;TZID=America/Los_Angeles:20251102T090000\n"
            "DTEND;TZID=America/Los_Angeles:20251102T100000\n"
            "DTSTAMP:20250601T120000Z\n"
            "UID:7kukuqrfedlm2f9t7ft6dq6ra4@google.com\n"
            "ATTENDEE;CUTYPE=INDIVIDUAL;ROLE=REQ-PARTICIPANT;PARTSTAT=ACCEPTED;CN=Ann;X-NUM-GUE\n"
            " STS=0:mailto:ann@example.com\n"
            "CREATED:20250601T115900Z\n"
            "LAST-MODIFIED:20250601T120000Z\n"
            "LOCATION:Grandma's\\, Main Street 1\n"
            "SEQUENCE:0\n"
            "STATUS:CONFIRMED\n"
            "SUMMARY:Brunch\n"
            "TRANSP:OPAQUE\n"
            "END:VEVENT\n"
            "BEGIN:VEVENT\n"
            "DTSTART:20250910T170000Z\n"
            "DTSTAMP:20250601T120000Z\n"
            "UID:0o1c0s6v2ls8r1h0oq7gk2b3vc@google.com\n"
            "END:VEVENT\n"
            "END:VCALENDAR\n";
        const EVImportReport report = importCalendar(content);
        QVERIFY2(report.ok(), qPrintable(report.error));
        QCOMPARE(report.added.size(), 2);
        // 9:00 on the first day of winter time in Los Angeles is 17:00 UTC, 12:00 in New York.
        QCOMPARE(report.added.at(0)->eventDate(), localDateTime(2025, 11, 2, 12));
        QCOMPARE(report.added.at(0)->eventTitle(), QStringLiteral("Brunch"));
        QCOMPARE(report.added.at(1)->eventDate(), localDateTime(2025, 9, 10, 13));
        QCOMPARE(report.added.at(1)->eventTitle(), QStringLiteral(""));
    }

    void eventsOfSeveralCalendarsInOneFile()
    {
        const QByteArray one = calendar("BEGIN:VEVENT\nUID:a\nDTSTAMP:20250101T000000Z\n"
                                        "DTSTART;VALUE=DATE:20250801\nSUMMARY:A\nEND:VEVENT\n");
        const QByteArray two = calendar("BEGIN:VEVENT\nUID:b\nDTSTAMP:20250101T000000Z\n"
                                        "DTSTART;VALUE=DATE:20250802\nSUMMARY:B\nEND:VEVENT\n");
        const EVImportReport report = importCalendar(one + two);
        QVERIFY2(report.ok(), qPrintable(report.error));
        QCOMPARE(report.added.size(), 2);
        QCOMPARE(report.added.at(1)->eventTitle(), QStringLiteral("B"));
    }

    void importingAForeignCalendarTwiceAddsItsEventsOnce()
    {
        const QByteArray content = calendar("BEGIN:VEVENT\nUID:same@example.com\n"
                                            "DTSTAMP:20250101T000000Z\n"
                                            "DTSTART;VALUE=DATE:20250801\nSUMMARY:Once\n"
                                            "END:VEVENT\n");
        QCOMPARE(importCalendar(content).added.size(), 1);
        const EVImportReport again = importCalendar(content);
        QVERIFY(again.ok());
        QVERIFY(again.added.isEmpty());
        QCOMPARE(again.skipped.size(), 1);
        QVERIFY2(again.skipped.at(0).startsWith(QStringLiteral("same@example.com: ")),
                 qPrintable(again.skipped.at(0)));
        QCOMPARE(m_store->fetchWidgetEntries().size(), 1);
    }

    void changedOccurrenceIsLeftToItsSeries()
    {
        const EVImportReport report =
            importCalendar(calendar("BEGIN:VEVENT\nUID:series\nDTSTAMP:20250101T000000Z\n"
                                    "DTSTART;VALUE=DATE:20250101\nRRULE:FREQ=MONTHLY\n"
                                    "SUMMARY:Rent\nEND:VEVENT\n"
                                    "BEGIN:VEVENT\nUID:series\nDTSTAMP:20250101T000000Z\n"
                                    "RECURRENCE-ID;VALUE=DATE:20250301\n"
                                    "DTSTART;VALUE=DATE:20250303\nSUMMARY:Rent (late)\n"
                                    "END:VEVENT\n"));
        QVERIFY2(report.ok(), qPrintable(report.error));
        QCOMPARE(report.added.size(), 1);
        QCOMPARE(report.added.at(0)->eventDate(), localDateTime(2025, 7, 1));
        QCOMPARE(report.skipped.size(), 1);
    }

    void exportWritesOneEventPerWidget()
    {
        EVWidgetEntry *dated = m_store->addWidgetEntry();
        dated->setEventTitle(QStringLiteral("Dated"));
        dated->setEventDate(localDateTime(2025, 8, 1, 15, 30));
        dated->setTimeElement(true);
        dated->setSoundAlert(true);
        dated->setIntervalBeforeAlert(15);
        dated->setIntervalAlertUnit(1);
        EVWidgetEntry *allDay = m_store->addWidgetEntry();
        allDay->setEventDate(localDateTime(2025, 9, 2, 8));
        allDay->setTimeElement(false);
        EVWidgetEntry *undated = m_store->addWidgetEntry();
        undated->setEventDate(QDateTime());

        QStringList skipped;
        const QByteArray content =
            EVCalendarFile::exportEntries(m_store->fetchWidgetEntries(), &skipped);
        const QString text = QString::fromUtf8(content);
        QCOMPARE(text.count(QStringLiteral("BEGIN:VEVENT")), 2);
        QVERIFY(text.contains(QStringLiteral("UID:") + dated->uuid()));
        QVERIFY(text.contains(QStringLiteral("UID:") + allDay->uuid()));
        QVERIFY(text.contains(QStringLiteral("DTSTART:20250801T193000Z")));
        QVERIFY(text.contains(QStringLiteral("DTSTART;VALUE=DATE:20250902")));
        QCOMPARE(text.count(QStringLiteral("BEGIN:VALARM")), 1);
        QVERIFY(text.contains(QStringLiteral("TRIGGER:-PT15M")));
        QCOMPARE(skipped.size(), 1);
        QVERIFY(skipped.at(0).startsWith(undated->uuid()));
        QVERIFY(text.contains(QStringLiteral("\r\n")));
    }

    void roundTripKeepsTheFieldsACalendarCarries()
    {
        QByteArray content;
        QList<QList<QVariant>> before;
        const auto fields = [](const EVWidgetEntry *e) {
            return QList<QVariant>{e->uuid(),
                                   e->eventTitle(),
                                   e->eventDate(),
                                   e->timeElement(),
                                   e->note(),
                                   e->soundAlert(),
                                   e->soundAlert() ? e->intervalBeforeAlert() : 0,
                                   e->soundAlert() ? e->intervalAlertUnit() : 0};
        };
        {
            EVWidgetEntry *a = m_store->addWidgetEntry();
            a->setEventTitle(QStringLiteral("Ünïcode, with; special\\characters and a very long "
                                            "title that has to be folded by the writer 🎉🎉🎉"));
            a->setEventDate(QDateTime::fromMSecsSinceEpoch(1767225600123));
            a->setTimeElement(true);
            a->setNote(QStringLiteral("Line one\nLine two, with comma; and semicolon"));
            a->setSoundAlert(true);
            a->setIntervalBeforeAlert(60);
            a->setIntervalAlertUnit(1);
            EVWidgetEntry *b = m_store->addWidgetEntry();
            b->setEventTitle(QStringLiteral("All day, but made at a time of day"));
            b->setEventDate(localDateTime(2025, 12, 31, 17, 45, 12));
            b->setTimeElement(false);
            b->setSoundAlert(true);
            b->setIntervalBeforeAlert(2);
            b->setIntervalAlertUnit(4);
            EVWidgetEntry *c = m_store->addWidgetEntry();
            c->setEventTitle(QStringLiteral(""));
            c->setEventDate(localDateTime(1969, 7, 20, 16, 17, 40).addMSecs(-250));
            c->setTimeElement(true);
            for (const EVWidgetEntry *entry : m_store->fetchWidgetEntries())
                before.append(fields(entry));
            content = EVCalendarFile::exportEntries(m_store->fetchWidgetEntries());
        }
        m_store.reset();
        m_home = std::make_unique<TestHome>();
        m_store = std::make_unique<EVCoreDataDelegate>();
        const EVImportReport report = importCalendar(content);
        QVERIFY2(report.ok(), qPrintable(report.error));
        QCOMPARE(report.added.size(), 3);
        for (qsizetype i = 0; i < before.size(); ++i)
            QCOMPARE(fields(report.added.at(i)), before.at(i));
        // And the file that the copy exports is the same file.
        QCOMPARE(EVCalendarFile::exportEntries(report.added), content);
    }

    void badInputChangesNothing_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("message");

        const QByteArray event = "BEGIN:VEVENT\nUID:x\nDTSTAMP:20250101T000000Z\n";
        QTest::newRow("not a calendar")
            << QByteArray("Subject: hello\n\nnot a calendar\n")
            << QStringLiteral("calendar.ics:1: not an iCalendar file: it does not begin with "
                              "BEGIN:VCALENDAR");
        QTest::newRow("empty") << QByteArray()
                               << QStringLiteral(
                                      "calendar.ics: not an iCalendar file: it is empty");
        QTest::newRow("other component first")
            << crlf("BEGIN:VCARD\nFN:Ann\nEND:VCARD\n")
            << QStringLiteral("calendar.ics:1: not an iCalendar file: it does not begin with "
                              "BEGIN:VCALENDAR");
        QTest::newRow("event never ended")
            << calendar(event + "DTSTART:20250701T160000Z\n")
            << QStringLiteral("calendar.ics:8: END:VCALENDAR where BEGIN:VEVENT of line 4 is "
                              "still open");
        QTest::newRow("calendar never ended")
            << crlf("BEGIN:VCALENDAR\nVERSION:2.0\n" + event +
                    "DTSTART:20250701T160000Z\nEND:VEVENT\n")
            << QStringLiteral("calendar.ics:1: BEGIN:VCALENDAR is never ended");
        QTest::newRow("line without a colon")
            << calendar(event + "DTSTART:20250701T160000Z\nthis is no property\nEND:VEVENT\n")
            << QStringLiteral("calendar.ics:8: not an iCalendar content line: \"this is no "
                              "property\"");
        QTest::newRow("impossible date")
            << calendar(event + "SUMMARY:x\nDTSTART;VALUE=DATE:20250230\nEND:VEVENT\n")
            << QStringLiteral("calendar.ics:8: DTSTART 20250230 is not a real date and time");
        QTest::newRow("impossible time")
            << calendar(event + "DTSTART:20250701T250000Z\nEND:VEVENT\n")
            << QStringLiteral("calendar.ics:7: DTSTART 20250701T250000Z is not a real date");
        QTest::newRow("malformed date")
            << calendar(event + "SUMMARY:x\nDTSTART:2025xx01T100000\nEND:VEVENT\n")
            << QStringLiteral("calendar.ics:8: Can't parse as DATE-TIME value in DTSTART");
        QTest::newRow("no start") << calendar(event + "SUMMARY:x\nEND:VEVENT\n")
                                  << QStringLiteral("calendar.ics:4: the event has no DTSTART");
        QTest::newRow("unknown zone")
            << calendar(event + "DTSTART;TZID=Mars/Olympus:20250701T100000\nEND:VEVENT\n")
            << QStringLiteral("calendar.ics:7: DTSTART: the time zone \"Mars/Olympus\" is "
                              "neither defined in the file nor known");
        QTest::newRow("impossible excluded date")
            << calendar(event + "DTSTART:20250701T100000Z\nRRULE:FREQ=DAILY\n"
                                "EXDATE:20250631T100000Z\nEND:VEVENT\n")
            << QStringLiteral("calendar.ics:9: EXDATE 20250631T100000Z is not a real date");
        QTest::newRow("not UTF-8")
            << calendar(event + "DTSTART:20250701T100000Z\nSUMMARY:caf\xe9\nEND:VEVENT\n")
            << QStringLiteral("calendar.ics:8: not UTF-8 text");
        QTest::newRow("binary")
            << calendar(event + "DTSTART:20250701T100000Z\nSUMMARY:a" + QByteArray(1, '\0') +
                        "b\nEND:VEVENT\n")
            << QStringLiteral("calendar.ics:8: not an iCalendar file: it holds binary data");
    }

    void badInputChangesNothing()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, message);
        m_store->addWidgetEntry()->setEventTitle(QStringLiteral("kept"));
        m_store->save();
        const QByteArray fileBefore = fileContents(m_store->storeFilePath());
        const StoreSnapshot before =
            StoreSnapshot::take(m_store->storeFilePath(), m_home->pictureFolderPath());

        // A good event first, which must not arrive either.
        const QByteArray good = "BEGIN:VEVENT\r\nUID:good\r\nDTSTAMP:20250101T000000Z\r\n"
                                "DTSTART;VALUE=DATE:20250801\r\nEND:VEVENT\r\n";
        const qsizetype firstEvent = content.indexOf("BEGIN:VEVENT");
        const QByteArray withGood =
            firstEvent < 0 ? content : content.left(firstEvent) + good + content.mid(firstEvent);
        const int shift = firstEvent < 0 ? 0 : 5;

        const EVImportReport report = importCalendar(withGood);
        QVERIFY(!report.ok());
        QVERIFY(report.added.isEmpty());
        QString expected = message;
        if (shift > 0 && message.section(QLatin1Char(':'), 1, 1).toInt() > 3) {
            const int line = message.section(QLatin1Char(':'), 1, 1).toInt();
            expected = QStringLiteral("calendar.ics:%1:").arg(line + shift) +
                       message.section(QLatin1Char(':'), 2);
            expected.replace(QStringLiteral("of line 4"), QStringLiteral("of line 9"));
        }
        QVERIFY2(report.error.startsWith(expected),
                 qPrintable(report.error + QStringLiteral(" / expected ") + expected));
        m_store->save();
        QCOMPARE(fileContents(m_store->storeFilePath()), fileBefore);
        QVERIFY(StoreSnapshot::take(m_store->storeFilePath(), m_home->pictureFolderPath()) ==
                before);
        QCOMPARE(m_store->fetchWidgetEntries().size(), 1);
    }
};

TALLYVANE_TEST_MAIN(TestEVCalendarFile)
#include "tst_evcalendarfile.moc"
