#include "core/EVColorPanel.h"

#include <QColorDialog>

namespace {
EVColorPanel::Responder &installedResponder()
{
    static EVColorPanel::Responder responder;
    return responder;
}
} // namespace

void EVColorPanel::setResponder(Responder responder)
{
    installedResponder() = std::move(responder);
}

QColor EVColorPanel::getColor(const QColor &initial, QWidget *window, const QString &title)
{
    if (const Responder &responder = installedResponder())
        return responder(initial);
    return QColorDialog::getColor(initial, window, title);
}
