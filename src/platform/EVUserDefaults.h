#pragma once

#include <QSettings>

// The user defaults: the application's settings in the native format, under organisation
// "velto" and application "Tallyvane", with their keys exactly as named.
class EVUserDefaults : public QSettings
{
public:
    explicit EVUserDefaults(QObject *parent = nullptr);
};

// Set once the widgets of the earlier generation have been brought over.
inline const QString EVTransferOldDataKey = QStringLiteral("TransferOldData");
// The earlier generation's widgets: the bytes of a keyed archive. The import reads it and
// leaves it in place.
inline const QString EVLegacyWidgetsKey = QStringLiteral("widgets");
