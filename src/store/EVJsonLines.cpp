#include "store/EVJsonLines.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace {

// A separator that no member name of a backup holds.
QString pathKey(const QStringList &path)
{
    return path.join(QChar(0x1f));
}

} // namespace

EVJsonLines::EVJsonLines(const QByteArray &json)
    : m_text(json)
{
    skipSpace();
    scanValue({});
}

int EVJsonLines::lineAtOffset(const QByteArray &text, qsizetype offset)
{
    const qsizetype end = std::clamp<qsizetype>(offset, 0, text.size());
    return int(QByteArrayView(text).first(end).count('\n')) + 1;
}

int EVJsonLines::line(const QStringList &path) const
{
    for (qsizetype length = path.size(); length > 0; --length) {
        const auto found = m_lines.constFind(pathKey(path.first(length)));
        if (found != m_lines.constEnd())
            return found.value();
    }
    return 1;
}

void EVJsonLines::note(const QStringList &path, int line)
{
    const QString key = pathKey(path);
    if (m_lines.contains(key)) {
        if (m_repeated.isEmpty()) {
            m_repeated = path;
            m_repeatedLine = line;
        }
        return;
    }
    m_lines.insert(key, line);
}

void EVJsonLines::skipSpace()
{
    while (m_position < m_text.size()) {
        const char c = m_text.at(m_position);
        if (c == '\n')
            ++m_line;
        else if (c != ' ' && c != '\t' && c != '\r')
            return;
        ++m_position;
    }
}

void EVJsonLines::scanValue(const QStringList &path)
{
    if (m_position >= m_text.size())
        return;
    const char c = m_text.at(m_position);
    if (c == '{') {
        scanObject(path);
    } else if (c == '[') {
        scanArray(path);
    } else if (c == '"') {
        scanString();
    } else {
        // A number or a literal: runs to the next delimiter.
        while (m_position < m_text.size() &&
               !QByteArrayView(",]} \t\r\n").contains(m_text.at(m_position)))
            ++m_position;
    }
}

void EVJsonLines::scanObject(const QStringList &path)
{
    ++m_position; // {
    skipSpace();
    while (m_position < m_text.size() && m_text.at(m_position) != '}') {
        const int keyLine = m_line;
        QStringList memberPath = path;
        memberPath.append(scanString());
        note(memberPath, keyLine);
        skipSpace();
        ++m_position; // :
        skipSpace();
        scanValue(memberPath);
        skipSpace();
        if (m_position < m_text.size() && m_text.at(m_position) == ',') {
            ++m_position;
            skipSpace();
        }
    }
    ++m_position; // }
}

void EVJsonLines::scanArray(const QStringList &path)
{
    ++m_position; // [
    skipSpace();
    int index = 0;
    while (m_position < m_text.size() && m_text.at(m_position) != ']') {
        QStringList elementPath = path;
        elementPath.append(QString::number(index++));
        note(elementPath, m_line);
        scanValue(elementPath);
        skipSpace();
        if (m_position < m_text.size() && m_text.at(m_position) == ',') {
            ++m_position;
            skipSpace();
        }
    }
    ++m_position; // ]
}

QString EVJsonLines::scanString()
{
    const qsizetype start = m_position;
    ++m_position; // opening quote
    while (m_position < m_text.size() && m_text.at(m_position) != '"') {
        if (m_text.at(m_position) == '\\')
            ++m_position;
        ++m_position;
    }
    ++m_position; // closing quote
    // The text is valid JSON, so the quoted run decodes as a JSON string of its own.
    const QByteArray quoted = "[" + m_text.mid(start, m_position - start) + "]";
    return QJsonDocument::fromJson(quoted).array().at(0).toString();
}
