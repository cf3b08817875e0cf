#pragma once

#include <QColor>
#include <QProcess>
#include <QRect>

// A tray host on the test desktop: trayer, as a panel strip at the top right in the given colour,
// ended by its process id when the object goes.
class TrayPanel
{
public:
    explicit TrayPanel(const QColor &colour);
    ~TrayPanel();
    TrayPanel(const TrayPanel &) = delete;
    TrayPanel &operator=(const TrayPanel &) = delete;

    bool isRunning() const { return m_trayer.state() == QProcess::Running; }

    // The strip on the screen once trayer has mapped it; an empty rectangle until then.
    QRect geometry() const;

private:
    QProcess m_trayer;
};
