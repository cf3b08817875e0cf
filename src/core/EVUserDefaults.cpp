#include "core/EVUserDefaults.h"

namespace EVUserDefaults {

std::unique_ptr<QSettings> open()
{
    return std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
                                       QStringLiteral("velto"), QStringLiteral("Tallyvane"));
}

int integerForKey(const QString &key)
{
    bool isNumber = false;
    const int value = open()->value(key).toInt(&isNumber);
    return isNumber ? value : 0;
}

void setInteger(const QString &key, int value)
{
    const std::unique_ptr<QSettings> settings = open();
    settings->setValue(key, value);
    settings->sync();
}

} // namespace EVUserDefaults
