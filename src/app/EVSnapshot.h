#pragma once

#include <QImage>
#include <QList>
#include <QString>

class EVWidgetEntry;

// Every stored widget drawn as it looks now into one picture, without showing a window: for
// scripts, bug reports and headless machines.
namespace EVSnapshot {

// The widgets side by side in rows over a dark desktop-like ground, each at its own size; a
// small picture that says there are none when the list is empty.
QImage render(const QList<EVWidgetEntry *> &entries);

// Renders the stored widgets and writes a PNG file; false with a message naming what failed.
bool write(const QString &path, QString *message);

} // namespace EVSnapshot
