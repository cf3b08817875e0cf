#include "LogRecorder.h"
#include "TestMain.h"

#include "platform/EVDisplayServer.h"

#include <QList>

#include <optional>

namespace {

// Sets the variable for the scope, or takes it away when there is no value.
class SessionVariable
{
public:
    SessionVariable(const char *name, const std::optional<QByteArray> &value)
        : m_restore(name, value.value_or(QByteArray()))
    {
        if (!value)
            qunsetenv(name);
    }

private:
    ScopedEnvironment m_restore;
};

using Variable = std::optional<QByteArray>;

} // namespace

Q_DECLARE_METATYPE(std::optional<QByteArray>)
Q_DECLARE_METATYPE(EVDisplayServer::Choice)

class TestEVDisplayServer : public QObject
{
    Q_OBJECT

private:
    std::optional<LogRecorder> m_log;

private Q_SLOTS:
    void init() { m_log.emplace("tallyvane.displayserver"); }
    void cleanup() { m_log.reset(); }

    void decisionTable_data()
    {
        using Choice = EVDisplayServer::Choice;
        QTest::addColumn<Variable>("sessionType");
        QTest::addColumn<Variable>("waylandDisplay");
        QTest::addColumn<Variable>("display");
        QTest::addColumn<Variable>("platform");
        QTest::addColumn<Choice>("choice");
        QTest::addColumn<Variable>("platformAfter");
        QTest::addColumn<int>("logLines");
        const Variable none;
        const Variable x11("x11"), wayland("wayland"), socket("wayland-0"), xDisplay(":0");

        QTest::newRow("X11 session")
            << x11 << none << xDisplay << none << Choice::Left << none << 0;
        QTest::newRow("nothing known")
            << none << none << xDisplay << none << Choice::Left << none << 0;
        QTest::newRow("text console")
            << Variable("tty") << none << none << none << Choice::Left << none << 0;
        QTest::newRow("Wayland session")
            << wayland << socket << xDisplay << none << Choice::XWayland << Variable("xcb") << 1;
        QTest::newRow("session type only")
            << wayland << none << xDisplay << none << Choice::XWayland << Variable("xcb") << 1;
        QTest::newRow("session type in capitals") << Variable("Wayland") << none << xDisplay << none
                                                  << Choice::XWayland << Variable("xcb") << 1;
        QTest::newRow("Wayland socket only")
            << none << socket << xDisplay << none << Choice::XWayland << Variable("xcb") << 1;
        QTest::newRow("empty platform counts as none")
            << wayland << socket << xDisplay << Variable("") << Choice::XWayland << Variable("xcb")
            << 1;
        QTest::newRow("user chose wayland") << wayland << socket << xDisplay << Variable("wayland")
                                            << Choice::Left << Variable("wayland") << 0;
        QTest::newRow("user chose offscreen")
            << wayland << socket << xDisplay << Variable("offscreen") << Choice::Left
            << Variable("offscreen") << 0;
        QTest::newRow("user chose xcb under X11")
            << x11 << none << xDisplay << Variable("xcb") << Choice::Left << Variable("xcb") << 0;
        QTest::newRow("Wayland without XWayland")
            << wayland << socket << none << none << Choice::NoXWayland << none << 1;
    }

    void decisionTable()
    {
        QFETCH(Variable, sessionType);
        QFETCH(Variable, waylandDisplay);
        QFETCH(Variable, display);
        QFETCH(Variable, platform);
        QFETCH(EVDisplayServer::Choice, choice);
        QFETCH(Variable, platformAfter);
        QFETCH(int, logLines);
        SessionVariable sessionTypeVariable("XDG_SESSION_TYPE", sessionType);
        SessionVariable waylandDisplayVariable("WAYLAND_DISPLAY", waylandDisplay);
        SessionVariable displayVariable("DISPLAY", display);
        SessionVariable platformVariable("QT_QPA_PLATFORM", platform);

        QCOMPARE(EVDisplayServer::choosePlatform(), choice);
        QCOMPARE(qEnvironmentVariableIsSet("QT_QPA_PLATFORM"), platformAfter.has_value());
        if (platformAfter)
            QCOMPARE(qgetenv("QT_QPA_PLATFORM"), *platformAfter);
        QCOMPARE(m_log->lines().size(), logLines);
    }

    void choiceOfXWaylandIsSaidOnceInTheLog()
    {
        SessionVariable sessionType("XDG_SESSION_TYPE", QByteArray("wayland"));
        SessionVariable display("DISPLAY", QByteArray(":0"));
        SessionVariable platform("QT_QPA_PLATFORM", std::nullopt);

        QCOMPARE(EVDisplayServer::choosePlatform(), EVDisplayServer::Choice::XWayland);
        QCOMPARE(EVDisplayServer::choosePlatform(), EVDisplayServer::Choice::Left);
        QCOMPARE(m_log->lines().size(), 1);
        QCOMPARE(m_log->lines().first().type, QtInfoMsg);
        QVERIFY(m_log->lines().first().text.contains(QStringLiteral("XWayland")));
    }

    void missingXWaylandIsAWarning()
    {
        SessionVariable sessionType("XDG_SESSION_TYPE", QByteArray("wayland"));
        SessionVariable display("DISPLAY", std::nullopt);
        SessionVariable platform("QT_QPA_PLATFORM", std::nullopt);

        QCOMPARE(EVDisplayServer::choosePlatform(), EVDisplayServer::Choice::NoXWayland);
        QCOMPARE(m_log->lines().size(), 1);
        QCOMPARE(m_log->lines().first().type, QtWarningMsg);
        QVERIFY(m_log->lines().first().text.contains(QStringLiteral("DISPLAY")));
    }

    void unreachableXDisplayCannotShowWindows_data()
    {
        QTest::addColumn<Variable>("display");
        QTest::addColumn<QString>("reason");
        QTest::newRow("no display")
            << Variable() << QStringLiteral("no display is set (DISPLAY is empty)");
        QTest::newRow("a display nobody serves")
            << Variable(":4711") << QStringLiteral("the X display :4711 cannot be reached");
    }
    void unreachableXDisplayCannotShowWindows()
    {
        QFETCH(Variable, display);
        QFETCH(QString, reason);
        SessionVariable platform("QT_QPA_PLATFORM", std::nullopt);
        SessionVariable waylandDisplay("WAYLAND_DISPLAY", std::nullopt);
        SessionVariable xDisplay("DISPLAY", display);
        QString why;
        QVERIFY(!EVDisplayServer::canShowWindows(&why));
        QCOMPARE(why, reason);
    }

    void platformChosenByTheUserIsLeftToQt()
    {
        SessionVariable platform("QT_QPA_PLATFORM", QByteArray("offscreen"));
        SessionVariable xDisplay("DISPLAY", std::nullopt);
        QVERIFY(EVDisplayServer::canShowWindows());
    }

    void waylandSessionIsLeftToQt()
    {
        SessionVariable platform("QT_QPA_PLATFORM", std::nullopt);
        SessionVariable waylandDisplay("WAYLAND_DISPLAY", QByteArray("wayland-0"));
        SessionVariable xDisplay("DISPLAY", std::nullopt);
        QVERIFY(EVDisplayServer::canShowWindows());
    }
};

TALLYVANE_TEST_MAIN(TestEVDisplayServer)
#include "tst_evdisplayserver.moc"
