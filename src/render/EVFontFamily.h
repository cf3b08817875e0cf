#pragma once

#include <QString>

// Font names as the widget records and views know them, turned into installed font families.
namespace EVFontFamily {

// "LucidaGrande" stands for the system's sans-serif family (DejaVu Sans when the system names
// none that is installed), "Menlo" for its monospace family (DejaVu Sans Mono); any other installed
// family stands for itself. A null string when the name is empty or not installed.
QString forName(const QString &fontName);

} // namespace EVFontFamily
