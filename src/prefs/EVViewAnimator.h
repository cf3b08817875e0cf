#pragma once

class QWidget;

// Shows and hides views with a short fade instead of at once.
namespace EVViewAnimator {

// How long a fade takes, in milliseconds.
inline constexpr int fadeDuration = 250;

// Fades view out and then hides it, or shows it and fades it in. A view whose window is not on
// screen changes at once; a fade under way is replaced by the new one.
void setHidden(QWidget *view, bool hidden);

} // namespace EVViewAnimator
