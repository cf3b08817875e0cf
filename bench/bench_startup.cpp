// Start-up and idle memory of the built program on an X display with a window manager, measured
// from outside as a user sees it: the time from starting tallyvane to every stored widget window
// mapped, with 50 widgets stored, read from the X server's map notices on the root window; and
// its resident memory after a minute idle with 10 and with 50 widgets (VmRSS of /proc/PID/status).
//
//   DISPLAY=:N bench_startup [RUNS] [IDLE_SECONDS]     5 runs and 60 seconds unless given
#include "ExampleWidgets.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <poll.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr int timeoutMilliseconds = 60000;

// A HOME of its own with count example widgets stored, for the program and for this process.
class SeededHome
{
public:
    explicit SeededHome(int count)
    {
        qputenv("HOME", m_dir.path().toUtf8());
        QDir().mkpath(runtimeFolder());
        QFile::setPermissions(runtimeFolder(),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QString message;
        m_ready = ExampleWidgets::save(count, &message);
        if (!m_ready)
            std::fprintf(stderr, "%s\n", qPrintable(message));
    }

    bool isReady() const { return m_ready; }

    QProcessEnvironment environment() const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), m_dir.path());
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_dir.path() + "/.config");
        environment.insert(QStringLiteral("XDG_DATA_HOME"), m_dir.path() + "/.local/share");
        environment.insert(QStringLiteral("XDG_CACHE_HOME"), m_dir.path() + "/.cache");
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtimeFolder());
        return environment;
    }

private:
    QString runtimeFolder() const { return m_dir.path() + QStringLiteral("/runtime"); }

    QTemporaryDir m_dir;
    bool m_ready = false;
};

// Windows that come on screen, as the X server reports them: a map notice on the root window for
// each top-level window (or the window manager's frame around it). Watching the notices costs
// the program under test nothing, where polling the window list would compete with it.
class MapWatcher
{
public:
    MapWatcher()
        : m_connection(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(m_connection))
            return;
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
        const uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(m_connection, root, XCB_CW_EVENT_MASK, &mask);
        xcb_flush(m_connection);
    }
    ~MapWatcher() { xcb_disconnect(m_connection); }
    MapWatcher(const MapWatcher &) = delete;
    MapWatcher &operator=(const MapWatcher &) = delete;

    bool isConnected() const { return !xcb_connection_has_error(m_connection); }

    // Waits until count more windows managed by the window manager have been mapped, for at most
    // the timeout; the clock's readings when the first and the last of them came.
    bool waitForMaps(int count, const QElapsedTimer &clock, double *first, double *last)
    {
        int seen = 0;
        pollfd descriptor{xcb_get_file_descriptor(m_connection), POLLIN, 0};
        while (seen < count && clock.elapsed() < timeoutMilliseconds) {
            xcb_generic_event_t *event = xcb_poll_for_event(m_connection);
            if (!event) {
                poll(&descriptor, 1, 50);
                continue;
            }
            if ((event->response_type & 0x7f) == XCB_MAP_NOTIFY &&
                !reinterpret_cast<xcb_map_notify_event_t *>(event)->override_redirect) {
                const double now = double(clock.nsecsElapsed()) / 1e6;
                if (seen++ == 0)
                    *first = now;
                *last = now;
            }
            std::free(event);
        }
        return seen == count;
    }

private:
    xcb_connection_t *m_connection;
};

// The windows of the process that are on screen now, as xdotool finds them. Widget windows are
// named after their events, so they are told from others by their count alone: with widgets
// stored, the program shows no other window.
int mappedWindows(qint64 pid)
{
    QProcess search;
    search.start(QStringLiteral("xdotool"),
                 {QStringLiteral("search"), QStringLiteral("--all"),
                  QStringLiteral("--onlyvisible"), QStringLiteral("--pid"), QString::number(pid),
                  QStringLiteral("--name"), QString()});
    search.waitForFinished();
    return int(search.readAllStandardOutput().count('\n'));
}

// CPU time (user and system) the process has used so far.
double cpuMilliseconds(qint64 pid)
{
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!stat.open(QIODevice::ReadOnly))
        return -1;
    // The fields after the command name, which is in parentheses and may hold spaces.
    const QByteArray line = stat.readAll();
    const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    const double ticks = fields.value(11).toDouble() + fields.value(12).toDouble();
    return ticks * 1000.0 / double(sysconf(_SC_CLK_TCK));
}

