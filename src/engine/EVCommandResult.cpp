#include "engine/EVCommandResult.h"

#include <array>
#include <utility>

namespace {

const std::array<std::pair<EVCommandResult::Status, const char *>, 3> statusNames{{
    {EVCommandResult::Status::Done, "done"},
    {EVCommandResult::Status::BadInput, "bad-input"},
    {EVCommandResult::Status::Usage, "usage"},
}};

} // namespace

QJsonObject EVCommandResult::toJson() const
{
    QJsonObject json;
    for (const auto &[value, name] : statusNames) {
        if (value == status)
            json.insert(QStringLiteral("status"), QLatin1String(name));
    }
    json.insert(QStringLiteral("exitCode"), exitCode());
    json.insert(QStringLiteral("message"), message);
    json.insert(QStringLiteral("output"), output);
    if (!fileContent.isNull())
        json.insert(QStringLiteral("fileContent"), fileContent);
    return json;
}

EVCommandResult EVCommandResult::fromJson(const QJsonObject &json)
{
    const QString status = json.value(QLatin1String("status")).toString();
    for (const auto &[value, name] : statusNames) {
        if (status != QLatin1String(name))
            continue;
        EVCommandResult result;
        result.status = value;
        result.message = json.value(QLatin1String("message")).toString();
        result.output = json.value(QLatin1String("output")).toString();
        const QJsonValue content = json.value(QLatin1String("fileContent"));
        if (content.isString())
            result.fileContent = content.toString();
        return result;
    }
    return badInput(QStringLiteral("The running Tallyvane gave an answer that cannot be read."));
}
