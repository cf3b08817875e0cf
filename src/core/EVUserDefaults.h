#pragma once

#include <QSettings>
#include <QString>

#include <memory>

// The user defaults: small values of the whole application, kept in the user's settings file
// through QSettings (native format, organisation "velto", application "Tallyvane").
namespace EVUserDefaults {

// How many times the application was launched; the shell counts, others read it.
inline const QString appLaunchTimesKey = QStringLiteral("AppLaunchTimes");

// A QSettings on the user's settings file.
std::unique_ptr<QSettings> open();

// The integer under key; 0 when there is none or it is not a whole number.
int integerForKey(const QString &key);

// Stores value under key and writes the file at once.
void setInteger(const QString &key, int value);

} // namespace EVUserDefaults
