#include "SanitizerReport.h"
#include "TestMain.h"

#include <QProcess>

// Programs that end with widget windows and banners still open end cleanly.
class TestProcessExit : public QObject
{
    Q_OBJECT

private:
    struct Outcome
    {
        QProcess::ExitStatus status = QProcess::CrashExit;
        int code = -1;
        QByteArray errors;
    };

    static Outcome runChild(const QStringList &arguments)
    {
        QProcess child;
        child.start(QStringLiteral(PROCESS_EXIT_CHILD_PATH), arguments);
        Outcome outcome;
        if (!child.waitForFinished(60000)) {
            child.kill();
            child.waitForFinished();
            return outcome;
        }
        outcome.status = child.exitStatus();
        outcome.code = child.exitCode();
        outcome.errors = child.readAllStandardError();
        return outcome;
    }

    static void verifyClean(const Outcome &outcome)
    {
        QCOMPARE(outcome.status, QProcess::NormalExit);
        QVERIFY2(outcome.code == 0, outcome.errors.constData());
        QVERIFY2(!hasSanitizerReport(QString::fromLocal8Bit(outcome.errors)),
                 outcome.errors.constData());
    }

private Q_SLOTS:
    void returningFromMainWithWidgetsAndABannerExitsCleanly() { verifyClean(runChild({})); }

    void endingTheProcessWideObjectsFirstExitsCleanly()
    {
        verifyClean(runChild({QStringLiteral("teardown")}));
    }
};

TALLYVANE_TEST_MAIN(TestProcessExit)
#include "tst_processexit.moc"
