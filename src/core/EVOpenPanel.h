#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>

class QWidget;

// A modal dialog that asks for files to open. Every open dialog of the application goes
// through runModal(), so that tests can answer it without a dialog.
class EVOpenPanel
{
public:
    static constexpr int okButton = 1;
    static constexpr int cancelButton = 0;

    QString title;
    // File name extensions without the dot, matched without regard to case; empty allows any.
    QStringList allowedFileTypes;
    bool canChooseFiles = true;
    bool canChooseDirectories = false;
    bool allowsMultipleSelection = false;
    // The window the dialog belongs to, if any.
    QWidget *window = nullptr;

    // okButton when the user chose (URLs() holds the choice), cancelButton otherwise.
    int runModal();
    const QList<QUrl> &URLs() const { return m_urls; }

    // Replaces the dialog for tests: answers with the chosen paths, none for a cancel. An
    // empty responder restores the dialog.
    using Responder = std::function<QStringList(const EVOpenPanel &)>;
    static void setResponder(Responder responder);

private:
    QString nameFilter() const;

    QList<QUrl> m_urls;
};
