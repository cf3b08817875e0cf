#include "platform/EVDisplayServer.h"

#include <QLoggingCategory>
#include <QString>

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

} // namespace EVDisplayServer
