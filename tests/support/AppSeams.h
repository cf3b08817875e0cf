#pragma once

#include "core/EVAlert.h"

#include <QList>
#include <QObject>
#include <QUrl>

#include <memory>

// Answers every alert with queued answers (the default button when none is queued) and keeps
// what was shown, instead of opening a dialog.
class AlertRecorder
{
public:
    AlertRecorder();
    ~AlertRecorder();
    AlertRecorder(const AlertRecorder &) = delete;
    AlertRecorder &operator=(const AlertRecorder &) = delete;

    void queueAnswer(int buttonIndex) { m_answers.append(buttonIndex); }
    const QList<EVAlert> &shown() const { return m_shown; }

private:
    QList<EVAlert> m_shown;
    QList<int> m_answers;
};

// Receives the URLs of one scheme that the application asks the desktop to open.
class UrlRecorder : public QObject
{
    Q_OBJECT

public:
    explicit UrlRecorder(const QString &scheme);
    ~UrlRecorder() override;

    const QList<QUrl> &opened() const { return m_opened; }

public Q_SLOTS:
    void openUrl(const QUrl &url) { m_opened.append(url); }

private:
    QString m_scheme;
    QList<QUrl> m_opened;
};

// Receives the "mailto:" URLs the application asks the desktop to open.
class MailRecorder : public UrlRecorder
{
public:
    MailRecorder()
        : UrlRecorder(QStringLiteral("mailto"))
    {}
};

// Counts the application's termination requests instead of ending the process.
class TerminationRecorder
{
public:
    TerminationRecorder();
    ~TerminationRecorder();
    TerminationRecorder(const TerminationRecorder &) = delete;
    TerminationRecorder &operator=(const TerminationRecorder &) = delete;

    int requests() const { return *m_requests; }

private:
    std::shared_ptr<int> m_requests = std::make_shared<int>(0);
};
