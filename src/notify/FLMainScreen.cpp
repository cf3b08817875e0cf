#include "notify/FLMainScreen.h"

#include <QGuiApplication>
#include <QScreen>

namespace FLMainScreen {

QRectF frame()
{
    const QScreen *screen = qobject_cast<QGuiApplication *>(QCoreApplication::instance())
                                ? QGuiApplication::primaryScreen()
                                : nullptr;
    return screen ? QRectF(screen->geometry()) : QRectF();
}

} // namespace FLMainScreen
