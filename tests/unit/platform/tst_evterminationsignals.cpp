#include "TestMain.h"

#include "platform/EVTerminationSignals.h"

#include <QProcess>
#include <QSignalSpy>

#include <csignal>

namespace {

volatile std::sig_atomic_t earlierHandlerCalls = 0;

extern "C" void earlierHandler(int)
{
    earlierHandlerCalls = earlierHandlerCalls + 1;
}

struct sigaction currentAction(int signalNumber)
{
    struct sigaction action = {};
    ::sigaction(signalNumber, nullptr, &action);
    return action;
}

bool sameAction(const struct sigaction &a, const struct sigaction &b)
{
    return a.sa_flags == b.sa_flags && (a.sa_flags & SA_SIGINFO ? a.sa_sigaction == b.sa_sigaction
                                                                : a.sa_handler == b.sa_handler);
}

} // namespace

class TestEVTerminationSignals : public QObject
{
    Q_OBJECT

private:
    static void addSignalRows()
    {
        QTest::addColumn<int>("signalNumber");
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGINT") << SIGINT;
        QTest::newRow("SIGHUP") << SIGHUP;
    }

private Q_SLOTS:
    void makingTheObjectChangesNoHandler_data() { addSignalRows(); }
    void makingTheObjectChangesNoHandler()
    {
        QFETCH(int, signalNumber);
        const struct sigaction before = currentAction(signalNumber);
        EVTerminationSignals listener;
        QVERIFY(!listener.isInstalled());
        QVERIFY(sameAction(currentAction(signalNumber), before));
    }

    void signalArrivesAsOneQtSignal_data() { addSignalRows(); }
    void signalArrivesAsOneQtSignal()
    {
        QFETCH(int, signalNumber);
        EVTerminationSignals listener;
        QSignalSpy powerOff(&listener, &EVTerminationSignals::powerOffRequested);
        QVERIFY(listener.install());
        QVERIFY(listener.isInstalled());

        QCOMPARE(::raise(signalNumber), 0);
        QTRY_COMPARE(powerOff.size(), 1);
        QCOMPARE(powerOff.first().first().toInt(), signalNumber);
    }

    void everySignalIsReportedOnce()
    {
        EVTerminationSignals listener;
        QSignalSpy powerOff(&listener, &EVTerminationSignals::powerOffRequested);
        QVERIFY(listener.install());
        ::raise(SIGHUP);
        ::raise(SIGTERM);
        QTRY_COMPARE(powerOff.size(), 2);
        QTest::qWait(50);
        QCOMPARE(powerOff.size(), 2);
        QCOMPARE(powerOff.at(0).first().toInt(), SIGHUP);
        QCOMPARE(powerOff.at(1).first().toInt(), SIGTERM);
    }

    void earlierHandlersComeBackWhenTheObjectGoes_data() { addSignalRows(); }
    void earlierHandlersComeBackWhenTheObjectGoes()
    {
        QFETCH(int, signalNumber);
        struct sigaction earlier = {};
        earlier.sa_handler = earlierHandler;
        sigemptyset(&earlier.sa_mask);
        struct sigaction original = {};
        QCOMPARE(::sigaction(signalNumber, &earlier, &original), 0);
        // As the system reports it back, with the flags it adds.
        const struct sigaction earlierAsSet = currentAction(signalNumber);
        earlierHandlerCalls = 0;
        {
            EVTerminationSignals listener;
            QVERIFY(listener.install());
            QVERIFY(!sameAction(currentAction(signalNumber), earlierAsSet));
        }
        QVERIFY(sameAction(currentAction(signalNumber), earlierAsSet));
        ::raise(signalNumber);
        QCOMPARE(int(earlierHandlerCalls), 1);
        ::sigaction(signalNumber, &original, nullptr);
    }

    void onlyOneObjectHoldsTheSignals()
    {
        auto first = std::make_unique<EVTerminationSignals>();
        QVERIFY(first->install());
        EVTerminationSignals second;
        QVERIFY(!second.install());
        QVERIFY(!second.isInstalled());
        QVERIFY(!first->install());

        QSignalSpy firstSpy(first.get(), &EVTerminationSignals::powerOffRequested);
        ::raise(SIGTERM);
        QTRY_COMPARE(firstSpy.size(), 1);

        first.reset();
        QVERIFY(second.install());
        QSignalSpy secondSpy(&second, &EVTerminationSignals::powerOffRequested);
        ::raise(SIGTERM);
        QTRY_COMPARE(secondSpy.size(), 1);
    }

    void receiverMayDeleteTheObject()
    {
        auto *listener = new EVTerminationSignals;
        QVERIFY(listener->install());
        int received = 0;
        connect(listener, &EVTerminationSignals::powerOffRequested, this, [&received, listener] {
            ++received;
            delete listener;
        });
        ::raise(SIGINT);
        ::raise(SIGINT);
        QTRY_COMPARE(received, 1);
        QTest::qWait(50);
        QCOMPARE(received, 1);
        // The handlers went with it: a new object can take them.
        EVTerminationSignals next;
        QVERIFY(next.install());
    }

    void realSignalEndsAProcessCleanly_data() { addSignalRows(); }
    void realSignalEndsAProcessCleanly()
    {
        QFETCH(int, signalNumber);
        QProcess child;
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child.start(QStringLiteral(SIGNAL_LISTENER_PATH));
        QVERIFY(child.waitForReadyRead(10000));
        QCOMPARE(child.readLine().trimmed(), QByteArray("ready"));

        QCOMPARE(::kill(pid_t(child.processId()), signalNumber), 0);
        QVERIFY(child.waitForFinished(10000));
        QCOMPARE(child.exitStatus(), QProcess::NormalExit);
        QCOMPARE(child.exitCode(), 0);
        QCOMPARE(child.readAll().trimmed(), "power off " + QByteArray::number(signalNumber));
    }
};

TALLYVANE_TEST_MAIN(TestEVTerminationSignals)
#include "tst_evterminationsignals.moc"
