#include "TestMain.h"

#include "platform/EVInstanceMessage.h"
#include "platform/EVSingleInstance.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocalSocket>
#include <QProcess>
#include <QSignalSpy>
#include <QTimer>

#include <memory>

namespace {

const QString identifier = QStringLiteral("com.velto.tallyvane");

// The other process: a running instance, a later launch, or a silent lock holder.
class Peer
{
public:
    explicit Peer(const QStringList &arguments)
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral(INSTANCE_PEER_PATH), arguments);
    }
    ~Peer()
    {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.kill();
            m_process.waitForFinished(5000);
        }
    }

    // The next line the peer prints; empty when none came in time. Keeps the event loop going,
    // since the peer may be waiting for this process's reply.
    QByteArray nextLine(int timeoutMs = 10000)
    {
        // Whatever came in time is what the caller compares.
        (void)QTest::qWaitFor([this] { return m_process.canReadLine() || !isRunning(); },
                              timeoutMs);
        return m_process.readLine().trimmed();
    }

    // Waits for the peer's end while this process keeps serving; its exit code, -1 on a crash
    // or a peer still running.
    int exitCode(int timeoutMs = 10000)
    {
        (void)QTest::qWaitFor([this] { return !isRunning(); }, timeoutMs);
        if (isRunning() || m_process.exitStatus() != QProcess::NormalExit)
            return -1;
        return m_process.exitCode();
    }

    void killHard()
    {
        m_process.kill();
        m_process.waitForFinished(5000);
    }

private:
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }

    QProcess m_process;
};

QByteArray compact(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

// Talks to a running instance in this process byte by byte, as a careless or hostile client
// would; returns everything the instance wrote back before it closed the connection.
QByteArray exchange(const QString &socketPath, const QByteArray &bytes)
{
    QLocalSocket socket;
    socket.connectToServer(socketPath);
    if (!QTest::qWaitFor([&socket] { return socket.state() == QLocalSocket::ConnectedState; }))
        return "not connected";
    socket.write(bytes);
    QByteArray received;
    const auto readWhatCame = [&] {
        if (socket.isOpen())
            received += socket.readAll();
    };
    (void)QTest::qWaitFor(
        [&] {
            readWhatCame();
            return socket.state() == QLocalSocket::UnconnectedState;
        },
        10000);
    readWhatCame();
    return received;
}

} // namespace

class TestEVSingleInstance : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;

    // Answers every request with what it asked for, as a running instance would.
    static void connectEcho(EVSingleInstance &instance)
    {
        connect(&instance, &EVSingleInstance::requestReceived, &instance,
                [](const QJsonObject &request, const EVInstanceReplier &replier) {
                    replier.reply({{QStringLiteral("echo"), request}});
                });
    }

