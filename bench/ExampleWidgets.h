#pragma once

#include <QString>

// Example widgets for a desktop to look at and to measure: a few everyday events first, then
// numbered ones, each 300 x 150, in columns from the top right of the main screen (so that a
// window placed at the left leaves them in view), over again a little further in when the
// screen is full.
namespace ExampleWidgets {

// Adds count widgets to the widget store of the current HOME and saves it; false, with a message
// saying why, when the store cannot be written. Run on the display the program will use: frames
// are kept as fractions of the main screen.
bool save(int count, QString *message);

} // namespace ExampleWidgets
