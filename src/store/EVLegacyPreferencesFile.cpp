#include "store/EVLegacyPreferencesFile.h"

#include "core/EVUserDefaults.h"
#include "store/EVKeyedUnarchiver.h"
#include "store/EVPropertyList.h"

#include <QFile>

namespace {

// Far more than any preferences file; a larger file is not read into memory at all.
constexpr qint64 largestFile = 64 * 1024 * 1024;

EVLegacyPreferencesFile::Result finish(EVLegacyPreferencesFile::Result result, QString *message,
                                       const QString &text)
{
    if (message)
        *message = text;
    return result;
}

} // namespace

QByteArray EVLegacyPreferencesFile::widgetsArchive(const QByteArray &contents)
{
    const std::optional<EVPropertyList> list = EVPropertyList::fromData(contents);
    const EVPropertyList::Object *top = list ? list->top() : nullptr;
    const EVPropertyList::Object *widgets = top ? list->value(*top, EVLegacyWidgetsKey) : nullptr;
    if (!widgets || widgets->kind() != EVPropertyList::Kind::Data)
        return QByteArray();
    const QByteArray archive = widgets->toData();
    const QVariant root = EVKeyedUnarchiver::unarchiveObjectWithData(archive);
    return root.typeId() == QMetaType::QVariantList ? archive : QByteArray();
}

EVLegacyPreferencesFile::Result EVLegacyPreferencesFile::importIntoSettings(const QString &path,
                                                                            QString *message)
{
    EVUserDefaults defaults;
    return importIntoSettings(path, defaults, message);
}

EVLegacyPreferencesFile::Result EVLegacyPreferencesFile::importIntoSettings(const QString &path,
                                                                            QSettings &settings,
                                                                            QString *message)
{
    if (settings.value(EVTransferOldDataKey).toBool())
        return finish(Result::AlreadyImported, message,
                      QStringLiteral("The widgets of the earlier version were already imported "
                                     "(\"TransferOldData\" is set); nothing was changed."));

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return finish(Result::Unreadable, message,
                      QStringLiteral("Cannot read %1: %2.").arg(path, file.errorString()));
    if (file.size() > largestFile)
        return finish(
            Result::Unreadable, message,
            QStringLiteral("Cannot read %1: it is too large for a preferences file.").arg(path));
    const QByteArray archive = widgetsArchive(file.read(largestFile + 1));
    if (archive.isNull())
        return finish(Result::NoWidgetsArchive, message,
                      QStringLiteral("%1 holds no \"widgets\" archive of the earlier version; "
                                     "nothing was changed.")
                          .arg(path));

    settings.setValue(EVLegacyWidgetsKey, archive);
    settings.sync();
    if (settings.status() != QSettings::NoError)
        return finish(
            Result::SettingsNotWritten, message,
            QStringLiteral("Cannot write the settings file %1.").arg(settings.fileName()));
    return finish(
        Result::Imported, message,
        QStringLiteral("The widgets in %1 will be imported at the next launch.").arg(path));
}
