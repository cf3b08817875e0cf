#pragma once

#include <QSettings>
#include <QString>

#include <memory>

// The user defaults: small values of the whole application in the user's settings file, in the
// native format under organisation "velto" and application "Tallyvane", keys exactly as named.
class EVUserDefaults : public QSettings
{
public:
    explicit EVUserDefaults(QObject *parent = nullptr);

    // How many times the application was launched; the shell counts, others read it.
    static inline const QString appLaunchTimesKey = QStringLiteral("AppLaunchTimes");

    static std::unique_ptr<EVUserDefaults> open();

    // The integer under key; 0 when there is none or it is not a whole number.
    static int integerForKey(const QString &key);
    // Stores value under key and writes the file at once.
    static void setInteger(const QString &key, int value);
};

// Set once the widgets of the earlier generation have been brought over.
inline const QString EVTransferOldDataKey = QStringLiteral("TransferOldData");
// The earlier generation's widgets: the bytes of a keyed archive. The import reads it and
// leaves it in place.
inline const QString EVLegacyWidgetsKey = QStringLiteral("widgets");
