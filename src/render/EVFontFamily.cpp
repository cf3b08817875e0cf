#include "render/EVFontFamily.h"

#include <QFontDatabase>
#include <QFontInfo>

namespace {

QString systemSansFamily()
{
    // The system font is often an alias ("Sans Serif"); QFontInfo names the family it resolves to.
    static const QString family = [] {
        const QString resolved =
            QFontInfo(QFontDatabase::systemFont(QFontDatabase::GeneralFont)).family();
        return QFontDatabase::hasFamily(resolved) ? resolved : QStringLiteral("DejaVu Sans");
    }();
    return family;
}

} // namespace

namespace EVFontFamily {

QString forName(const QString &fontName)
{
    if (fontName == QLatin1String("LucidaGrande"))
        return systemSansFamily();
    if (fontName.isEmpty() || !QFontDatabase::hasFamily(fontName))
        return QString();
    return fontName;
}

} // namespace EVFontFamily