private Q_SLOTS:
    // Every test gets its own home with its private runtime folder, where the lock and the
    // socket live.
    void init()
    {
        m_home = std::make_unique<TestHome>();
        QVERIFY(QFileInfo(m_home->runtimePath()).isDir());
    }
    void cleanup() { m_home.reset(); }

    void firstLaunchBecomesTheRunningInstance()
    {
        EVSingleInstance instance(identifier);
        QCOMPARE(instance.claim(), EVSingleInstance::Claim::Primary);
        QCOMPARE(instance.lockFilePath(), m_home->runtimePath() + '/' + identifier + ".lock");
        QCOMPARE(instance.socketPath(), m_home->runtimePath() + '/' + identifier + ".socket");
        QVERIFY(QFile::exists(instance.lockFilePath()));
        QVERIFY(QFile::exists(instance.socketPath()));
    }

    void runningInstanceLeavesNoLockBehindWhenItEnds()
    {
        QString lockFile;
        {
            EVSingleInstance instance(identifier);
            QCOMPARE(instance.claim(), EVSingleInstance::Claim::Primary);
            lockFile = instance.lockFilePath();
        }
        QVERIFY(!QFile::exists(lockFile));
        EVSingleInstance next(identifier);
        QCOMPARE(next.claim(), EVSingleInstance::Claim::Primary);
    }

    void laterLaunchGetsTheReplyOfTheRunningInstance()
    {
        EVSingleInstance instance(identifier);
        QCOMPARE(instance.claim(), EVSingleInstance::Claim::Primary);
        QList<QJsonObject> requests;
        connect(&instance, &EVSingleInstance::requestReceived, this,
                [&requests](const QJsonObject &request, const EVInstanceReplier &replier) {
                    requests.append(request);
                    replier.reply({{QStringLiteral("opened"), QStringLiteral("preferences")}});
                });

        Peer later(
            {QStringLiteral("send"), identifier, QStringLiteral(R"({"command":"preferences"})")});
        QCOMPARE(later.nextLine(), QByteArray(R"(reply {"opened":"preferences"})"));
        QCOMPARE(later.exitCode(), 0);
        QCOMPARE(requests.size(), 1);
        QCOMPARE(requests.first().value(QStringLiteral("command")).toString(),
                 QStringLiteral("preferences"));
    }

    void laterLaunchThatWantsNoReplyStillDelivers()
    {
        EVSingleInstance instance(identifier);
        QCOMPARE(instance.claim(), EVSingleInstance::Claim::Primary);
        QSignalSpy requests(&instance, &EVSingleInstance::requestReceived);

        Peer later({QStringLiteral("send"), identifier,
                    QStringLiteral(R"({"command":"preferences"})"), QStringLiteral("nowait")});
        QCOMPARE(later.exitCode(), 0);
        QTRY_COMPARE(requests.size(), 1);
        QCOMPARE(requests.first().first().toJsonObject().value(QStringLiteral("command")),
                 QStringLiteral("preferences"));
    }

    void runningInstanceInAnotherProcessAnswers()
    {
        Peer running({QStringLiteral("serve"), identifier});
        QCOMPARE(running.nextLine(), QByteArray("primary"));

        EVSingleInstance later(identifier);
        QCOMPARE(later.claim(), EVSingleInstance::Claim::AnotherInstanceRuns);
        const QJsonObject request{{QStringLiteral("command"), QStringLiteral("list")}};
        const EVSingleInstance::Answer answer =
            later.sendRequest(request, EVSingleInstance::ReplyWanted::Yes);
        QVERIFY2(answer.delivered, qPrintable(answer.errorString));
        QCOMPARE(answer.reply.value(QStringLiteral("echo")).toObject(), request);
        QCOMPARE(running.nextLine(), "request " + compact(request));

        const EVSingleInstance::Answer bye =
            later.sendRequest({{QStringLiteral("command"), QStringLiteral("quit")}},
                              EVSingleInstance::ReplyWanted::Yes);
        QCOMPARE(bye.reply.value(QStringLiteral("bye")), QJsonValue(true));
        QCOMPARE(running.exitCode(), 0);
    }

    void lockOfAKilledInstanceIsTakenOver()
    {
        EVSingleInstance instance(identifier);
        Peer killed({QStringLiteral("serve"), identifier});
        QCOMPARE(killed.nextLine(), QByteArray("primary"));
        killed.killHard();
        // A killed process cleans nothing up.
        QVERIFY(QFile::exists(instance.lockFilePath()));
        QVERIFY(QFile::exists(instance.socketPath()));

        QCOMPARE(instance.claim(), EVSingleInstance::Claim::Primary);
        connectEcho(instance);
        Peer later({QStringLiteral("send"), identifier, QStringLiteral(R"({"command":"ping"})")});
        QCOMPARE(later.nextLine(), QByteArray(R"(reply {"echo":{"command":"ping"}})"));
        QCOMPARE(later.exitCode(), 0);
    }

    void runningInstanceKeepsItsLockHoweverOld()
    {
        Peer running({QStringLiteral("serve"), identifier});
        QCOMPARE(running.nextLine(), QByteArray("primary"));
        EVSingleInstance later(identifier);
        QFile lock(later.lockFilePath());
        QVERIFY(lock.open(QIODevice::ReadOnly));
        QVERIFY(lock.setFileTime(QDateTime::currentDateTime().addDays(-2),
                                 QFileDevice::FileModificationTime));
        lock.close();

        QCOMPARE(later.claim(), EVSingleInstance::Claim::AnotherInstanceRuns);
        const EVSingleInstance::Answer answer =
            later.sendRequest({{QStringLiteral("command"), QStringLiteral("quit")}},
                              EVSingleInstance::ReplyWanted::Yes);
        QVERIFY2(answer.delivered, qPrintable(answer.errorString));
        QCOMPARE(running.exitCode(), 0);
    }

    void silentLockHolderMeansNoDelivery()
    {
        EVSingleInstance later(identifier);
        Peer holder({QStringLiteral("hold"), identifier});
        QCOMPARE(holder.nextLine(), QByteArray("locked"));

        QCOMPARE(later.claim(), EVSingleInstance::Claim::AnotherInstanceRuns);
        later.setTimeout(std::chrono::milliseconds(500));
        const EVSingleInstance::Answer answer =
            later.sendRequest({{QStringLiteral("command"), QStringLiteral("preferences")}},
                              EVSingleInstance::ReplyWanted::Yes);
        QVERIFY(!answer.delivered);
        QVERIFY2(answer.errorString.contains(QStringLiteral("does not answer")),
                 qPrintable(answer.errorString));
    }

    void requestNobodyHandlesIsAnsweredWithAnError()
    {
        EVSingleInstance instance(identifier);
        QCOMPARE(instance.claim(), EVSingleInstance::Claim::Primary);
        Peer later({QStringLiteral("send"), identifier, QStringLiteral(R"({"command":"list"})")});
        QCOMPARE(later.nextLine(), QByteArray(R"(reply {"error":"request not handled"})"));
        QCOMPARE(later.exitCode(), 0);
    }

    void tooLargeRequestIsRefusedAndTheInstanceGoesOn_data()
    {
        QTest::addColumn<QByteArray>("request");
        QTest::newRow("no line end") << QByteArray(EVInstanceMessage::maximumSize, 'x');
        QTest::newRow("line end too late")
            << QByteArray(EVInstanceMessage::maximumSize, ' ') + "{}\n";
    }

    void tooLargeRequestIsRefusedAndTheInstanceGoesOn()
    {
        QFETCH(QByteArray, request);
        EVSingleInstance instance(identifier);
        QCOMPARE(instance.claim(), EVSingleInstance::Claim::Primary);
        connectEcho(instance);
        QSignalSpy requests(&instance, &EVSingleInstance::requestReceived);

        QCOMPARE(exchange(instance.socketPath(), request),
                 QByteArray("{\"error\":\"request too large\"}\n"));
        QCOMPARE(requests.size(), 0);
        QCOMPARE(exchange(instance.socketPath(), "{\"command\":\"list\"}\n"),
                 QByteArray("{\"echo\":{\"command\":\"list\"}}\n"));
    }

    void floodIsCutOffAndTheInstanceGoesOn()
    {
        EVSingleInstance instance(identifier);
        QCOMPARE(instance.claim(), EVSingleInstance::Claim::Primary);
        connectEcho(instance);
        QSignalSpy requests(&instance, &EVSingleInstance::requestReceived);

        QLocalSocket flood;
        flood.connectToServer(instance.socketPath());
        QVERIFY(flood.waitForConnected(5000));
        const qsizetype floodSize = 64 * EVInstanceMessage::maximumSize;
        flood.write(QByteArray(floodSize, '{'));
        // The instance hangs up long before it would have taken everything.
        QTRY_COMPARE_WITH_TIMEOUT(flood.state(), QLocalSocket::UnconnectedState, 10000);
        QCOMPARE(requests.size(), 0);
        QCOMPARE(exchange(instance.socketPath(), "{\"command\":\"list\"}\n"),
                 QByteArray("{\"echo\":{\"command\":\"list\"}}\n"));
    }

    void largestRequestThatFitsIsTaken()
    {
        EVSingleInstance instance(identifier);
        QCOMPARE(instance.claim(), EVSingleInstance::Claim::Primary);
        QSignalSpy requests(&instance, &EVSingleInstance::requestReceived);
        connect(&instance, &EVSingleInstance::requestReceived, this,
                [](const QJsonObject &, const EVInstanceReplier &replier) {
                    replier.reply({{QStringLiteral("taken"), true}});
                });
        // {"p":"..."} and the line end fill the limit exactly.
        const QByteArray padding(EVInstanceMessage::maximumSize - 9, 'p');
        const QByteArray line = "{\"p\":\"" + padding + "\"}\n";
        QCOMPARE(line.size(), EVInstanceMessage::maximumSize);

        QCOMPARE(exchange(instance.socketPath(), line), QByteArray("{\"taken\":true}\n"));
        QCOMPARE(requests.size(), 1);
        QCOMPARE(
            requests.first().first().toJsonObject().value(QStringLiteral("p")).toString().size(),
            padding.size());
    }

    void garbageIsAnsweredWithAnError_data()
    {
        QTest::addColumn<QByteArray>("request");
        QTest::addColumn<QByteArray>("error");
        QTest::newRow("text") << QByteArray("open the preferences\n") << QByteArray("not JSON");
        QTest::newRow("empty line") << QByteArray("\n") << QByteArray("not JSON");
        QTest::newRow("array") << QByteArray("[1,2,3]\n") << QByteArray("not a JSON object");
        QTest::newRow("string") << QByteArray("\"open\"\n") << QByteArray("not JSON");
        QTest::newRow("binary") << QByteArray("\x00\xff\xfe{\x01\n", 6) << QByteArray("not JSON");
        QTest::newRow("cut object") << QByteArray("{\"command\":\n") << QByteArray("not JSON");
    }

    void garbageIsAnsweredWithAnError()
    {
        QFETCH(QByteArray, request);
        QFETCH(QByteArray, error);
        EVSingleInstance instance(identifier);
        QCOMPARE(instance.claim(), EVSingleInstance::Claim::Primary);
        connectEcho(instance);
        QSignalSpy requests(&instance, &EVSingleInstance::requestReceived);

        const QByteArray reply = exchange(instance.socketPath(), request);
        QVERIFY2(reply.startsWith("{\"error\":\"" + error), reply.constData());
        QVERIFY(reply.endsWith('\n'));
        QCOMPARE(requests.size(), 0);
        QCOMPARE(exchange(instance.socketPath(), "{\"command\":\"list\"}\n"),
                 QByteArray("{\"echo\":{\"command\":\"list\"}}\n"));
    }

    void onlyTheFirstRequestOfAConnectionCounts()
    {
        EVSingleInstance instance(identifier);
        QCOMPARE(instance.claim(), EVSingleInstance::Claim::Primary);
        connectEcho(instance);
        QSignalSpy requests(&instance, &EVSingleInstance::requestReceived);

        QCOMPARE(exchange(instance.socketPath(), "{\"n\":1}\n{\"n\":2}\n"),
                 QByteArray("{\"echo\":{\"n\":1}}\n"));
        QCOMPARE(requests.size(), 1);
    }

    void silentClientIsDroppedAfterTheTimeout()
    {
        EVSingleInstance instance(identifier);
        instance.setTimeout(std::chrono::milliseconds(300));
        QCOMPARE(instance.claim(), EVSingleInstance::Claim::Primary);
        connectEcho(instance);

        QCOMPARE(exchange(instance.socketPath(), QByteArray()),
                 QByteArray("{\"error\":\"no request received in time\"}\n"));
        QCOMPARE(exchange(instance.socketPath(), "{\"half\":"),
                 QByteArray("{\"error\":\"no request received in time\"}\n"));
    }

    void clientLeavingHalfwayLeavesTheInstanceServing()
    {
        EVSingleInstance instance(identifier);
        QCOMPARE(instance.claim(), EVSingleInstance::Claim::Primary);
        connectEcho(instance);
        {
            QLocalSocket leaving;
            leaving.connectToServer(instance.socketPath());
            QVERIFY(leaving.waitForConnected(5000));
            leaving.write("{\"command\":\"li");
            QVERIFY(leaving.waitForBytesWritten(5000));
        }
        QTest::qWait(50);
        QCOMPARE(exchange(instance.socketPath(), "{\"command\":\"list\"}\n"),
                 QByteArray("{\"echo\":{\"command\":\"list\"}}\n"));
    }

    void replyMayComeLaterAndOnlyTheFirstCounts()
    {
        EVSingleInstance instance(identifier);
        QCOMPARE(instance.claim(), EVSingleInstance::Claim::Primary);
        connect(&instance, &EVSingleInstance::requestReceived, this,
                [this](const QJsonObject &, const EVInstanceReplier &replier) {
                    QTimer::singleShot(300, this, [replier] {
                        QVERIFY(replier.isWaiting());
                        replier.reply({{QStringLiteral("n"), 1}});
                        QVERIFY(!replier.isWaiting());
                        replier.reply({{QStringLiteral("n"), 2}});
                    });
                });

        Peer later({QStringLiteral("send"), identifier, QStringLiteral(R"({"command":"export"})")});
        QCOMPARE(later.nextLine(), QByteArray(R"(reply {"n":1})"));
        QCOMPARE(later.exitCode(), 0);
    }

    void replyToALaunchThatLeftIsDropped()
    {
        EVSingleInstance instance(identifier);
        QCOMPARE(instance.claim(), EVSingleInstance::Claim::Primary);
        EVInstanceReplier kept;
        connect(&instance, &EVSingleInstance::requestReceived, this,
                [&kept](const QJsonObject &, const EVInstanceReplier &replier) { kept = replier; });
        {
            QLocalSocket leaving;
            leaving.connectToServer(instance.socketPath());
            QVERIFY(leaving.waitForConnected(5000));
            leaving.write("{\"command\":\"list\"}\n");
            QVERIFY(leaving.waitForBytesWritten(5000));
            QTRY_VERIFY(kept.isWaiting());
        }
        QTRY_VERIFY(!kept.isWaiting());
        kept.reply({{QStringLiteral("late"), true}});
    }

    void tooLargeReplyBecomesAnError()
    {
        EVSingleInstance instance(identifier);
        QCOMPARE(instance.claim(), EVSingleInstance::Claim::Primary);
        connect(&instance, &EVSingleInstance::requestReceived, this,
                [](const QJsonObject &, const EVInstanceReplier &replier) {
                    replier.reply(
                        {{QStringLiteral("blob"), QString(EVInstanceMessage::maximumSize, u'b')}});
                });
        Peer later({QStringLiteral("send"), identifier, QStringLiteral(R"({"command":"export"})")});
        QCOMPARE(later.nextLine(), QByteArray(R"(reply {"error":"reply too large"})"));
        QCOMPARE(later.exitCode(), 0);
    }

    void laterLaunchRefusesToSendATooLargeRequest()
    {
        EVSingleInstance instance(identifier);
        const EVSingleInstance::Answer answer = instance.sendRequest(
            {{QStringLiteral("blob"), QString(EVInstanceMessage::maximumSize, u'b')}},
            EVSingleInstance::ReplyWanted::Yes);
        QVERIFY(!answer.delivered);
        QCOMPARE(answer.errorString, QStringLiteral("request too large"));
    }
};

TALLYVANE_TEST_MAIN(TestEVSingleInstance)
#include "tst_evsingleinstance.moc"
