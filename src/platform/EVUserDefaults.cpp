#include "platform/EVUserDefaults.h"

EVUserDefaults::EVUserDefaults(QObject *parent)
    : QSettings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("velto"),
                QStringLiteral("Tallyvane"), parent)
{}
