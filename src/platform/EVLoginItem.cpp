#include "platform/EVLoginItem.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

namespace {

// Characters that make an Exec argument need double quotes.
constexpr QStringView reservedCharacters = u" \t\n\"'\\><~|&;$*?#()`";

// An Exec argument: quoted when it holds reserved characters, with '"', '`', '$' and '\'
// escaped inside the quotes, and '%' doubled, since a single one starts a field code.
QString execArgument(const QString &argument)
{
    QString escaped;
    bool needsQuotes = argument.isEmpty();
    for (const QChar c : argument) {
        if (reservedCharacters.contains(c))
            needsQuotes = true;
        if (c == u'%')
            escaped += QStringLiteral("%%");
        else if (c == u'"' || c == u'`' || c == u'$' || c == u'\\')
            escaped += QLatin1Char('\\') + c;
        else
            escaped += c;
    }
    if (!needsQuotes)
        return escaped;
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

// A value of type string: backslashes and control characters escaped.
QString stringValue(const QString &value)
{
    QString escaped;
    for (const QChar c : value) {
        if (c == u'\\')
            escaped += QStringLiteral("\\\\");
        else if (c == u'\n')
            escaped += QStringLiteral("\\n");
        else if (c == u'\t')
            escaped += QStringLiteral("\\t");
        else if (c == u'\r')
            escaped += QStringLiteral("\\r");
        else
            escaped += c;
    }
    return escaped;
}

} // namespace

EVLoginItem::EVLoginItem(const QString &applicationName, const QString &executablePath)
    : m_applicationName(applicationName)
    , m_executablePath(executablePath)
{}

QString EVLoginItem::entryPath()
{
    QString configHome = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (!QDir::isAbsolutePath(configHome))
        configHome = QDir::homePath() + QStringLiteral("/.config");
    return configHome + QStringLiteral("/autostart/") + identifier + QStringLiteral(".desktop");
}

bool EVLoginItem::isEnabled() const
{
    QFile file(entryPath());
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    bool inMainGroup = false;
    bool hasMainGroup = false;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (line.startsWith(QLatin1Char('['))) {
            inMainGroup = line == QStringLiteral("[Desktop Entry]");
            hasMainGroup = hasMainGroup || inMainGroup;
            continue;
        }
        if (!inMainGroup)
            continue;
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (equals < 0)
            continue;
        const QString key = line.left(equals).trimmed();
        const QString value = line.mid(equals + 1).trimmed();
        // How session settings of the desktops switch an entry off without removing it.
        if (key == QStringLiteral("Hidden") && value == QStringLiteral("true"))
            return false;
        if (key == QStringLiteral("X-GNOME-Autostart-enabled") && value == QStringLiteral("false"))
            return false;
    }
    return hasMainGroup;
}

bool EVLoginItem::setEnabled(bool enabled)
{
    m_errorString.clear();
    return enabled ? writeEntry() : removeEntry();
}

QString EVLoginItem::execCommand() const
{
    const QFileInfo executable(m_executablePath);
    const QString canonical = executable.canonicalFilePath();
    const QString onPath = QStandardPaths::findExecutable(executable.fileName());
    if (!canonical.isEmpty() && !onPath.isEmpty() &&
        QFileInfo(onPath).canonicalFilePath() == canonical)
        return execArgument(executable.fileName());
    return execArgument(executable.absoluteFilePath());
}

QByteArray EVLoginItem::entryContents() const
{
    const QString entry = QStringLiteral("[Desktop Entry]\n"
                                         "Type=Application\n"
                                         "Name=%1\n"
                                         "Exec=%2\n"
                                         "Icon=com.velto.tallyvane\n"
                                         "Terminal=false\n"
                                         "X-GNOME-Autostart-enabled=true\n")
                              .arg(stringValue(m_applicationName), stringValue(execCommand()));
    return entry.toUtf8();
}

bool EVLoginItem::writeEntry()
{
    const QString path = entryPath();
    const QString folder = QFileInfo(path).path();
    if (!QDir().mkpath(folder)) {
        m_errorString = QStringLiteral("cannot create the folder %1").arg(folder);
        return false;
    }
    // QSaveFile writes a temporary file beside the entry and renames it over the entry on
    // commit: the entry is never seen half written, and a failure keeps the old one.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        m_errorString = QStringLiteral("cannot write %1: %2").arg(path, file.errorString());
        return false;
    }
    file.write(entryContents());
    if (!file.commit()) {
        m_errorString = QStringLiteral("cannot write %1: %2").arg(path, file.errorString());
        return false;
    }
    return true;
}

bool EVLoginItem::removeEntry()
{
    const QString path = entryPath();
    QFile file(path);
    if (!QFileInfo(path).exists() && !QFileInfo(path).isSymLink())
        return true;
    if (!file.remove()) {
        m_errorString = QStringLiteral("cannot remove %1: %2").arg(path, file.errorString());
        return false;
    }
    return true;
}
