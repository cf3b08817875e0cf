#include "core/EVUserDefaults.h"

EVUserDefaults::EVUserDefaults(QObject *parent)
    : QSettings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("velto"),
                QStringLiteral("Tallyvane"), parent)
{}

std::unique_ptr<EVUserDefaults> EVUserDefaults::open()
{
    return std::make_unique<EVUserDefaults>();
}

int EVUserDefaults::integerForKey(const QString &key)
{
    bool isNumber = false;
    const int value = EVUserDefaults().value(key).toInt(&isNumber);
    return isNumber ? value : 0;
}

void EVUserDefaults::setInteger(const QString &key, int value)
{
    EVUserDefaults defaults;
    defaults.setValue(key, value);
    defaults.sync();
}
