#include "platform/EVPaths.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace EVPaths {

QString applicationFilesDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/com.velto.tallyvane");
}

QString documentsDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

QString pictureFolder()
{
    const QString documents = documentsDirectory();
    const QString folder = documents + QStringLiteral("/imagedata");
    if (QFileInfo(folder).isDir())
        return folder;
    if (QDir().mkpath(folder))
        return folder;
    return documents;
}

} // namespace EVPaths
