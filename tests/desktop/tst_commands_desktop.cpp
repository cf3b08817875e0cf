#include "DesktopTools.h"
#include "TestMain.h"

#include <QElapsedTimer>
#include <QProcess>

#include <memory>

// The command line working on a running Tallyvane: its windows follow each command at once.
class TestCommandsDesktop : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<QProcess> m_application;

    struct Outcome
    {
        int exitCode = -1;
        QString output;
        QString errors;
    };

    static Outcome command(const QStringList &arguments)
    {
        QProcess process;
        process.start(QStringLiteral(TALLYVANE_PATH), arguments);
        Outcome outcome;
        if (!process.waitForFinished(30000)) {
            process.kill();
            process.waitForFinished();
            return outcome;
        }
        outcome.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
        outcome.output = QString::fromUtf8(process.readAllStandardOutput());
        outcome.errors = QString::fromUtf8(process.readAllStandardError());
        return outcome;
    }

    static QString exactly(const QString &name)
    {
        return QLatin1Char('^') + QRegularExpression::escape(name) + QLatin1Char('$');
    }

    // Milliseconds until the condition holds, or -1 when it did not within the limit.
    template <typename Condition>
    static qint64 millisecondsUntil(Condition condition, int limit = 5000)
    {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < limit) {
            if (condition())
                return clock.elapsed();
            QTest::qWait(25);
        }
        return -1;
    }

private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<TestHome>();
        m_application = std::make_unique<QProcess>();
        m_application->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_application->start(QStringLiteral(TALLYVANE_PATH));
        QVERIFY(m_application->waitForStarted());
        // Without widgets the preferences window comes up once the application runs.
        QVERIFY(millisecondsUntil(
                    [] {
                        return !DesktopTools::visibleWindowsNamed(
                                    QStringLiteral("Tallyvane Preferences"))
                                    .isEmpty();
                    },
                    15000) >= 0);
    }

    void cleanup()
    {
        if (m_application->state() == QProcess::Running) {
            m_application->terminate();
            QVERIFY(m_application->waitForFinished(15000));
            QCOMPARE(m_application->exitStatus(), QProcess::NormalExit);
            QCOMPARE(m_application->exitCode(), 0);
        }
        m_application.reset();
        m_home.reset();
    }

    void addShowsTheNewWidgetOnTheDesktopWithinASecond()
    {
        const Outcome added =
            command({QStringLiteral("add"), QStringLiteral("--title"), QStringLiteral("Desk check"),
                     QStringLiteral("--date"), QStringLiteral("2030-05-01")});
        QCOMPARE(added.exitCode, 0);
        QCOMPARE(added.output.trimmed().size(), 36);
        const qint64 shownAfter = millisecondsUntil([] {
            return !DesktopTools::visibleWindowsNamed(exactly(QStringLiteral("Desk check")))
                        .isEmpty();
        });
        QVERIFY2(shownAfter >= 0 && shownAfter <= 1000, qPrintable(QString::number(shownAfter)));
    }

    void removeTakesTheWidgetOffTheDesktop()
    {
        const Outcome added = command(
            {QStringLiteral("add"), QStringLiteral("--title"), QStringLiteral("Short lived")});
        QCOMPARE(added.exitCode, 0);
        QVERIFY(millisecondsUntil([] {
                    return !DesktopTools::visibleWindowsNamed(
                                exactly(QStringLiteral("Short lived")))
                                .isEmpty();
                }) >= 0);

        QCOMPARE(command({QStringLiteral("remove"), added.output.trimmed()}).exitCode, 0);

        const qint64 goneAfter = millisecondsUntil([] {
            return DesktopTools::visibleWindowsNamed(exactly(QStringLiteral("Short lived")))
                .isEmpty();
        });
        QVERIFY2(goneAfter >= 0 && goneAfter <= 1000, qPrintable(QString::number(goneAfter)));
        QCOMPARE(command({QStringLiteral("list")}).output, QString());
    }

    void listNamesTheWidgetsTheDesktopShows()
    {
        for (const char *title : {"Launch", "Holiday", "Marathon"})
            QCOMPARE(command({QStringLiteral("add"), QStringLiteral("--title"),
                              QString::fromLatin1(title)})
                         .exitCode,
                     0);
        const Outcome listed = command({QStringLiteral("list")});
        QCOMPARE(listed.exitCode, 0);
        const QStringList lines = listed.output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 3);
        for (const QString &line : lines) {
            const QStringList fields = line.split(QLatin1Char('\t'));
            QCOMPARE(fields.size(), 5);
            QVERIFY2(millisecondsUntil([&] {
                         return DesktopTools::visibleWindowsNamed(exactly(fields.at(1))).size() ==
                                1;
                     }) >= 0,
                     qPrintable(fields.at(1)));
        }
    }

    void badInputIsRefusedAndChangesNothing()
    {
        const Outcome refused = command(
            {QStringLiteral("add"), QStringLiteral("--date"), QStringLiteral("2030-02-30")});
        QCOMPARE(refused.exitCode, 1);
        QVERIFY(!refused.errors.isEmpty());
        QCOMPARE(command({QStringLiteral("list")}).output, QString());
        QCOMPARE(command({QStringLiteral("remove")}).exitCode, 2);
    }
};

TALLYVANE_DESKTOP_TEST_MAIN(TestCommandsDesktop)
#include "tst_commands_desktop.moc"
