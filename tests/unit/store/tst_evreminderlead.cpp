#include "TestMain.h"

#include "store/EVReminderLead.h"

class TestEVReminderLead : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsACountAndAUnitLetter_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("unit");
        QTest::newRow("30s") << QStringLiteral("30s") << 30 << int(EVReminderLead::Seconds);
        QTest::newRow("15m") << QStringLiteral("15m") << 15 << int(EVReminderLead::Minutes);
        QTest::newRow("2h") << QStringLiteral("2h") << 2 << int(EVReminderLead::Hours);
        QTest::newRow("3d") << QStringLiteral("3d") << 3 << int(EVReminderLead::Days);
        QTest::newRow("1w") << QStringLiteral("1w") << 1 << int(EVReminderLead::Weeks);
        QTest::newRow("capital letter") << QStringLiteral("2H") << 2 << int(EVReminderLead::Hours);
        QTest::newRow("blanks around")
            << QStringLiteral(" 90m ") << 90 << int(EVReminderLead::Minutes);
    }

    void readsACountAndAUnitLetter()
    {
        QFETCH(QString, text);
        QFETCH(int, count);
        QFETCH(int, unit);
        const std::optional<EVReminderLead> lead = EVReminderLead::fromText(text);
        QVERIFY(lead);
        QCOMPARE(lead->count, count);
        QCOMPARE(lead->unit, unit);
    }

    void refusesAnythingElse_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text :
             {"", "h", "2", "0h", "-2h", "+2h", "2x", "2 h", "1.5h", "2hh", "99999999999h", "٢h"})
            QTest::newRow(text) << QString::fromUtf8(text);
    }

    void refusesAnythingElse()
    {
        QFETCH(QString, text);
        QVERIFY(!EVReminderLead::fromText(text));
    }

    void writesWhatItReads()
    {
        for (const char *text : {"30s", "15m", "2h", "3d", "1w"})
            QCOMPARE(EVReminderLead::fromText(QLatin1String(text))->text(), QLatin1String(text));
    }

    void secondsInTheLargestWholeUnit_data()
    {
        QTest::addColumn<qint64>("seconds");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("unit");
        QTest::newRow("15 minutes") << qint64(900) << 15 << int(EVReminderLead::Minutes);
        QTest::newRow("1 day") << qint64(86400) << 1 << int(EVReminderLead::Days);
        QTest::newRow("90 minutes") << qint64(5400) << 90 << int(EVReminderLead::Minutes);
        QTest::newRow("2 hours") << qint64(7200) << 2 << int(EVReminderLead::Hours);
        QTest::newRow("2 weeks") << qint64(1209600) << 2 << int(EVReminderLead::Weeks);
        QTest::newRow("8 days") << qint64(691200) << 8 << int(EVReminderLead::Days);
        QTest::newRow("61 seconds") << qint64(61) << 61 << int(EVReminderLead::Seconds);
    }

    void secondsInTheLargestWholeUnit()
    {
        QFETCH(qint64, seconds);
        QFETCH(int, count);
        QFETCH(int, unit);
        const std::optional<EVReminderLead> lead = EVReminderLead::fromSeconds(seconds);
        QVERIFY(lead);
        QCOMPARE(lead->count, count);
        QCOMPARE(lead->unit, unit);
        QCOMPARE(lead->seconds(), seconds);
    }

    void noLeadForNothingOrAfterTheEvent()
    {
        QVERIFY(!EVReminderLead::fromSeconds(0));
        QVERIFY(!EVReminderLead::fromSeconds(-60));
        QVERIFY(!EVReminderLead::fromSeconds(qint64(1) << 40 | 1));
    }

    void unitSecondsFollowTheNoteTabsList()
    {
        QCOMPARE(EVReminderLead::unitSeconds(0), 1);
        QCOMPARE(EVReminderLead::unitSeconds(1), 60);
        QCOMPARE(EVReminderLead::unitSeconds(2), 3600);
        QCOMPARE(EVReminderLead::unitSeconds(3), 86400);
        QCOMPARE(EVReminderLead::unitSeconds(4), 604800);
        QCOMPARE(EVReminderLead::unitSeconds(5), 0);
        QCOMPARE(EVReminderLead::unitSeconds(-1), 0);
    }
};

TALLYVANE_TEST_MAIN(TestEVReminderLead)
#include "tst_evreminderlead.moc"
