#pragma once

#include <QJsonObject>
#include <QPointer>

class EVInstanceConnection;

// Answers one request that a later launch sent to the running instance. Copies may be kept and
// used later (after a dialog, say); the first reply wins, and replying after the asking process
// went away does nothing.
class EVInstanceReplier
{
public:
    EVInstanceReplier() = default;
    explicit EVInstanceReplier(EVInstanceConnection *connection);

    void reply(const QJsonObject &answer) const;

    // Whether the asking process still waits for this reply.
    bool isWaiting() const;

private:
    QPointer<EVInstanceConnection> m_connection;
};
