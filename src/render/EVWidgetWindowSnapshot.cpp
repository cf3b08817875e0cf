#include "render/EVWidgetWindowSnapshot.h"

#include <QPixmap>
#include <QWidget>

QImage widgetWindowSnapshot(QWidget *window)
{
    if (!window)
        return QImage();
    QImage snapshot = window->grab().toImage();
    if (snapshot.isNull())
        return snapshot;
    // One point per pixel of the capture, as the list expects, whatever the screen's scale.
    snapshot.setDevicePixelRatio(1.0);
    return snapshot;
}
