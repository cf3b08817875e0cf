#pragma once

#include <QString>

// A failure as reported to the user and the log: where it came from, its code and its texts.
struct EVError
{
    QString domain;
    int code = 0;
    QString localizedDescription;
    QString localizedFailureReason;
};

// The domain of the store's own errors; its wording is the application's own and is kept.
inline const QString EVStoreErrorDomain = QStringLiteral("YOUR_ERROR_DOMAIN");
// Failures of the file system and of the SQLite file.
inline const QString EVFileErrorDomain = QStringLiteral("com.velto.tallyvane.files");
inline const QString EVDatabaseErrorDomain = QStringLiteral("com.velto.tallyvane.store");
