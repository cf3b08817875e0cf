#include "DesktopTools.h"

#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

namespace DesktopTools {
namespace {

QString run(const QString &program, const QStringList &arguments, bool *ok = nullptr)
{
    QProcess process;
    process.start(program, arguments);
    const bool finished = process.waitForFinished(10000);
    if (ok)
        *ok = finished && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    return QString::fromLocal8Bit(process.readAllStandardOutput());
}

QString windowId(WId window)
{
    return QStringLiteral("0x%1").arg(quintptr(window), 0, 16);
}

// The windows xdotool's search finds by the criteria.
QList<WId> searchWindows(const QStringList &criteria)
{
    // xdotool fails when it finds nothing: that is an empty list.
    const QString output =
        run(QStringLiteral("xdotool"), QStringList{QStringLiteral("search")} + criteria);
    QList<WId> windows;
    for (const QString &line : output.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        bool ok = false;
        const WId window = line.trimmed().toULongLong(&ok);
        if (ok)
            windows.append(window);
    }
    return windows;
}

} // namespace

bool hasDisplay()
{
    // A local display ":N" is there when its server's socket is; others are trusted as set.
    const QString display = qEnvironmentVariable("DISPLAY");
    static const QRegularExpression local(QStringLiteral("^:(\\d+)(\\.\\d+)?$"));
    const QRegularExpressionMatch match = local.match(display);
    if (match.hasMatch())
        return QFileInfo::exists(QStringLiteral("/tmp/.X11-unix/X") + match.captured(1));
    return !display.isEmpty();
}

QString windowProperty(WId window, const QString &property)
{
    bool ok = false;
    const QString output =
        run(QStringLiteral("xprop"), {QStringLiteral("-id"), windowId(window), property}, &ok);
    const qsizetype separator = output.indexOf(QLatin1Char('='));
    if (!ok || separator < 0)
        return QString();
    return output.mid(separator + 1).trimmed();
}

QRect windowGeometry(WId window)
{
    const QString output =
        run(QStringLiteral("xwininfo"), {QStringLiteral("-id"), windowId(window)});
    const auto number = [&output](const QString &label) {
        const QRegularExpression pattern(label + QStringLiteral(":\\s+(-?\\d+)"));
        return pattern.match(output).captured(1).toInt();
    };
    return QRect(number(QStringLiteral("Absolute upper-left X")),
                 number(QStringLiteral("Absolute upper-left Y")), number(QStringLiteral("Width")),
                 number(QStringLiteral("Height")));
}

QList<WId> findWindows(qint64 pid, const QString &namePattern, bool onlyVisible)
{
    QStringList criteria = {QStringLiteral("--all"), QStringLiteral("--pid"), QString::number(pid),
                            QStringLiteral("--name"), namePattern};
    if (onlyVisible)
        criteria.prepend(QStringLiteral("--onlyvisible"));
    return searchWindows(criteria);
}

bool xdotool(const QStringList &arguments)
{
    bool ok = false;
    run(QStringLiteral("xdotool"), arguments, &ok);
    return ok;
}

bool drag(const QPoint &from, const QPoint &to)
{
    if (!xdotool({QStringLiteral("mousemove"), QString::number(from.x()), QString::number(from.y()),
                  QStringLiteral("mousedown"), QStringLiteral("1")}))
        return false;
    QTest::qWait(100);
    constexpr int steps = 6;
    for (int step = 1; step <= steps; ++step) {
        const QPoint at = from + (to - from) * step / steps;
        if (!xdotool(
                {QStringLiteral("mousemove"), QString::number(at.x()), QString::number(at.y())}))
            return false;
        QTest::qWait(60);
    }
    const bool released = xdotool({QStringLiteral("mouseup"), QStringLiteral("1")});
    QTest::qWait(100);
    return released;
}

bool click(const QPoint &at, int count)
{
    return xdotool({QStringLiteral("mousemove"), QString::number(at.x()), QString::number(at.y()),
                    QStringLiteral("click"), QStringLiteral("--repeat"), QString::number(count),
                    QStringLiteral("--delay"), QStringLiteral("80"), QStringLiteral("1")});
}

QList<WId> visibleWindowsNamed(const QString &pattern)
{
    return searchWindows({QStringLiteral("--onlyvisible"), QStringLiteral("--name"), pattern});
}

bool screenshot(const QString &path)
{
    bool ok = false;
    run(QStringLiteral("import"), {QStringLiteral("-window"), QStringLiteral("root"), path}, &ok);
    return ok;
}

} // namespace DesktopTools
