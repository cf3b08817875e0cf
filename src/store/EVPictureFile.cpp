#include "store/EVPictureFile.h"

#include "platform/EVPaths.h"
#include "store/EVManagedRecord.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace EVPictureFile {

std::optional<QString> replace(const QString &uuid, const QByteArray &data)
{
    if (!EVManagedRecord::isUuid(uuid))
        return std::nullopt;
    const QString path = EVPaths::pictureFolder() + QLatin1Char('/') + uuid;
    if (QFileInfo::exists(path))
        QFile::remove(path);
    if (data.isNull())
        return QString();

    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit())
        return std::nullopt;
    return uuid;
}

bool isFileName(const QString &fileName)
{
    return !fileName.isEmpty() && fileName != QLatin1String(".") &&
           fileName != QLatin1String("..") && !fileName.contains(QLatin1Char('/')) &&
           !fileName.contains(QChar(u'\0'));
}

QByteArray read(const QString &fileName)
{
    if (!isFileName(fileName))
        return {};
    QFile file(EVPaths::pictureFolder() + QLatin1Char('/') + fileName);
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    QByteArray data = file.readAll();
    if (data.isNull())
        data = QByteArray(""); // an empty file is an empty picture, not a missing one
    return data;
}

QByteArray readMigrating(const PictureFields &fields)
{
    const QByteArray stored = read(fields.path);
    if (!stored.isNull())
        return stored;
    if (fields.inlineData.isEmpty())
        return {};

    const QByteArray legacy = fields.inlineData;
    fields.setData(legacy);
    // Only a file written under the record's own name makes the inline copy redundant.
    if (EVManagedRecord::isUuid(fields.uuid) && fields.path == fields.uuid)
        fields.clearInlineData();
    return legacy;
}

} // namespace EVPictureFile
