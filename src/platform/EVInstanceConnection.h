#pragma once

#include "platform/EVInstanceReplier.h"

#include <QByteArray>
#include <QJsonObject>
#include <QObject>
#include <QTimer>

#include <chrono>

class QLocalSocket;

// The running instance's side of one connection from a later launch: reads one request line,
// hands it on, and writes the one reply. Whatever the other side sends (too much, garbage,
// nothing at all) ends in an error reply and a closed connection, never in unbounded memory.
// Deletes itself once the connection is closed.
class EVInstanceConnection : public QObject
{
    Q_OBJECT

public:
    // Takes the socket over as a child.
    EVInstanceConnection(QLocalSocket *socket, std::chrono::milliseconds requestTimeout,
                         QObject *parent = nullptr);

    // Starts reading, and the time the other side has to send its request.
    void start();

    // Writes the answer and closes the connection; only the first reply counts.
    void reply(const QJsonObject &answer);
    bool hasReplied() const { return m_replied; }

Q_SIGNALS:
    void requestReceived(const QJsonObject &request, const EVInstanceReplier &replier);

private Q_SLOTS:
    void onReadyRead();
    void onDisconnected();
    void onRequestTimeout();

private:
    void takeRequest(const QByteArray &line);

    QLocalSocket *m_socket;
    QTimer m_requestTimer;
    QByteArray m_buffer;
    bool m_requestTaken = false;
    bool m_replied = false;
};
