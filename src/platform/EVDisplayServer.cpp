#include "platform/EVDisplayServer.h"

#include <QLoggingCategory>
#include <QString>

#include <xcb/xcb.h>

namespace {
Q_LOGGING_CATEGORY(lcDisplayServer, "tallyvane.displayserver")
} // namespace

namespace EVDisplayServer {

Choice choosePlatform()
{
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return Choice::Left;
    const bool waylandSession =
        qEnvironmentVariable("XDG_SESSION_TYPE")
                .compare(QStringLiteral("wayland"), Qt::CaseInsensitive) == 0 ||
        !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (!waylandSession)
        return Choice::Left;
    if (qEnvironmentVariableIsEmpty("DISPLAY")) {
        // Forcing xcb here would only end the program at start; better widgets that cannot
        // keep their level than none.
        qCWarning(lcDisplayServer) << "Wayland session without XWayland (DISPLAY is not set):"
                                      " widgets cannot keep below or above other windows";
        return Choice::NoXWayland;
    }
    qputenv("QT_QPA_PLATFORM", "xcb");
    qCInfo(lcDisplayServer) << "Wayland session: running through XWayland (QT_QPA_PLATFORM=xcb),"
                               " so that widgets can place themselves";
    return Choice::XWayland;
}

bool canShowWindows(QString *why)
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if (!platform.isEmpty() && platform != "xcb")
        return true;
    if (platform.isEmpty() && !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return true;
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    const bool connected = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    if (!connected && why) {
        const QString display = qEnvironmentVariable("DISPLAY");
        *why = display.isEmpty()
                   ? QStringLiteral("no display is set (DISPLAY is empty)")
                   : QStringLiteral("the X display %1 cannot be reached").arg(display);
    }
    return connected;
}

} // namespace EVDisplayServer
