#include "LogRecorder.h"

namespace {
// The innermost recorder; message handlers are plain functions, so it has to be reached this way.
LogRecorder *current = nullptr;
} // namespace

LogRecorder::LogRecorder(const char *category)
    : m_category(category)
    , m_previous(qInstallMessageHandler(&LogRecorder::record))
    , m_outer(current)
{
    current = this;
}

LogRecorder::~LogRecorder()
{
    current = m_outer;
    qInstallMessageHandler(m_previous);
}

void LogRecorder::record(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    for (LogRecorder *recorder = current; recorder; recorder = recorder->m_outer) {
        if (context.category && recorder->m_category == context.category) {
            recorder->m_lines.append({type, text});
            return;
        }
    }
    // Only the outermost recorder knows the handler from before them all.
    LogRecorder *outermost = current;
    while (outermost && outermost->m_outer)
        outermost = outermost->m_outer;
    if (outermost && outermost->m_previous)
        outermost->m_previous(type, context, text);
}
