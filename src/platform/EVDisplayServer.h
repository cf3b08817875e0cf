#pragma once

#include <QString>

// Widgets need what X11 gives a client (placing their own windows, staying below or above others,
// showing on every workspace), so under a Wayland session the application runs through XWayland.
namespace EVDisplayServer {

enum class Choice {
    Left,      // not a Wayland session, or the user chose a platform: nothing changed
    XWayland,  // QT_QPA_PLATFORM set to xcb
    NoXWayland // a Wayland session without an X display: left to Qt
};

// Call before the application object exists. Under a Wayland session (XDG_SESSION_TYPE is
// "wayland", or WAYLAND_DISPLAY is set) where QT_QPA_PLATFORM is unset or empty, sets it to
// "xcb" when an X display (DISPLAY) is there, and says so in the log; once it is set, a second
// call changes and logs nothing. Without an X display it leaves the platform to Qt and logs
// (on every call) that widgets cannot keep their places.
Choice choosePlatform();

// Whether windows can be shown with the platform Qt is about to load. Qt ends a program that has
// none with an abort; this lets the program say why and end cleanly instead. Only an X display
// is checked, by connecting to it: a platform the user chose other than xcb, or a Wayland
// session left to Qt, counts as able. Call after choosePlatform(). why, when given, receives a
// short reason.
bool canShowWindows(QString *why = nullptr);

} // namespace EVDisplayServer
