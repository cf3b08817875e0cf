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

UrlRecorder::UrlRecorder(const QString &scheme)
    : m_scheme(scheme)
{
    QDesktopServices::setUrlHandler(m_scheme, this, "openUrl");
}

UrlRecorder::~UrlRecorder()
{
    QDesktopServices::unsetUrlHandler(m_scheme);
}

TerminationRecorder::TerminationRecorder()
{
    EVApplication::setTerminateHandler([requests = m_requests] { ++*requests; });
}

TerminationRecorder::~TerminationRecorder()
{
    EVApplication::setTerminateHandler({});
}
