#pragma once

#include <QList>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QWidget>

// Reads and drives the real X desktop the desktop tests run on, through the same tools a person
// would use: xprop, xwininfo and xdotool.
namespace DesktopTools {

// Whether an X display is there to test on.
bool hasDisplay();

// The value part of `xprop -id <window> <property>`, empty when the property is not set.
QString windowProperty(WId window, const QString &property);

// The window's rectangle on the screen as the X server has it.
QRect windowGeometry(WId window);

// The windows of a process (by _NET_WM_PID) whose WM_NAME matches the regular expression (all of
// them for an empty one), as xdotool finds them; only those mapped and viewable unless asked
// otherwise.
QList<WId> findWindows(qint64 pid, const QString &namePattern = QString(), bool onlyVisible = true);

// Runs xdotool with the arguments; true when it succeeded.
bool xdotool(const QStringList &arguments);

// Presses the left button at `from`, moves to `to` in small pauses, and releases it.
bool drag(const QPoint &from, const QPoint &to);

// Clicks the left button `count` times at the point, as one series.
bool click(const QPoint &at, int count);

// The visible windows of any process whose name matches the regular expression.
QList<WId> visibleWindowsNamed(const QString &pattern);
// Saves a screenshot of the whole screen.
bool screenshot(const QString &path);

} // namespace DesktopTools
