#pragma once

#include <QColor>
#include <QString>

#include <functional>

class QWidget;

// The modal colour dialog. Every colour choice of the application goes through getColor(), so
// that tests can answer it without a dialog.
class EVColorPanel
{
public:
    // The colour the user chose starting from initial; an invalid colour when cancelled.
    static QColor getColor(const QColor &initial, QWidget *window, const QString &title);

    // Replaces the dialog for tests: answers with a colour, an invalid one for a cancel. An
    // empty responder restores the dialog.
    using Responder = std::function<QColor(const QColor &initial)>;
    static void setResponder(Responder responder);
};
