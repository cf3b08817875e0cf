#include "core/EVAlert.h"

#include <QCheckBox>
#include <QPushButton>

namespace {
EVAlert::Responder &installedResponder()
{
    static EVAlert::Responder responder;
    return responder;
}
} // namespace

void EVAlert::setResponder(Responder responder)
{
    installedResponder() = std::move(responder);
}

int EVAlert::run() const
{
    if (const Responder &responder = installedResponder())
        return responder(*this);

    QMessageBox box(icon, QString(), messageText, QMessageBox::NoButton, window);
    if (window)
        box.setWindowModality(Qt::WindowModal);
    box.setInformativeText(informativeText);
    if (!checkBox.title.isEmpty()) {
        auto *check = new QCheckBox(checkBox.title, &box);
        check->setObjectName(QStringLiteral("alertCheckBox"));
        check->setChecked(checkBox.checked);
        if (checkBox.bold) {
            QFont font = check->font();
            font.setBold(true);
            font.setPixelSize(12);
            check->setFont(font);
        }
        if (checkBox.toggled)
            QObject::connect(check, &QCheckBox::toggled, check, checkBox.toggled);
        box.setCheckBox(check);
    }
    QList<QAbstractButton *> added;
    for (qsizetype i = 0; i < buttons.size(); ++i) {
        // Buttons after the first one dismiss the alert, as "Cancel" does.
        const auto role = i == 0 ? QMessageBox::AcceptRole : QMessageBox::RejectRole;
        QPushButton *button = box.addButton(buttons.at(i), role);
        if (i == 0)
            box.setDefaultButton(button);
        added.append(button);
    }
    box.exec();
    const qsizetype chosen = added.indexOf(box.clickedButton());
    return chosen < 0 ? int(buttons.size()) - 1 : int(chosen);
}
