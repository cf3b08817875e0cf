#include "DialogSeams.h"

OpenPanelRecorder::OpenPanelRecorder()
{
    EVOpenPanel::setResponder([this](const EVOpenPanel &panel) {
        m_shown.append(panel);
        return m_choices.isEmpty() ? QStringList() : m_choices.takeFirst();
    });
}

OpenPanelRecorder::~OpenPanelRecorder()
{
    EVOpenPanel::setResponder({});
}

ColorPanelRecorder::ColorPanelRecorder()
{
    EVColorPanel::setResponder([this](const QColor &initial) {
        m_shown.append(initial);
        return m_colors.isEmpty() ? QColor() : m_colors.takeFirst();
    });
}

ColorPanelRecorder::~ColorPanelRecorder()
{
    EVColorPanel::setResponder({});
}
