#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

// The files in the picture folder that hold the records' pictures, one per record, named by
// the record's uuid.
namespace EVPictureFile {

// A record's picture setter: deletes the record's file (errors ignored), then writes the data
// atomically unless it is none. Returns the new value of the record's path field: none when
// cleared, the uuid when written, and nothing when the write failed, in which case the field
// is deliberately left as it was although its old file is gone. A uuid that is not a UUID
// names no file: nothing is deleted or written, as for a failed write.
std::optional<QString> replace(const QString &uuid, const QByteArray &data);

// Whether a path field's value names a file inside the picture folder: a plain file name, not
// a path that leads elsewhere.
bool isFileName(const QString &fileName);

// The contents of the named file in the picture folder; none when there is no such file, or
// when the name is not a plain file name.
QByteArray read(const QString &fileName);

// A record's picture getter: the file named by the path field; otherwise legacy inline data,
// which is moved to a file through the setter and then dropped, unless the file could not be
// written (so that nothing is lost).
struct PictureFields
{
    const QString &uuid;
    const QString &path;
    const QByteArray &inlineData;
    std::function<void(const QByteArray &)> setData;
    std::function<void()> clearInlineData;
};
QByteArray readMigrating(const PictureFields &fields);

} // namespace EVPictureFile
