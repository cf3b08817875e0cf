#pragma once

#include <QMessageBox>
#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

// A modal alert with fixed texts. Every alert of the application goes through run(), so that
// tests can see what would have been shown and answer it without a dialog.
class EVAlert
{
public:
    QMessageBox::Icon icon = QMessageBox::Warning;
    QString messageText;
    QString informativeText;
    // The first button is the default one; run() answers with the index of the chosen button.
    QStringList buttons;
    // When set, the alert is a sheet on that window: modal to it alone.
    QWidget *window = nullptr;

    // A check box under the texts when it has a title, in the bold system font when asked; a
    // click on it calls checkBoxToggled at once, while the alert is still up.
    struct CheckBox
    {
        QString title;
        bool bold = false;
        bool checked = false;
        std::function<void(bool checked)> toggled;
    };
    CheckBox checkBox;

    int run() const;

    using Responder = std::function<int(const EVAlert &)>;
    // Replaces the dialog for tests; an empty responder restores it.
    static void setResponder(Responder responder);
};
