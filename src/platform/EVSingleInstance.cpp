#include "platform/EVSingleInstance.h"

#include "platform/EVInstanceConnection.h"
#include "platform/EVInstanceMessage.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QMetaMethod>
#include <QStandardPaths>
#include <QThread>

EVSingleInstance::EVSingleInstance(const QString &identifier, QObject *parent)
    : QObject(parent)
{
    // The runtime folder belongs to the user alone, so the names need no user part.
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    m_lockFilePath = folder + QLatin1Char('/') + identifier + QStringLiteral(".lock");
    m_socketPath = folder + QLatin1Char('/') + identifier + QStringLiteral(".socket");
}

EVSingleInstance::~EVSingleInstance()
{
    // The socket goes before the lock, so that whoever takes the lock next finds no listener.
    if (m_server)
        m_server->close();
}

EVSingleInstance::Claim EVSingleInstance::claim()
{
    if (m_server)
        return Claim::Primary;
    m_errorString.clear();
    if (!QDir().mkpath(QFileInfo(m_lockFilePath).path())) {
        m_errorString = QStringLiteral("cannot create the folder of %1").arg(m_lockFilePath);
        return Claim::Failed;
    }
    m_lock = std::make_unique<QLockFile>(m_lockFilePath);
    // Age alone never makes the lock stale, only a dead holder: by default a lock older than
    // 30 seconds counts as stale wherever the holder's file lock cannot be seen (network file
    // systems), which would hand a long-running instance's lock to the next launch.
    m_lock->setStaleLockTime(0);
    if (!m_lock->tryLock(0)) {
        const QLockFile::LockError error = m_lock->error();
        m_lock.reset();
        if (error == QLockFile::LockFailedError)
            return Claim::AnotherInstanceRuns;
        m_errorString = QStringLiteral("cannot create the lock file %1").arg(m_lockFilePath);
        return Claim::Failed;
    }
    if (!listen()) {
        m_lock.reset();
        return Claim::Failed;
    }
    return Claim::Primary;
}

bool EVSingleInstance::listen()
{
    // Whoever holds the lock owns the name: a socket file still there was left by a killed
    // instance, and listen() is documented to fail on it.
    QLocalServer::removeServer(m_socketPath);
    auto *server = new QLocalServer(this);
    server->setSocketOptions(QLocalServer::UserAccessOption);
    if (!server->listen(m_socketPath)) {
        m_errorString =
            QStringLiteral("cannot listen on %1: %2").arg(m_socketPath, server->errorString());
        delete server;
        return false;
    }
    m_server = server;
    connect(m_server, &QLocalServer::newConnection, this, &EVSingleInstance::onNewConnection);
    return true;
}

void EVSingleInstance::onNewConnection()
{
    while (QLocalSocket *socket = m_server->nextPendingConnection()) {
        auto *connection = new EVInstanceConnection(socket, m_timeout, this);
        connect(connection, &EVInstanceConnection::requestReceived, this,
                &EVSingleInstance::onConnectionRequest);
        connection->start();
    }
}

void EVSingleInstance::onConnectionRequest(const QJsonObject &request,
                                           const EVInstanceReplier &replier)
{
    if (!isSignalConnected(QMetaMethod::fromSignal(&EVSingleInstance::requestReceived))) {
        replier.reply(EVInstanceMessage::error(QStringLiteral("request not handled")));
        return;
    }
    Q_EMIT requestReceived(request, replier);
}

EVSingleInstance::Answer EVSingleInstance::sendRequest(const QJsonObject &request,
                                                       ReplyWanted replyWanted) const
{
    Answer answer;
    const QByteArray line = EVInstanceMessage::encode(request);
    if (line.isEmpty()) {
        answer.errorString = QStringLiteral("request too large");
        return answer;
    }
    const QDeadlineTimer deadline(m_timeout);
    QLocalSocket socket;
    // The running instance takes its lock a moment before it listens; keep trying until then.
    for (;;) {
        socket.connectToServer(m_socketPath);
        if (socket.waitForConnected(int(deadline.remainingTime())))
            break;
        if (deadline.hasExpired()) {
            answer.errorString = QStringLiteral("the running instance does not answer: %1")
                                     .arg(socket.errorString());
            return answer;
        }
        QThread::msleep(50);
    }
    socket.write(line);
    while (socket.bytesToWrite() > 0) {
        if (!socket.waitForBytesWritten(int(deadline.remainingTime()))) {
            answer.errorString =
                QStringLiteral("the request was not taken: %1").arg(socket.errorString());
            return answer;
        }
    }
    if (replyWanted == ReplyWanted::No) {
        socket.disconnectFromServer();
        answer.delivered = true;
        return answer;
    }
    QByteArray buffer;
    qsizetype newline = -1;
    while (newline < 0) {
        if (buffer.size() >= EVInstanceMessage::maximumSize) {
            answer.errorString = QStringLiteral("reply too large");
            return answer;
        }
        if (socket.bytesAvailable() == 0 &&
            !socket.waitForReadyRead(int(deadline.remainingTime()))) {
            answer.errorString = QStringLiteral("no reply: %1").arg(socket.errorString());
            return answer;
        }
        const qsizetype start = buffer.size();
        buffer.append(socket.read(EVInstanceMessage::maximumSize - buffer.size()));
        newline = buffer.indexOf('\n', start);
    }
    QString error;
    const std::optional<QJsonObject> reply =
        EVInstanceMessage::decode(buffer.left(newline), &error);
    if (!reply) {
        answer.errorString = QStringLiteral("unreadable reply: %1").arg(error);
        return answer;
    }
    answer.delivered = true;
    answer.reply = *reply;
    return answer;
}
