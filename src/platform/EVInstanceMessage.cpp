#include "platform/EVInstanceMessage.h"

#include <QJsonDocument>
#include <QJsonParseError>

namespace EVInstanceMessage {

QByteArray encode(const QJsonObject &message)
{
    QByteArray line = QJsonDocument(message).toJson(QJsonDocument::Compact);
    line.append('\n');
    if (line.size() > maximumSize)
        return QByteArray();
    return line;
}

std::optional<QJsonObject> decode(const QByteArray &line, QString *error)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(line, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        if (error)
            *error = QStringLiteral("not JSON: %1").arg(parseError.errorString());
        return std::nullopt;
    }
    if (!document.isObject()) {
        if (error)
            *error = QStringLiteral("not a JSON object");
        return std::nullopt;
    }
    return document.object();
}

QJsonObject error(const QString &text)
{
    return QJsonObject{{QStringLiteral("error"), text}};
}

} // namespace EVInstanceMessage
