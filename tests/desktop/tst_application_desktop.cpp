// The built tallyvane program on a real X desktop with a window manager and a tray host, started
// as a user starts it and driven from outside with the pointer and the keyboard; what it did is
// read back from the X server and from the files it keeps.
#include "DesktopTools.h"
#include "SanitizerReport.h"
#include "TestMain.h"
#include "TrayPanel.h"

#include "controls/EVSegmentedControl.h"
#include "core/EVAppSetting.h"
#include "engine/EVWidgetsManager.h"
#include "platform/EVLoginItem.h"
#include "prefs/EVPerferenceController.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVWidgetEntry.h"

#include <QAbstractButton>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>

#include <memory>

namespace {

constexpr int startTimeout = 20000;
// Widget windows are named after their events, which these tests call "Event 1", "Event 2"...
const QString widgetWindowName = QStringLiteral("^Event [0-9]+$");
const QString preferencesWindowName = QStringLiteral("^Tallyvane Preferences$");
const QString aboutWindowName = QStringLiteral("^About Tallyvane$");

// The tray menu's items, top to bottom.
enum class MenuItem { About, Preferences, Quit };

// One run of the built program under the test's HOME, its XDG folders and its private runtime
// folder (where the single-instance lock lives). Ended by its process id when the object goes.
class Program
{
public:
    explicit Program(const QString &home)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), home);
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QStringLiteral("/.config"));
        environment.insert(QStringLiteral("XDG_DATA_HOME"), home + QStringLiteral("/.local/share"));
        environment.insert(QStringLiteral("XDG_CACHE_HOME"), home + QStringLiteral("/.cache"));
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtimeFolder(home));
        // As from a user's shell: the program picks its platform itself.
        environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::MergedChannels);
    }
    ~Program()
    {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.kill();
            m_process.waitForFinished(5000);
        }
    }
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    // The user's private runtime folder inside the test's HOME, as a login session makes it.
    static QString runtimeFolder(const QString &home)
    {
        const QString folder = home + QStringLiteral("/runtime");
        QDir().mkpath(folder);
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return folder;
    }

    // Starts it without that variable, as from a session that does not set it.
    void unsetVariable(const QString &name)
    {
        QProcessEnvironment environment = m_process.processEnvironment();
        environment.remove(name);
        m_process.setProcessEnvironment(environment);
    }

    bool start(const QStringList &arguments = {})
    {
        m_process.start(QStringLiteral(TALLYVANE_EXECUTABLE), arguments);
        return m_process.waitForStarted(startTimeout);
    }

    qint64 pid() const { return m_process.processId(); }
    bool isRunning() const { return m_process.state() == QProcess::Running; }

    bool waitForExit(int timeout = startTimeout)
    {
        return m_process.state() == QProcess::NotRunning || m_process.waitForFinished(timeout);
    }
    // Ended on its own with exit code 0, and no sanitizer found anything on the way (in a
    // sanitizer build).
    bool exitedCleanly()
    {
        const QString printed = output();
        return m_process.state() == QProcess::NotRunning &&
               m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0 &&
               !hasSanitizerReport(printed);
    }

    // Ended on its own, not by a signal or an abort, with this exit code.
    bool exitedWith(int exitCode) const
    {
        return m_process.state() == QProcess::NotRunning &&
               m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == exitCode;
    }

    // SIGTERM, as a session's end or `kill` sends it.
    void terminate() { m_process.terminate(); }
    // SIGKILL: no chance to clean up.
    void kill() { m_process.kill(); }

    // Everything it printed so far, for failure messages.
    QString output()
    {
        m_log += QString::fromLocal8Bit(m_process.readAll());
        return m_log;
    }

    // Its windows of the given name that are on screen now.
    QList<WId> windows(const QString &namePattern) const
    {
        return DesktopTools::findWindows(pid(), namePattern);
    }

    // Its windows on screen that have no title of their own and so carry the application's
    // name: the tray icon, the tray menu and the quit question.
    QList<WId> untitledWindows() const
    {
        QList<WId> untitled;
        for (WId window : DesktopTools::findWindows(pid())) {
            if (DesktopTools::windowProperty(window, QStringLiteral("_NET_WM_NAME")) ==
                QStringLiteral("\"Tallyvane\""))
                untitled.append(window);
        }
        return untitled;
    }

    // Its first window of the name to come on screen; 0 when none did in time.
    WId waitForWindow(const QString &namePattern, int timeout = startTimeout) const
    {
        QList<WId> found;
        const bool shown = QTest::qWaitFor(
            [&] {
                found = windows(namePattern);
                return !found.isEmpty();
            },
            timeout);
        return shown ? found.first() : 0;
    }

