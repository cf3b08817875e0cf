#include "LogRecorder.h"
#include "TestMain.h"

#include "platform/EVTrayHost.h"

#include <QSignalSpy>
#include <QSystemTrayIcon>

using namespace std::chrono_literals;

namespace {

// A tray host that turns up at the given look (1 is the first), or never with 0.
struct ScriptedHost
{
    int appearsAtLook = 0;
    int looks = 0;

    EVTrayHost::Probe probe()
    {
        return [this] {
            ++looks;
            return appearsAtLook > 0 && looks >= appearsAtLook;
        };
    }
};

} // namespace

class TestEVTrayHost : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hostThereAtStartIsAnnouncedAtOnce()
    {
        ScriptedHost host{1};
        EVTrayHost tray(host.probe());
        QSignalSpy available(&tray, &EVTrayHost::available);
        QVERIFY(!tray.isAvailable());

        tray.start();
        QCOMPARE(available.size(), 1);
        QVERIFY(tray.isAvailable());
        QVERIFY(!tray.isWaiting());
        QCOMPARE(host.looks, 1);
    }

    void hostAppearingLaterIsFoundByLookingAgain()
    {
        LogRecorder log("tallyvane.trayhost");
        ScriptedHost host{4};
        EVTrayHost tray(host.probe());
        tray.setRetryInterval(20ms);
        QSignalSpy available(&tray, &EVTrayHost::available);

        tray.start();
        QCOMPARE(available.size(), 0);
        QVERIFY(tray.isWaiting());
        QTRY_COMPARE(available.size(), 1);
        QCOMPARE(host.looks, 4);
        QVERIFY(tray.isAvailable());
        QVERIFY(!tray.isWaiting());
        QTest::qWait(100);
        QCOMPARE(host.looks, 4);
        QCOMPARE(log.lines().size(), 0);
    }

    void noHostWithinThePeriodIsOneLogLine()
    {
        LogRecorder log("tallyvane.trayhost");
        ScriptedHost host;
        EVTrayHost tray(host.probe());
        tray.setRetryInterval(20ms);
        tray.setRetryPeriod(200ms);
        QSignalSpy available(&tray, &EVTrayHost::available);

        tray.start();
        QTRY_VERIFY_WITH_TIMEOUT(!tray.isWaiting(), 5000);
        // Looked again, more than once (a busy machine may skip some ticks).
        QVERIFY(host.looks >= 3);
        const int looks = host.looks;
        QTest::qWait(100);
        QCOMPARE(host.looks, looks);
        QCOMPARE(available.size(), 0);
        QVERIFY(!tray.isAvailable());
        QCOMPARE(log.lines().size(), 1);
        QCOMPARE(log.lines().first().type, QtWarningMsg);
        QVERIFY(log.lines().first().text.contains(QStringLiteral("No system tray")));
    }

    void lookingStopsWhenThePeriodEndsNotBefore()
    {
        LogRecorder log("tallyvane.trayhost");
        ScriptedHost host;
        EVTrayHost tray(host.probe());
        tray.setRetryInterval(50ms);
        tray.setRetryPeriod(3s);

        tray.start();
        QTest::qWait(500);
        QVERIFY(tray.isWaiting());
        QCOMPARE(log.lines().size(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(!tray.isWaiting(), 5000);
        QCOMPARE(log.lines().size(), 1);
    }

    void startingAgainLooksAgain()
    {
        LogRecorder log("tallyvane.trayhost");
        ScriptedHost host;
        EVTrayHost tray(host.probe());
        tray.setRetryInterval(20ms);
        tray.setRetryPeriod(100ms);
        QSignalSpy available(&tray, &EVTrayHost::available);
        tray.start();
        QTRY_VERIFY(!tray.isWaiting());

        host.appearsAtLook = host.looks + 3;
        tray.start();
        QVERIFY(tray.isWaiting());
        QTRY_COMPARE(available.size(), 1);
        QVERIFY(tray.isAvailable());
    }

    void realProbeAsksTheDesktop()
    {
        // The offscreen platform has no tray; the desktop test covers a real one.
        EVTrayHost tray;
        tray.setRetryPeriod(0ms);
        tray.start();
        QCOMPARE(tray.isAvailable(), QSystemTrayIcon::isSystemTrayAvailable());
    }
};

TALLYVANE_TEST_MAIN(TestEVTrayHost)
#include "tst_evtrayhost.moc"
