#include "AppSeams.h"

#include "app/EVApplication.h"

#include <QDesktopServices>

AlertRecorder::AlertRecorder()
{
    EVAlert::setResponder([this](const EVAlert &alert) {
        m_shown.append(alert);
        return m_answers.isEmpty() ? 0 : m_answers.takeFirst();
    });
}

AlertRecorder::~AlertRecorder()
{
    EVAlert::setResponder({});
}

MailRecorder::MailRecorder()
{
    QDesktopServices::setUrlHandler(QStringLiteral("mailto"), this, "openUrl");
}

MailRecorder::~MailRecorder()
{
    QDesktopServices::unsetUrlHandler(QStringLiteral("mailto"));
}

TerminationRecorder::TerminationRecorder()
{
    EVApplication::setTerminateHandler([requests = m_requests] { ++*requests; });
}

TerminationRecorder::~TerminationRecorder()
{
    EVApplication::setTerminateHandler({});
}