private:
    QProcess m_process;
    QString m_log;
};

// Widgets saved by an earlier run, at the frames given, with different looks.
void saveWidgets(const QList<QRectF> &frames)
{
    EVCoreDataDelegate earlierRun;
    for (qsizetype i = 0; i < frames.size(); ++i) {
        EVWidgetEntry *entry = earlierRun.addWidgetEntry();
        entry->setEventTitle(QStringLiteral("Event %1").arg(i + 1));
        entry->setStyleIndex(int(i * 4 % 12));
        entry->setFrame(frames.at(i));
    }
    earlierRun.save();
}

void saveOpenAtLogin(bool enabled)
{
    EVAppSetting setting;
    setting.setOpenAtLogin(enabled);
    setting.save();
}

// SIGTERM: the program saves and quits, exiting 0 with nothing reported.
bool endsCleanly(Program &program)
{
    program.terminate();
    return program.waitForExit() && program.exitedCleanly();
}

QPoint centre(const QRect &rect)
{
    return rect.topLeft() + QPoint(rect.width() / 2, rect.height() / 2);
}

bool clickAt(const QPoint &point)
{
    return DesktopTools::click(point, 1);
}

// Activates the window and types the key into it.
bool typeInto(WId window, const QString &key)
{
    return DesktopTools::xdotool({QStringLiteral("windowactivate"), QStringLiteral("--sync"),
                                  QString::number(window), QStringLiteral("key"), key});
}

QString opacity(WId window)
{
    return DesktopTools::windowProperty(window, QStringLiteral("_NET_WM_WINDOW_OPACITY"));
}

// Where a segment of the open-at-login switch is on the screen: the same window is built here at
// the size the program shows its own, with its own settings and store, and laid out alike.
QPoint openAtLoginSegmentOnScreen(const QRect &shownWindow, int segment)
{
    TestHome scratch;
    EVCoreDataDelegate store;
    EVWidgetsManager manager(&store);
    EVPerferenceController preferences(&manager);
    QWidget *window = preferences.window();
    window->setAttribute(Qt::WA_DontShowOnScreen);
    window->resize(shownWindow.size());
    window->show();
    QCoreApplication::processEvents();
    auto *control = window->findChild<EVSegmentedControl *>(QStringLiteral("openAtLoginSeg"));
    QAbstractButton *button = control ? control->segmentButton(segment) : nullptr;
    if (!button)
        return QPoint();
    const QPoint inWindow = button->mapTo(window, button->rect().center());
    window->hide();
    return shownWindow.topLeft() + inWindow;
}

} // namespace

