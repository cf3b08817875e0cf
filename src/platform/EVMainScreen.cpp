#include "platform/EVMainScreen.h"

#include <QGuiApplication>
#include <QScreen>

namespace EVMainScreen {

QRectF frame()
{
    const QScreen *screen = qobject_cast<QGuiApplication *>(QCoreApplication::instance())
                                ? QGuiApplication::primaryScreen()
                                : nullptr;
    return screen ? QRectF(screen->geometry()) : QRectF();
}

} // namespace EVMainScreen
