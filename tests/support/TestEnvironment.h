#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QString>
#include <QTemporaryDir>

#include <optional>

// Points HOME at a fresh temporary folder and clears the XDG folder variables, so that
// settings, the store and pictures of a test never touch the user's files. Restores the
// previous environment when it goes; QSettings follows both moves.
class TestHome
{
public:
    TestHome();
    ~TestHome();
    TestHome(const TestHome &) = delete;
    TestHome &operator=(const TestHome &) = delete;

    QString path() const { return m_dir.path(); }
    // XDG_RUNTIME_DIR while the home is in use: private to the user, as the standard wants it.
    QString runtimePath() const { return m_dir.path() + QStringLiteral("/runtime"); }
    QString documentsPath() const;
    QString pictureFolderPath() const;
    QString applicationFilesPath() const;
    // Where the widget store keeps its file.
    QString storeFilePath() const;

private:
    static void followConfigLocation();

    QTemporaryDir m_dir;
    QHash<QByteArray, std::optional<QByteArray>> m_saved;
};

// A file's bytes; none when it cannot be read.
QByteArray fileContents(const QString &path);

// Sets an environment variable for the lifetime of the object.
class ScopedEnvironment
{
public:
    ScopedEnvironment(const char *name, const QByteArray &value);
    ~ScopedEnvironment();
    ScopedEnvironment(const ScopedEnvironment &) = delete;
    ScopedEnvironment &operator=(const ScopedEnvironment &) = delete;

private:
    QByteArray m_name;
    std::optional<QByteArray> m_previous;
};

// Pins the program's clock for the lifetime of the object.
class PinnedClock
{
public:
    explicit PinnedClock(const QDateTime &instant);
    ~PinnedClock();
    PinnedClock(const PinnedClock &) = delete;
    PinnedClock &operator=(const PinnedClock &) = delete;
};

// A wall-clock time in the process's own time zone.
QDateTime localDateTime(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);

// Resizes the offscreen platform's only screen (the main screen); false on other platforms.
bool setOffscreenScreenSize(int width, int height);
