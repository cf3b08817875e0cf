#pragma once

#include <QByteArray>
#include <QString>

// Open at login: an XDG autostart entry named after the login helper's identifier, whose command
// starts this executable. Enabling writes the entry to a temporary name and renames it into
// place; disabling removes it; the state is read back from the file, so that a desktop's own
// session settings are honoured. A failed change leaves the previous entry as it was.
class EVLoginItem
{
public:
    static inline const QString identifier = QStringLiteral("com.velto.tallyhelper");

    // The name the entry shows in session settings, and the executable it starts.
    EVLoginItem(const QString &applicationName, const QString &executablePath);

    // $XDG_CONFIG_HOME/autostart/<identifier>.desktop, with ~/.config when XDG_CONFIG_HOME is
    // unset or not absolute. Looked up on every call.
    static QString entryPath();

    // True when the entry exists and is a desktop entry that is not hidden or switched off.
    bool isEnabled() const;

    // Writes or removes the entry; false, with errorString() saying why, when that failed.
    bool setEnabled(bool enabled);
    QString errorString() const { return m_errorString; }

    // The entry's Exec value: the executable's name when that name on PATH is this same file
    // (so that the entry survives upgrades that move the file behind it), its absolute path
    // otherwise; quoted and escaped as desktop entries require.
    QString execCommand() const;
    QByteArray entryContents() const;

private:
    bool writeEntry();
    bool removeEntry();

    QString m_applicationName;
    QString m_executablePath;
    QString m_errorString;
};
