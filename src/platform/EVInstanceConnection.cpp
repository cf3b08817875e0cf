#include "platform/EVInstanceConnection.h"

#include "platform/EVInstanceMessage.h"

#include <QLocalSocket>

EVInstanceConnection::EVInstanceConnection(QLocalSocket *socket,
                                           std::chrono::milliseconds requestTimeout,
                                           QObject *parent)
    : QObject(parent)
    , m_socket(socket)
{
    m_socket->setParent(this);
    m_requestTimer.setSingleShot(true);
    m_requestTimer.setInterval(requestTimeout);
    connect(m_socket, &QLocalSocket::readyRead, this, &EVInstanceConnection::onReadyRead);
    connect(m_socket, &QLocalSocket::disconnected, this, &EVInstanceConnection::onDisconnected);
    connect(&m_requestTimer, &QTimer::timeout, this, &EVInstanceConnection::onRequestTimeout);
}

void EVInstanceConnection::start()
{
    m_requestTimer.start();
    if (m_socket->bytesAvailable() > 0)
        onReadyRead();
    else if (m_socket->state() == QLocalSocket::UnconnectedState)
        onDisconnected();
}

void EVInstanceConnection::reply(const QJsonObject &answer)
{
    if (m_replied)
        return;
    m_replied = true;
    m_requestTimer.stop();
    if (m_socket->state() != QLocalSocket::ConnectedState)
        return;
    QByteArray line = EVInstanceMessage::encode(answer);
    if (line.isEmpty())
        line =
            EVInstanceMessage::encode(EVInstanceMessage::error(QStringLiteral("reply too large")));
    m_socket->write(line);
    // Closes once the reply is written.
    m_socket->disconnectFromServer();
}

void EVInstanceConnection::onReadyRead()
{
    // One request per connection: whatever follows it, or follows a refusal, is dropped unread.
    if (m_requestTaken) {
        m_socket->skip(m_socket->bytesAvailable());
        return;
    }
    while (m_socket->bytesAvailable() > 0) {
        const qsizetype room = EVInstanceMessage::maximumSize - m_buffer.size();
        const qsizetype start = m_buffer.size();
        m_buffer.append(m_socket->read(room));
        const qsizetype newline = m_buffer.indexOf('\n', start);
        if (newline >= 0) {
            takeRequest(m_buffer.left(newline));
            return;
        }
        if (m_buffer.size() >= EVInstanceMessage::maximumSize) {
            m_requestTaken = true;
            m_buffer.clear();
            reply(EVInstanceMessage::error(QStringLiteral("request too large")));
            m_socket->skip(m_socket->bytesAvailable());
            return;
        }
    }
}

void EVInstanceConnection::takeRequest(const QByteArray &line)
{
    m_requestTaken = true;
    m_requestTimer.stop();
    m_buffer.clear();
    m_socket->skip(m_socket->bytesAvailable());
    QString error;
    const std::optional<QJsonObject> request = EVInstanceMessage::decode(line, &error);
    if (!request) {
        reply(EVInstanceMessage::error(error));
        return;
    }
    Q_EMIT requestReceived(*request, EVInstanceReplier(this));
}

void EVInstanceConnection::onDisconnected()
{
    m_requestTimer.stop();
    deleteLater();
}

void EVInstanceConnection::onRequestTimeout()
{
    if (!m_requestTaken) {
        m_requestTaken = true;
        reply(EVInstanceMessage::error(QStringLiteral("no request received in time")));
    }
}