class TestApplicationDesktop : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<TrayPanel> m_panel;

    std::unique_ptr<Program> program() { return std::make_unique<Program>(m_home->path()); }

    // The program started with a tray host there, its icon embedded in the tray.
    std::unique_ptr<Program> startWithTray(WId *icon)
    {
        m_panel = std::make_unique<TrayPanel>(QColor(0x3c, 0x3f, 0x41));
        if (!QTest::qWaitFor([this] { return !m_panel->geometry().isEmpty(); }, startTimeout))
            return nullptr;
        std::unique_ptr<Program> tallyvane = program();
        if (!tallyvane->start())
            return nullptr;
        if (QTest::qWaitFor([&] { return trayIcon(*tallyvane) != 0; }, startTimeout))
            *icon = trayIcon(*tallyvane);
        return tallyvane;
    }

    // The program's window that sits inside the tray's strip: its status icon.
    WId trayIcon(const Program &tallyvane) const
    {
        const QRect strip = m_panel->geometry();
        for (WId window : tallyvane.untitledWindows()) {
            if (strip.contains(DesktopTools::windowGeometry(window)))
                return window;
        }
        return 0;
    }

    // A window of the program's name outside the tray: the menu or the quit question.
    WId applicationWindowOutsideTheTray(const Program &tallyvane) const
    {
        const QRect strip = m_panel->geometry();
        for (WId window : tallyvane.untitledWindows()) {
            if (!strip.contains(DesktopTools::windowGeometry(window)))
                return window;
        }
        return 0;
    }

    // A left click on the tray icon opens the menu; a click on the item chooses it. The menu
    // holds its three items in equal rows.
    bool chooseFromTrayMenu(const Program &tallyvane, WId icon, MenuItem item)
    {
        if (!clickAt(centre(DesktopTools::windowGeometry(icon))))
            return false;
        WId menu = 0;
        if (!QTest::qWaitFor(
                [&] { return (menu = applicationWindowOutsideTheTray(tallyvane)) != 0; },
                startTimeout))
            return false;
        QTest::qWait(200);
        const QRect shown = DesktopTools::windowGeometry(menu);
        const int row = int(item);
        const QPoint at(shown.center().x(), shown.top() + shown.height() * (2 * row + 1) / 6);
        if (!clickAt(at))
            return false;
        // The menu closes as the item is chosen.
        return QTest::qWaitFor([&] { return !tallyvane.untitledWindows().contains(menu); },
                               startTimeout);
    }

