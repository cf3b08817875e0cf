#pragma once

#include "core/EVColorPanel.h"
#include "core/EVOpenPanel.h"

#include <QColor>
#include <QList>
#include <QStringList>

// Answers every open dialog with queued choices (a cancel when none is queued) and keeps what
// was shown, instead of opening a dialog.
class OpenPanelRecorder
{
public:
    OpenPanelRecorder();
    ~OpenPanelRecorder();
    OpenPanelRecorder(const OpenPanelRecorder &) = delete;
    OpenPanelRecorder &operator=(const OpenPanelRecorder &) = delete;

    void queueChoice(const QString &path) { m_choices.append(QStringList{path}); }
    void queueCancel() { m_choices.append(QStringList()); }
    const QList<EVOpenPanel> &shown() const { return m_shown; }

private:
    QList<EVOpenPanel> m_shown;
    QList<QStringList> m_choices;
};

// Answers every colour dialog with queued colours (a cancel when none is queued) and counts
// the dialogs, instead of opening one.
class ColorPanelRecorder
{
public:
    ColorPanelRecorder();
    ~ColorPanelRecorder();
    ColorPanelRecorder(const ColorPanelRecorder &) = delete;
    ColorPanelRecorder &operator=(const ColorPanelRecorder &) = delete;

    void queueColor(const QColor &color) { m_colors.append(color); }
    // The colour each dialog started from.
    const QList<QColor> &shown() const { return m_shown; }

private:
    QList<QColor> m_shown;
    QList<QColor> m_colors;
};
