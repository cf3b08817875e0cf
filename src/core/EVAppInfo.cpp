#include "core/EVAppInfo.h"

#include <QOperatingSystemVersion>
#include <QRegularExpression>
#include <QSysInfo>

#include <algorithm>

namespace EVAppInfo {
namespace {

int packedVersion(int major, int minor, int micro)
{
    const auto part = [](int value) { return std::clamp(value, 0, 15); };
    return (part(major) << 8) + (part(minor) << 4) + part(micro);
}

// Linux has no single system version: the distribution's release is preferred, the
// kernel's is the fallback.
int readSystemVersion()
{
    const QOperatingSystemVersion current = QOperatingSystemVersion::current();
    if (current.majorVersion() >= 0)
        return packedVersion(current.majorVersion(), std::max(current.minorVersion(), 0),
                             std::max(current.microVersion(), 0));

    static const QRegularExpression numbers(QStringLiteral("^(\\d+)(?:\\.(\\d+))?(?:\\.(\\d+))?"));
    for (const QString &text : {QSysInfo::productVersion(), QSysInfo::kernelVersion()}) {
        const QRegularExpressionMatch match = numbers.match(text);
        if (match.hasMatch())
            return packedVersion(match.captured(1).toInt(), match.captured(2).toInt(),
                                 match.captured(3).toInt());
    }
    return 0;
}

} // namespace

QString name()
{
    return QStringLiteral("Tallyvane");
}

QString version()
{
    return QStringLiteral(TALLYVANE_VERSION);
}

int systemVersion()
{
    static const int value = readSystemVersion();
    return value;
}

QString feedbackAddress()
{
    return QStringLiteral("feedback@velto.com");
}

} // namespace EVAppInfo
