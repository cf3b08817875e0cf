#include "TestEnvironment.h"

#include "core/EVClock.h"
#include "platform/EVPaths.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QSettings>
#include <QStandardPaths>
#include <qpa/qplatformnativeinterface.h>

namespace {
const char *const isolatedVariables[] = {
    "HOME",           "XDG_CONFIG_HOME", "XDG_DATA_HOME",   "XDG_CACHE_HOME",
    "XDG_STATE_HOME", "XDG_DATA_DIRS",   "XDG_CONFIG_DIRS", "XDG_RUNTIME_DIR"};

std::optional<QByteArray> currentValue(const char *name)
{
    if (!qEnvironmentVariableIsSet(name))
        return std::nullopt;
    return qgetenv(name);
}

void restore(const QByteArray &name, const std::optional<QByteArray> &value)
{
    if (value)
        qputenv(name.constData(), *value);
    else
        qunsetenv(name.constData());
}
} // namespace

TestHome::TestHome()
{
    for (const char *name : isolatedVariables)
        m_saved.insert(name, currentValue(name));
    qputenv("HOME", m_dir.path().toUtf8());
    for (const char *name : isolatedVariables) {
        if (qstrcmp(name, "HOME") != 0)
            qunsetenv(name);
    }
    // The lock and the socket of the single instance live here: a test's instance never meets
    // the user's running Tallyvane, nor another test's.
    const QString runtime = runtimePath();
    QDir().mkpath(runtime);
    QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("XDG_RUNTIME_DIR", runtime.toUtf8());
    followConfigLocation();
}

TestHome::~TestHome()
{
    for (auto it = m_saved.cbegin(); it != m_saved.cend(); ++it)
        restore(it.key(), it.value());
    followConfigLocation();
}

void TestHome::followConfigLocation()
{
    // QSettings looks its folder up once per process; it has to be told that HOME moved.
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, config);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, config);
}

QString TestHome::documentsPath() const
{
    return EVPaths::documentsDirectory();
}

QString TestHome::pictureFolderPath() const
{
    return documentsPath() + QStringLiteral("/imagedata");
}

QString TestHome::applicationFilesPath() const
{
    return EVPaths::applicationFilesDirectory();
}

QString TestHome::storeFilePath() const
{
    return applicationFilesPath() + QStringLiteral("/TallyWidgets.storedata");
}

QByteArray fileContents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

ScopedEnvironment::ScopedEnvironment(const char *name, const QByteArray &value)
    : m_name(name)
    , m_previous(currentValue(name))
{
    qputenv(name, value);
}

ScopedEnvironment::~ScopedEnvironment()
{
    restore(m_name, m_previous);
}

PinnedClock::PinnedClock(const QDateTime &instant)
{
    EVClock::pin(instant);
}

PinnedClock::~PinnedClock()
{
    EVClock::unpin();
}

QDateTime localDateTime(int year, int month, int day, int hour, int minute, int second)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second));
}

bool setOffscreenScreenSize(int width, int height)
{
    if (QGuiApplication::platformName() != QLatin1String("offscreen"))
        return false;
    using SetConfiguration = void (*)(const QJsonObject &, QPlatformNativeInterface *);
    QPlatformNativeInterface *native = QGuiApplication::platformNativeInterface();
    // The offscreen platform hands this function out as a plain pointer.
    auto setConfiguration = reinterpret_cast<SetConfiguration>(
        native->nativeResourceForIntegration("setConfiguration"));
    if (!setConfiguration)
        return false;
    QJsonObject screen{{QStringLiteral("name"), QStringLiteral("OffscreenMain")},
                       {QStringLiteral("x"), 0},
                       {QStringLiteral("y"), 0},
                       {QStringLiteral("width"), width},
                       {QStringLiteral("height"), height},
                       {QStringLiteral("logicalDpi"), 96},
                       {QStringLiteral("logicalBaseDpi"), 96},
                       {QStringLiteral("dpr"), 1}};
    setConfiguration(QJsonObject{{QStringLiteral("screens"), QJsonArray{screen}}}, native);
    QCoreApplication::processEvents();
    return true;
}
