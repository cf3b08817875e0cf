#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <optional>

// How a later launch and the running instance talk: every message is one JSON object in compact
// form on one line, ended by '\n', at most maximumSize bytes with the newline. Compact JSON
// escapes newlines inside strings, so a line is always exactly one message.
namespace EVInstanceMessage {

inline constexpr qsizetype maximumSize = 1024 * 1024;

// The message as one line; an empty array when it would be longer than maximumSize.
QByteArray encode(const QJsonObject &message);

// The object on the line (the newline already taken off); none with the reason when the line
// is not one JSON object.
std::optional<QJsonObject> decode(const QByteArray &line, QString *error);

// The answer to a request that could not be served.
QJsonObject error(const QString &text);

} // namespace EVInstanceMessage
