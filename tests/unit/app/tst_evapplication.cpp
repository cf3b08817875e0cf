#include "AppSeams.h"
#include "TestMain.h"
#include "app/EVApplication.h"
#include "core/EVAppInfo.h"
#include "store/EVCoreDataDelegate.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

class TestEVApplication : public QObject
{
    Q_OBJECT

private:
    // What a report looked like from the outside.
    struct Reports
    {
        AlertRecorder alerts;
        MailRecorder mail;
        TerminationRecorder terminations;
    };

    static bool putFileInPlaceOfTheStoreFolder(const TestHome &home)
    {
        QFile blocker(home.applicationFilesPath());
        return QDir().mkpath(QFileInfo(blocker.fileName()).path()) &&
               blocker.open(QIODevice::WriteOnly);
    }

private Q_SLOTS:
    void reportShowsTheAlertMailsFeedbackAndAsksToTerminate()
    {
        Reports reports;
        EVApplication::countdownPresentError(EVError{QStringLiteral("any"), 7, {}, {}});

        QCOMPARE(reports.alerts.shown().size(), 1);
        const EVAlert &alert = reports.alerts.shown().at(0);
        QCOMPARE(alert.icon, QMessageBox::Warning);
        QCOMPARE(alert.messageText, QStringLiteral("Wow, database initial failed!"));
        QCOMPARE(alert.informativeText,
                 QStringLiteral("I'm out of action with the bad database, My master will be "
                                "always happy to offer you efficient services."));
        QCOMPARE(alert.buttons,
                 (QStringList{QStringLiteral("Report Issue"), QStringLiteral("Cancel")}));
        QCOMPARE(reports.mail.opened().size(), 1);
        const QUrl mail = reports.mail.opened().at(0);
        QCOMPARE(mail.scheme(), QStringLiteral("mailto"));
        QCOMPARE(mail.path(), EVAppInfo::feedbackAddress());
        QCOMPARE(mail.query(QUrl::FullyDecoded),
                 QStringLiteral("SUBJECT=Feedback: Tallyvane(%1.%2) Database initial failed")
                     .arg(EVAppInfo::version(), QString::number(EVAppInfo::systemVersion(), 16)));
        QCOMPARE(reports.terminations.requests(), 1);
    }

    void cancelledReportSendsNoMailButStillAsksToTerminate()
    {
        Reports reports;
        reports.alerts.queueAnswer(1);
        EVApplication::countdownPresentError(EVError{});
        QCOMPARE(reports.alerts.shown().size(), 1);
        QVERIFY(reports.mail.opened().isEmpty());
        QCOMPARE(reports.terminations.requests(), 1);
    }

    void storeFailuresBecomeTheFatalReportOnceRouted()
    {
        TestHome home;
        QVERIFY(putFileInPlaceOfTheStoreFolder(home));
        Reports reports;
        EVCoreDataDelegate store;
        EVApplication::reportStoreFailures(&store);

        QVERIFY(store.fetchWidgetEntries().isEmpty());

        QVERIFY(!reports.alerts.shown().isEmpty());
        QCOMPARE(reports.alerts.shown().at(0).messageText,
                 QStringLiteral("Wow, database initial failed!"));
        QVERIFY(reports.terminations.requests() >= 1);
    }

    void storeFailuresAloneShowNothing()
    {
        TestHome home;
        QVERIFY(putFileInPlaceOfTheStoreFolder(home));
        Reports reports;
        EVCoreDataDelegate store;

        QVERIFY(store.fetchWidgetEntries().isEmpty());

        QVERIFY(reports.alerts.shown().isEmpty());
        QCOMPARE(reports.terminations.requests(), 0);
    }
};

TALLYVANE_TEST_MAIN(TestEVApplication)
#include "tst_evapplication.moc"
