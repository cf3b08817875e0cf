#pragma once

class QWindow;

// What the window manager is told about a desktop widget's window: that it shows on every
// workspace, stays out of task bars and pagers, and where it stacks against ordinary windows.
// Only X11 window managers are told anything; elsewhere these calls do nothing and return false.
namespace EVDesktopWindowHints {

enum class Level { Below, Normal, Above };

bool isAvailable();

// Whether a compositing manager runs, without which window opacity has no visible effect. True
// where this cannot be known (other platforms), since there opacity is left to Qt.
bool hasCompositingManager();

// On every workspace (_NET_WM_DESKTOP 0xFFFFFFFF and _NET_WM_STATE_STICKY; some window managers
// honour only one of them), without task bar or pager entries.
bool applyWorkspaceHints(QWindow *window);

// Under ordinary windows (_NET_WM_STATE_BELOW), above them (_NET_WM_STATE_ABOVE) or among them.
bool setLevel(QWindow *window, Level level);

} // namespace EVDesktopWindowHints
