#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

// Where the values of a JSON text stand, by line, so that a message about a value can send the
// reader to it. QJsonDocument keeps no positions, and it lets a repeated member name pass.
class EVJsonLines
{
public:
    // The text must already have been read without error by QJsonDocument.
    explicit EVJsonLines(const QByteArray &json);

    // The line (from 1) of a byte offset into the text.
    static int lineAtOffset(const QByteArray &text, qsizetype offset);

    // The line of the value at a path of member names and array positions (as decimal text):
    // where its member name stands in an object, where the value starts in an array. The line
    // of the nearest enclosing value that exists when the path is not in the text; 1 for none.
    int line(const QStringList &path) const;

    // The path of the first member name that one object holds twice, and the line of its
    // second appearance; an empty path when there is none.
    QStringList repeatedMember() const { return m_repeated; }
    int repeatedMemberLine() const { return m_repeatedLine; }

private:
    void skipSpace();
    void scanValue(const QStringList &path);
    void scanObject(const QStringList &path);
    void scanArray(const QStringList &path);
    QString scanString();
    void note(const QStringList &path, int line);

    const QByteArray &m_text;
    qsizetype m_position = 0;
    int m_line = 1;
    QHash<QString, int> m_lines;
    QStringList m_repeated;
    int m_repeatedLine = 0;
};
