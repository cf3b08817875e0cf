#include "controls/EVBeep.h"

#include <QApplication>

#include <utility>

namespace {
EVBeep::Handler &installedHandler()
{
    static EVBeep::Handler handler;
    return handler;
}
} // namespace

void EVBeep::beep()
{
    if (const Handler &handler = installedHandler())
        handler();
    else
        QApplication::beep();
}

void EVBeep::setHandler(Handler handler)
{
    installedHandler() = std::move(handler);
}