private Q_SLOTS:
    void init() { m_home = std::make_unique<TestHome>(); }
    void cleanup()
    {
        m_panel.reset();
        m_home.reset();
    }

    void startWithoutADisplaySaysSoAndEndsWithoutACrash()
    {
        const std::unique_ptr<Program> tallyvane = program();
        tallyvane->unsetVariable(QStringLiteral("DISPLAY"));
        tallyvane->unsetVariable(QStringLiteral("WAYLAND_DISPLAY"));
        QVERIFY(tallyvane->start());
        QVERIFY(tallyvane->waitForExit());
        const QString printed = tallyvane->output();
        QVERIFY2(tallyvane->exitedWith(1), qPrintable(printed));
        QVERIFY2(printed.contains(QStringLiteral(
                     "the widgets cannot be shown: no display is set (DISPLAY is empty)")),
                 qPrintable(printed));
        QVERIFY2(!hasSanitizerReport(printed), qPrintable(printed));
    }

    void trayIconSitsInTheTray()
    {
        saveWidgets({QRectF(100, 120, 300, 150)});
        WId icon = 0;
        const std::unique_ptr<Program> tallyvane = startWithTray(&icon);
        QVERIFY(tallyvane);
        QVERIFY2(icon, qPrintable(tallyvane->output()));
        const QRect shown = DesktopTools::windowGeometry(icon);
        QVERIFY(m_panel->geometry().contains(shown));
        QVERIFY(shown.width() >= 16);
        QVERIFY(shown.height() >= 16);
        QVERIFY2(endsCleanly(*tallyvane), qPrintable(tallyvane->output()));
    }

    void trayAboutOpensTheAboutBox()
    {
        saveWidgets({QRectF(100, 120, 300, 150)});
        WId icon = 0;
        const std::unique_ptr<Program> tallyvane = startWithTray(&icon);
        QVERIFY(tallyvane);
        QVERIFY2(icon, qPrintable(tallyvane->output()));
        QVERIFY(tallyvane->windows(aboutWindowName).isEmpty());
        QVERIFY(chooseFromTrayMenu(*tallyvane, icon, MenuItem::About));
        QVERIFY(tallyvane->waitForWindow(aboutWindowName));
        QVERIFY(tallyvane->windows(preferencesWindowName).isEmpty());
        QVERIFY2(endsCleanly(*tallyvane), qPrintable(tallyvane->output()));
    }

    void trayPreferencesOpensThePreferencesWindow()
    {
        saveWidgets({QRectF(100, 120, 300, 150)});
        WId icon = 0;
        const std::unique_ptr<Program> tallyvane = startWithTray(&icon);
        QVERIFY(tallyvane);
        QVERIFY2(icon, qPrintable(tallyvane->output()));
        // With widgets stored, the window waits to be asked for.
        QVERIFY(tallyvane->waitForWindow(widgetWindowName));
        QVERIFY(tallyvane->windows(preferencesWindowName).isEmpty());
        QVERIFY(chooseFromTrayMenu(*tallyvane, icon, MenuItem::Preferences));
        QVERIFY(tallyvane->waitForWindow(preferencesWindowName));
        QVERIFY(tallyvane->windows(aboutWindowName).isEmpty());
        QVERIFY2(endsCleanly(*tallyvane), qPrintable(tallyvane->output()));
    }

    void trayQuitWithOpenAtLoginQuitsWithoutAQuestion()
    {
        saveWidgets({QRectF(100, 120, 300, 150)});
        saveOpenAtLogin(true);
        WId icon = 0;
        const std::unique_ptr<Program> tallyvane = startWithTray(&icon);
        QVERIFY(tallyvane);
        QVERIFY2(icon, qPrintable(tallyvane->output()));
        QVERIFY(tallyvane->waitForWindow(widgetWindowName));
        QVERIFY(chooseFromTrayMenu(*tallyvane, icon, MenuItem::Quit));
        QVERIFY(tallyvane->waitForExit());
        QVERIFY2(tallyvane->exitedCleanly(), qPrintable(tallyvane->output()));
    }

    void trayQuitAsksAndCancelBringsTheWidgetsBack()
    {
        saveWidgets({QRectF(100, 120, 300, 150)});
        saveOpenAtLogin(false);
        WId icon = 0;
        const std::unique_ptr<Program> tallyvane = startWithTray(&icon);
        QVERIFY(tallyvane);
        QVERIFY2(icon, qPrintable(tallyvane->output()));
        const WId widget = tallyvane->waitForWindow(widgetWindowName);
        QVERIFY(widget);

        QVERIFY(chooseFromTrayMenu(*tallyvane, icon, MenuItem::Quit));
        WId question = 0;
        QTRY_VERIFY_WITH_TIMEOUT((question = applicationWindowOutsideTheTray(*tallyvane)) != 0,
                                 startTimeout);
        // While the question is up the widgets are gone from the desktop.
        QTRY_COMPARE(opacity(widget), QStringLiteral("0"));
        QVERIFY(typeInto(question, QStringLiteral("Escape")));
        QTRY_VERIFY_WITH_TIMEOUT(tallyvane->windows(widgetWindowName).contains(widget),
                                 startTimeout);
        QVERIFY(opacity(widget) != QStringLiteral("0"));
        QVERIFY(applicationWindowOutsideTheTray(*tallyvane) == 0);
        QTest::qWait(500);
        QVERIFY(tallyvane->isRunning());

        // Asked again, "Quit" (the default button) ends it.
        QVERIFY(chooseFromTrayMenu(*tallyvane, icon, MenuItem::Quit));
        QTRY_VERIFY_WITH_TIMEOUT((question = applicationWindowOutsideTheTray(*tallyvane)) != 0,
                                 startTimeout);
        QVERIFY(typeInto(question, QStringLiteral("Return")));
        QVERIFY(tallyvane->waitForExit());
        QVERIFY2(tallyvane->exitedCleanly(), qPrintable(tallyvane->output()));
    }

    void secondLaunchBringsUpThePreferencesWindowOfTheFirst()
    {
        saveWidgets({QRectF(100, 120, 300, 150)});
        const std::unique_ptr<Program> first = program();
        QVERIFY(first->start());
        QVERIFY2(first->waitForWindow(widgetWindowName), qPrintable(first->output()));
        QVERIFY(first->windows(preferencesWindowName).isEmpty());

        const std::unique_ptr<Program> second = program();
        QVERIFY(second->start());
        QVERIFY(second->waitForExit());
        QVERIFY2(second->exitedCleanly(), qPrintable(second->output()));
        QVERIFY2(first->waitForWindow(preferencesWindowName), qPrintable(first->output()));
        QVERIFY(first->isRunning());

        QVERIFY2(endsCleanly(*first), qPrintable(first->output()));
    }

    void doubleClickOnAWidgetOpensThePreferencesWindow()
    {
        const QRectF stored(200, 200, 300, 150);
        saveWidgets({stored});
        const std::unique_ptr<Program> tallyvane = program();
        QVERIFY(tallyvane->start());
        const WId widget = tallyvane->waitForWindow(widgetWindowName);
        QVERIFY2(widget, qPrintable(tallyvane->output()));
        QTRY_COMPARE(DesktopTools::windowGeometry(widget), stored.toRect());
        QVERIFY(tallyvane->windows(preferencesWindowName).isEmpty());

        QVERIFY(DesktopTools::click(centre(stored.toRect()), 2));
        QVERIFY2(tallyvane->waitForWindow(preferencesWindowName), qPrintable(tallyvane->output()));
        // A click is not a drag: the widget stayed where it was.
        QCOMPARE(DesktopTools::windowGeometry(widget), stored.toRect());
        QVERIFY2(endsCleanly(*tallyvane), qPrintable(tallyvane->output()));
    }

    void sigtermSavesAWidgetMovedByDragging()
    {
        const QRectF stored(200, 200, 300, 150);
        saveWidgets({stored});
        const std::unique_ptr<Program> tallyvane = program();
        QVERIFY(tallyvane->start());
        const WId widget = tallyvane->waitForWindow(widgetWindowName);
        QVERIFY2(widget, qPrintable(tallyvane->output()));
        QTRY_COMPARE(DesktopTools::windowGeometry(widget), stored.toRect());

        const QPoint by(160, 90);
        const QPoint grab = centre(stored.toRect());
        QVERIFY(DesktopTools::drag(grab, grab + by));
        QTRY_COMPARE(DesktopTools::windowGeometry(widget).topLeft(),
                     stored.toRect().topLeft() + by);

        QVERIFY2(endsCleanly(*tallyvane), qPrintable(tallyvane->output()));
        EVCoreDataDelegate saved;
        const QList<EVWidgetEntry *> entries = saved.fetchWidgetEntries();
        QCOMPARE(entries.size(), 1);
        const QRect frame = entries.first()->frame().toRect();
        QCOMPARE(frame.topLeft(), stored.toRect().topLeft() + by);
        QCOMPARE(frame.size(), stored.toRect().size());
    }

    void openAtLoginSwitchWritesAndRemovesTheAutostartEntry()
    {
        // Without widgets the preferences window opens at launch.
        const std::unique_ptr<Program> tallyvane = program();
        QVERIFY(tallyvane->start());
        const WId preferences = tallyvane->waitForWindow(preferencesWindowName);
        QVERIFY2(preferences, qPrintable(tallyvane->output()));
        QTest::qWait(300);
        const QRect shown = DesktopTools::windowGeometry(preferences);
        const QPoint on = openAtLoginSegmentOnScreen(shown, 0);
        const QPoint off = openAtLoginSegmentOnScreen(shown, 1);
        QVERIFY(shown.contains(on));
        QVERIFY(shown.contains(off));
        const QString entry =
            m_home->path() + QStringLiteral("/.config/autostart/com.velto.tallyhelper.desktop");
        QCOMPARE(EVLoginItem::entryPath(), entry);
        QVERIFY(!QFile::exists(entry));

        QVERIFY(clickAt(on));
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(entry), startTimeout);
        QFile written(entry);
        QVERIFY(written.open(QIODevice::ReadOnly));
        const QString contents = QString::fromUtf8(written.readAll());
        QVERIFY2(contents.contains(QStringLiteral("Exec=") + QStringLiteral(TALLYVANE_EXECUTABLE)),
                 qPrintable(contents));
        QVERIFY(EVLoginItem(QString(), QString()).isEnabled());

        QVERIFY(clickAt(off));
        QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(entry), startTimeout);

        QVERIFY(clickAt(on));
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(entry), startTimeout);
        QVERIFY2(endsCleanly(*tallyvane), qPrintable(tallyvane->output()));
        // The choice is kept with the entry.
        QVERIFY(QFile::exists(entry));
        QVERIFY(EVAppSetting::readFromUserDefaults().openAtLogin());
    }

    void staleLockOfAKilledInstanceDoesNotBlockANewStart()
    {
        saveWidgets({QRectF(100, 120, 300, 150)});
        const QString lock =
            Program::runtimeFolder(m_home->path()) + QStringLiteral("/tallyvane.lock");
        const std::unique_ptr<Program> killed = program();
        QVERIFY(killed->start());
        QVERIFY2(killed->waitForWindow(widgetWindowName), qPrintable(killed->output()));
        QVERIFY(QFile::exists(lock));
        killed->kill();
        QVERIFY(killed->waitForExit());
        QVERIFY(QFile::exists(lock));

        const std::unique_ptr<Program> next = program();
        QVERIFY(next->start());
        QVERIFY2(next->waitForWindow(widgetWindowName), qPrintable(next->output()));
        QVERIFY(next->isRunning());
        // The lock is the new instance's now.
        QFile taken(lock);
        QVERIFY(taken.open(QIODevice::ReadOnly));
        QCOMPARE(taken.readLine().trimmed().toLongLong(), next->pid());

        QVERIFY2(endsCleanly(*next), qPrintable(next->output()));
    }

    void snapshotWritesAPictureOfTheStoredWidgets()
    {
        saveWidgets(
            {QRectF(100, 120, 300, 150), QRectF(500, 120, 300, 150), QRectF(100, 400, 300, 150)});
        const QString file = m_home->path() + QStringLiteral("/widgets.png");
        const std::unique_ptr<Program> snapshot = program();
        QVERIFY(snapshot->start({QStringLiteral("--snapshot"), file}));
        QVERIFY(snapshot->waitForExit());
        QVERIFY2(snapshot->exitedCleanly(), qPrintable(snapshot->output()));
        QVERIFY(snapshot->output().contains(QStringLiteral("3 widget(s) written to ") + file));

        const QImage picture(file);
        QVERIFY(!picture.isNull());
        // Two columns and two rows of 300 x 150 widgets, 16 pixels apart: each at its size on
        // this screen.
        QCOMPARE(picture.size(), QSize(16 + 300 + 16 + 300 + 16, 16 + 150 + 16 + 150 + 16));
        const QColor ground = picture.pixelColor(4, 4);
        const QList<QPoint> cells = {QPoint(16, 16), QPoint(332, 16), QPoint(16, 182)};
        QList<QImage> widgets;
        for (const QPoint &cell : cells) {
            const QImage widget = picture.copy(QRect(cell, QSize(300, 150)));
            int differing = 0;
            for (int y = 0; y < widget.height(); ++y) {
                for (int x = 0; x < widget.width(); ++x)
                    differing += widget.pixelColor(x, y) != ground ? 1 : 0;
            }
            // Each widget covers its cell with its background.
            QVERIFY2(differing > widget.width() * widget.height() * 9 / 10,
                     qPrintable(QString::number(differing)));
            widgets.append(widget);
        }
        // Each in its own style.
        QVERIFY(widgets.at(0) != widgets.at(1));
        QVERIFY(widgets.at(1) != widgets.at(2));
        // The fourth cell is empty ground.
        const QImage empty = picture.copy(QRect(QPoint(332, 182), QSize(300, 150)));
        QCOMPARE(empty.pixelColor(150, 75), ground);
    }

    void snapshotIntoAMissingFolderFailsWithAMessage()
    {
        saveWidgets({QRectF(100, 120, 300, 150)});
        const QString file = m_home->path() + QStringLiteral("/missing/widgets.png");
        const std::unique_ptr<Program> snapshot = program();
        QVERIFY(snapshot->start({QStringLiteral("--snapshot"), file}));
        QVERIFY(snapshot->waitForExit());
        QVERIFY(!snapshot->exitedCleanly());
        QVERIFY(snapshot->output().contains(file));
        QVERIFY(!QFile::exists(file));
    }
};

TALLYVANE_DESKTOP_TEST_MAIN(TestApplicationDesktop)
#include "tst_application_desktop.moc"
