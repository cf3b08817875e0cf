#include "platform/EVMainScreen.h"

#include <QGuiApplication>
#include <QScreen>

namespace EVMainScreen {

namespace {

bool isGuiApplication()
{
    return qobject_cast<QGuiApplication *>(QCoreApplication::instance()) != nullptr;
}

} // namespace

QRectF frame()
{
    const QScreen *screen = isGuiApplication() ? QGuiApplication::primaryScreen() : nullptr;
    return screen ? QRectF(screen->geometry()) : QRectF();
}

QList<QRectF> everyScreenFrame()
{
    QList<QRectF> frames;
    if (!isGuiApplication())
        return frames;
    for (const QScreen *screen : QGuiApplication::screens())
        frames.append(QRectF(screen->geometry()));
    return frames;
}

} // namespace EVMainScreen
