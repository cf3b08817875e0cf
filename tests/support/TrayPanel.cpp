#include "TrayPanel.h"

#include "DesktopTools.h"

TrayPanel::TrayPanel(const QColor &colour)
{
    m_trayer.start(QStringLiteral("trayer"),
                   {QStringLiteral("--edge"), QStringLiteral("top"), QStringLiteral("--align"),
                    QStringLiteral("right"), QStringLiteral("--widthtype"), QStringLiteral("pixel"),
                    QStringLiteral("--width"), QStringLiteral("80"), QStringLiteral("--height"),
                    QStringLiteral("24"), QStringLiteral("--transparent"), QStringLiteral("true"),
                    QStringLiteral("--alpha"), QStringLiteral("0"), QStringLiteral("--tint"),
                    QStringLiteral("0x") + colour.name().mid(1)});
}

TrayPanel::~TrayPanel()
{
    m_trayer.kill();
    m_trayer.waitForFinished(5000);
}

QRect TrayPanel::geometry() const
{
    if (!isRunning())
        return QRect();
    // trayer names the window that holds the icons "panel".
    const QList<WId> panels =
        DesktopTools::findWindows(m_trayer.processId(), QStringLiteral("^panel$"));
    return panels.isEmpty() ? QRect() : DesktopTools::windowGeometry(panels.first());
}