// A line of /proc/PID/status, in KiB.
long statusKilobytes(qint64 pid, const QByteArray &field)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(pid));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(field + ':'))
            return line.mid(field.size() + 1).trimmed().split(' ').value(0).toLong();
    }
    return -1;
}

// The program started under the home; ended with SIGTERM, as a session's end does.
class Run
{
public:
    explicit Run(const SeededHome &home)
    {
        m_process.setProcessEnvironment(home.environment());
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    }
    ~Run()
    {
        m_process.terminate();
        if (!m_process.waitForFinished(10000)) {
            m_process.kill();
            m_process.waitForFinished();
        }
    }

    // Starts the program and waits until count widget windows are mapped. Milliseconds from the
    // start to the first and to the last one; false when they did not all come, or when other
    // windows than the program's widgets came.
    bool startAndWaitForWidgets(int count, double *first, double *all)
    {
        MapWatcher watcher;
        if (!watcher.isConnected())
            return false;
        QElapsedTimer clock;
        clock.start();
        m_process.start(QStringLiteral(TALLYVANE_EXECUTABLE), QStringList());
        if (!m_process.waitForStarted())
            return false;
        return watcher.waitForMaps(count, clock, first, all) &&
               mappedWindows(m_process.processId()) == count;
    }

    qint64 pid() const { return m_process.processId(); }

private:
    QProcess m_process;
};

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0 : values.at(values.size() / 2);
}

int startup(int runs)
{
    constexpr int count = 50;
    SeededHome home(count);
    if (!home.isReady())
        return 1;
    std::printf("Start to all widgets mapped, %d widgets stored, %d runs:\n", count, runs);
    QList<double> firsts;
    QList<double> alls;
    for (int i = 0; i < runs; ++i) {
        Run run(home);
        double first = -1;
        double all = -1;
        if (!run.startAndWaitForWidgets(count, &first, &all)) {
            std::fprintf(stderr,
                         "the widgets did not all come within %d s, or other windows came\n",
                         timeoutMilliseconds / 1000);
            return 1;
        }
        const double cpu = cpuMilliseconds(run.pid());
        std::printf(
            "  run %d: first widget %6.1f ms, all %d %6.1f ms, program CPU by then %6.1f ms\n",
            i + 1, first, count, all, cpu);
        firsts.append(first);
        alls.append(all);
    }
    std::printf("  median: first widget %.1f ms, all %d %.1f ms\n", median(firsts), count,
                median(alls));
    return 0;
}

int idleMemory(int count, int seconds)
{
    SeededHome home(count);
    if (!home.isReady())
        return 1;
    Run run(home);
    double first = -1;
    double all = -1;
    if (!run.startAndWaitForWidgets(count, &first, &all))
        return 1;
    QThread::sleep(seconds);
    std::printf("%2d widgets, %d s idle: VmRSS %ld KiB (anonymous %ld, files %ld, shared memory "
                "%ld), peak VmHWM %ld KiB\n",
                count, seconds, statusKilobytes(run.pid(), "VmRSS"),
                statusKilobytes(run.pid(), "RssAnon"), statusKilobytes(run.pid(), "RssFile"),
                statusKilobytes(run.pid(), "RssShmem"), statusKilobytes(run.pid(), "VmHWM"));
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    for (const char *name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
        qunsetenv(name);
    QApplication application(argc, argv);
    if (QGuiApplication::platformName() != QLatin1String("xcb")) {
        std::fputs("bench_startup needs an X display with a window manager (DISPLAY=:N)\n", stderr);
        return 2;
    }
    const QStringList arguments = QApplication::arguments();
    const int runs = std::max(1, arguments.value(1, QStringLiteral("5")).toInt());
    const int seconds = std::max(0, arguments.value(2, QStringLiteral("60")).toInt());
    if (const int failed = startup(runs))
        return failed;
    for (int count : {10, 50}) {
        if (const int failed = idleMemory(count, seconds))
            return failed;
    }
    return 0;
}
