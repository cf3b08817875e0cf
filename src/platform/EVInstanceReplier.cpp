#include "platform/EVInstanceReplier.h"

#include "platform/EVInstanceConnection.h"

EVInstanceReplier::EVInstanceReplier(EVInstanceConnection *connection)
    : m_connection(connection)
{}

void EVInstanceReplier::reply(const QJsonObject &answer) const
{
    if (m_connection)
        m_connection->reply(answer);
}

bool EVInstanceReplier::isWaiting() const
{
    return m_connection && !m_connection->hasReplied();
}
