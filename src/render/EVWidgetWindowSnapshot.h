#pragma once

#include <QImage>

class QWidget;

// A picture of a widget window as it currently looks, at its full pixel size, for the widget
// list of the preferences window. A null image when there is no window or it has no size.
QImage widgetWindowSnapshot(QWidget *window);
