#include "render/EVFontFamily.h"

#include <QFontDatabase>
#include <QFontInfo>

namespace {

// The system font is often an alias ("Sans Serif"); QFontInfo names the family it resolves to.
QString resolvedSystemFamily(QFontDatabase::SystemFont font, const QString &fallback)
{
    const QString resolved = QFontInfo(QFontDatabase::systemFont(font)).family();
    return QFontDatabase::hasFamily(resolved) ? resolved : fallback;
}

} // namespace

namespace EVFontFamily {

QString forName(const QString &fontName)
{
    if (fontName == QLatin1String("LucidaGrande")) {
        static const QString sans =
            resolvedSystemFamily(QFontDatabase::GeneralFont, QStringLiteral("DejaVu Sans"));
        return sans;
    }
    if (fontName == QLatin1String("Menlo")) {
        static const QString monospace =
            resolvedSystemFamily(QFontDatabase::FixedFont, QStringLiteral("DejaVu Sans Mono"));
        return monospace;
    }
    if (fontName.isEmpty() || !QFontDatabase::hasFamily(fontName))
        return QString();
    return fontName;
}

} // namespace EVFontFamily
