#include "AppSeams.h"
#include "TestMain.h"

#include "core/EVAppInfo.h"
#include "core/EVUserDefaults.h"
#include "prefs/Rate.h"

#include <QWidget>

#include <memory>

class TestRate : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;

    static void drawAlways(quint32 number)
    {
        Rate::setRandomSource([number] { return number; });
    }

private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<TestHome>();
        drawAlways(2);
    }
    void cleanup()
    {
        Rate::setRandomSource({});
        m_home.reset();
    }

    void everyKeyOfTheTableHasItsOwnText()
    {
        const Rate rate;
        for (const char *key : {"iRateMessageTitle", "iRateAppMessage", "iRateRateButton",
                                "iRateCancelButton", "iRateRemindButton"}) {
            const QString text = rate.localizedStringForKey(QString::fromLatin1(key));
            QVERIFY2(!text.isEmpty() && text != QLatin1String(key), key);
        }
        // Each of the two formats takes the application's name once.
        QCOMPARE(rate.localizedStringForKey(QStringLiteral("iRateMessageTitle")).count(u"%1"), 1);
        QCOMPARE(rate.localizedStringForKey(QStringLiteral("iRateAppMessage")).count(u"%1"), 1);
    }

    void missingKeyGivesTheDefaultOrElseTheKey()
    {
        const Rate rate;
        QCOMPARE(rate.localizedStringForKey(QStringLiteral("iRateNoSuchKey")),
                 QStringLiteral("iRateNoSuchKey"));
        QCOMPARE(rate.localizedStringForKey(QStringLiteral("iRateNoSuchKey"),
                                            QStringLiteral("fallback")),
                 QStringLiteral("fallback"));
    }

    void questionIsASheetWithTheNameInItsTexts()
    {
        AlertRecorder alerts;
        alerts.queueAnswer(2);
        QWidget window;
        Rate rate;
        rate.showRateAlert(&window);
        QCOMPARE(alerts.shown().size(), 1);
        const EVAlert &alert = alerts.shown().first();
        QCOMPARE(alert.window, &window);
        const QString name = EVAppInfo::name();
        QCOMPARE(alert.messageText,
                 rate.localizedStringForKey(QStringLiteral("iRateMessageTitle")).arg(name));
        QCOMPARE(alert.informativeText,
                 rate.localizedStringForKey(QStringLiteral("iRateAppMessage")).arg(name));
        QVERIFY(alert.messageText.contains(name));
        QVERIFY(alert.informativeText.contains(name));
        QCOMPARE(alert.buttons, QStringList({rate.localizedStringForKey("iRateRateButton"),
                                             rate.localizedStringForKey("iRateCancelButton"),
                                             rate.localizedStringForKey("iRateRemindButton")}));
    }

    void missingTableShowsTheKeys()
    {
        AlertRecorder alerts;
        alerts.queueAnswer(2);
        QWidget window;
        Rate rate(QStringLiteral(":/strings/no-such-table.json"));
        rate.showRateAlert(&window);
        QCOMPARE(alerts.shown().size(), 1);
        const EVAlert &alert = alerts.shown().first();
        QCOMPARE(alert.messageText, QStringLiteral("iRateMessageTitle"));
        QCOMPARE(alert.informativeText, QStringLiteral("iRateAppMessage"));
        QCOMPARE(alert.buttons, QStringList({QStringLiteral("iRateRateButton"),
                                             QStringLiteral("iRateCancelButton"),
                                             QStringLiteral("iRateRemindButton")}));
    }

    void askedOnlyWhenTheDrawModuloFourIsTwo_data()
    {
        QTest::addColumn<quint32>("number");
        QTest::addColumn<bool>("asked");
        QTest::newRow("0") << 0u << false;
        QTest::newRow("1") << 1u << false;
        QTest::newRow("2") << 2u << true;
        QTest::newRow("3") << 3u << false;
        QTest::newRow("6") << 6u << true;
        QTest::newRow("largest") << 0xFFFFFFFEu << true;
        QTest::newRow("largest odd") << 0xFFFFFFFFu << false;
    }

    void askedOnlyWhenTheDrawModuloFourIsTwo()
    {
        QFETCH(quint32, number);
        QFETCH(bool, asked);
        drawAlways(number);
        AlertRecorder alerts;
        alerts.queueAnswer(2);
        QWidget window;
        Rate().showRateAlert(&window);
        QCOMPARE(alerts.shown().size(), asked ? 1 : 0);
    }

    void everyAttemptDrawsOnce()
    {
        int draws = 0;
        Rate::setRandomSource([&draws] { return quint32(++draws); });
        AlertRecorder alerts;
        for (int i = 0; i < 3; ++i)
            alerts.queueAnswer(2);
        QWidget window;
        Rate rate;
        for (int i = 0; i < 8; ++i)
            rate.showRateAlert(&window);
        QCOMPARE(draws, 8);
        // 2 and 6 are the draws that ask.
        QCOMPARE(alerts.shown().size(), 2);
    }

    void neverAskedAfterTheUserAnswered_data()
    {
        QTest::addColumn<int>("rateApp");
        QTest::newRow("rated") << 1;
        QTest::newRow("declined") << -1;
    }

    void neverAskedAfterTheUserAnswered()
    {
        QFETCH(int, rateApp);
        EVUserDefaults::setInteger(Rate::rateAppKey, rateApp);
        AlertRecorder alerts;
        QWidget window;
        Rate rate;
        for (quint32 number = 0; number < 8; ++number) {
            drawAlways(number);
            rate.showRateAlert(&window);
        }
        QVERIFY(alerts.shown().isEmpty());
        QCOMPARE(EVUserDefaults::integerForKey(Rate::rateAppKey), rateApp);
    }

    void choosingToRateOpensTheStorePageAndEndsTheQuestions()
    {
        UrlRecorder store(QStringLiteral("https"));
        AlertRecorder alerts;
        alerts.queueAnswer(0);
        QWidget window;
        Rate rate;
        rate.showRateAlert(&window);
        QCOMPARE(store.opened(), QList<QUrl>({QUrl(Rate::storePageAddress)}));
        QCOMPARE(EVUserDefaults::integerForKey(Rate::rateAppKey), 1);
        rate.showRateAlert(&window);
        QCOMPARE(alerts.shown().size(), 1);
    }

    void decliningEndsTheQuestionsWithoutOpeningAnything()
    {
        UrlRecorder store(QStringLiteral("https"));
        AlertRecorder alerts;
        alerts.queueAnswer(1);
        QWidget window;
        Rate rate;
        rate.showRateAlert(&window);
        QVERIFY(store.opened().isEmpty());
        QCOMPARE(EVUserDefaults::integerForKey(Rate::rateAppKey), -1);
        rate.showRateAlert(&window);
        QCOMPARE(alerts.shown().size(), 1);
    }

    void askingLaterLeavesTheAnswerOpen()
    {
        UrlRecorder store(QStringLiteral("https"));
        AlertRecorder alerts;
        alerts.queueAnswer(2);
        alerts.queueAnswer(2);
        QWidget window;
        Rate rate;
        rate.showRateAlert(&window);
        QCOMPARE(EVUserDefaults::integerForKey(Rate::rateAppKey), 0);
        QVERIFY(!EVUserDefaults::open()->contains(Rate::rateAppKey));
        rate.showRateAlert(&window);
        QCOMPARE(alerts.shown().size(), 2);
        QVERIFY(store.opened().isEmpty());
    }

    void anyOtherAnswerCodeChangesNothing()
    {
        EVAlert alert;
        Rate rate;
        rate.alertDidEndReturnCodeContextInfo(alert, 7);
        rate.alertDidEndReturnCodeContextInfo(alert, Rate::remindReturnCode);
        QVERIFY(!EVUserDefaults::open()->contains(Rate::rateAppKey));
    }

    void sharedRateIsOneInstance() { QCOMPARE(Rate::shareRate(), Rate::shareRate()); }
};

TALLYVANE_TEST_MAIN(TestRate)
#include "tst_rate.moc"
