#pragma once

#include <QByteArray>
#include <QString>

class QSettings;

// A preferences file of the earlier generation: a property list, binary or XML, whose "widgets"
// key holds the keyed archive of its widgets as bytes. Bringing one into the settings makes the
// next launch import its widgets.
class EVLegacyPreferencesFile
{
public:
    enum class Result {
        Imported,
        // The import already ran once; it never runs again.
        AlreadyImported,
        Unreadable,
        NoWidgetsArchive,
        SettingsNotWritten,
    };

    // The bytes under "widgets" when the contents are such a file and those bytes are a keyed
    // archive of a collection; none otherwise.
    static QByteArray widgetsArchive(const QByteArray &contents);

    // Copies the file's "widgets" archive into the settings. Refuses, changing nothing, when
    // "TransferOldData" is already set or the file holds no "widgets" archive. The message is
    // one line for the user, whatever the result.
    static Result importIntoSettings(const QString &path, QString *message);
    static Result importIntoSettings(const QString &path, QSettings &settings, QString *message);
};
