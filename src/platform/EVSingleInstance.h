#pragma once

#include "platform/EVInstanceReplier.h"

#include <QJsonObject>
#include <QObject>
#include <QString>

#include <chrono>
#include <memory>

class QLocalServer;
class QLockFile;

// One running instance per user. The first launch takes a lock file and listens on a local
// socket, both in the user's private runtime folder; a later launch finds the lock taken, sends
// its request to the running instance over the socket, reads the reply if it wants one, and
// exits. A lock left by a killed instance is taken over.
//
// Each connection carries one request and one reply, each a JSON object on one line
// (EVInstanceMessage). What a request means is up to the receiver of requestReceived, which must
// answer every request exactly once, now or later; failures are answered as {"error": text}.
class EVSingleInstance : public QObject
{
    Q_OBJECT

public:
    enum class Claim { Primary, AnotherInstanceRuns, Failed };
    enum class ReplyWanted { No, Yes };

    struct Answer
    {
        bool delivered = false;
        QJsonObject reply;
        QString errorString;
    };

    // The identifier names the lock file and the socket; the folder is looked up here, so
    // that it follows the environment at the time the object is made.
    explicit EVSingleInstance(const QString &identifier, QObject *parent = nullptr);
    ~EVSingleInstance() override;

    QString lockFilePath() const { return m_lockFilePath; }
    QString socketPath() const { return m_socketPath; }

    // Becomes the running instance, or finds out that another one runs. Failed means neither
    // could be established (errorString says why).
    Claim claim();
    QString errorString() const { return m_errorString; }

    // From a later launch: hands the request to the running instance. With a reply wanted,
    // waits for it; a reply that is an error object still counts as delivered.
    Answer sendRequest(const QJsonObject &request, ReplyWanted replyWanted) const;

    // How long a later launch waits for the running instance (to accept, to reply), and how long
    // the running instance waits for a connected launch to send its request. 5 seconds.
    void setTimeout(std::chrono::milliseconds timeout) { m_timeout = timeout; }

Q_SIGNALS:
    void requestReceived(const QJsonObject &request, const EVInstanceReplier &replier);

private Q_SLOTS:
    void onNewConnection();
    void onConnectionRequest(const QJsonObject &request, const EVInstanceReplier &replier);

private:
    bool listen();

    QString m_lockFilePath;
    QString m_socketPath;
    std::unique_ptr<QLockFile> m_lock;
    QLocalServer *m_server = nullptr;
    QString m_errorString;
    std::chrono::milliseconds m_timeout{5000};
};
