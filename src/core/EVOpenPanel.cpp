#include "core/EVOpenPanel.h"

#include <QFileDialog>

namespace {
EVOpenPanel::Responder &installedResponder()
{
    static EVOpenPanel::Responder responder;
    return responder;
}
} // namespace

void EVOpenPanel::setResponder(Responder responder)
{
    installedResponder() = std::move(responder);
}

QString EVOpenPanel::nameFilter() const
{
    // Name filters are matched with case on Linux, and pictures come with either.
    QStringList patterns;
    for (const QString &type : allowedFileTypes)
        patterns << QStringLiteral("*.") + type.toLower() << QStringLiteral("*.") + type.toUpper();
    return QFileDialog::tr("Allowed files (%1)").arg(patterns.join(QLatin1Char(' ')));
}

int EVOpenPanel::runModal()
{
    QStringList chosen;
    if (const Responder &responder = installedResponder()) {
        chosen = responder(*this);
    } else {
        QFileDialog dialog(window, title);
        dialog.setAcceptMode(QFileDialog::AcceptOpen);
        if (canChooseDirectories && !canChooseFiles)
            dialog.setFileMode(QFileDialog::Directory);
        else
            dialog.setFileMode(allowsMultipleSelection ? QFileDialog::ExistingFiles
                                                       : QFileDialog::ExistingFile);
        if (!allowedFileTypes.isEmpty())
            dialog.setNameFilter(nameFilter());
        if (dialog.exec() == QDialog::Accepted)
            chosen = dialog.selectedFiles();
    }
    m_urls.clear();
    for (const QString &path : std::as_const(chosen))
        m_urls.append(QUrl::fromLocalFile(path));
    return m_urls.isEmpty() ? cancelButton : okButton;
}
