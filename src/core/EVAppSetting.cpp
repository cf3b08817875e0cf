#include "core/EVAppSetting.h"

#include "core/EVUserDefaults.h"

#include <QStringList>

namespace {

const QString recordKey = QStringLiteral("kAppSetting");
const QString openAtLoginKey = QStringLiteral("openAtLogin");
const QString showStatusBarIconKey = QStringLiteral("showStatusBarIcon");

// A stored boolean: a real one, or the words and digits a settings file spells them with.
std::optional<bool> booleanValue(const QVariant &value)
{
    if (value.typeId() == QMetaType::Bool)
        return value.toBool();
    const QString text = value.toString().trimmed().toLower();
    if (text == QLatin1String("true") || text == QLatin1String("1"))
        return true;
    if (text == QLatin1String("false") || text == QLatin1String("0"))
        return false;
    return std::nullopt;
}

} // namespace

EVAppSetting *EVAppSetting::shareAppSetting()
{
    static EVAppSetting setting = readFromUserDefaults();
    return &setting;
}

EVAppSetting EVAppSetting::readFromUserDefaults()
{
    const std::unique_ptr<QSettings> settings = EVUserDefaults::open();
    return decode(*settings).value_or(EVAppSetting());
}

std::optional<EVAppSetting> EVAppSetting::decode(QSettings &settings)
{
    if (settings.status() != QSettings::NoError)
        return std::nullopt;
    // A plain value under the record's name is not a record.
    if (settings.contains(recordKey))
        return std::nullopt;
    settings.beginGroup(recordKey);
    const QStringList keys = settings.childKeys();
    std::optional<bool> openAtLogin = false;
    std::optional<bool> showStatusBarIcon = false;
    if (keys.contains(openAtLoginKey))
        openAtLogin = booleanValue(settings.value(openAtLoginKey));
    if (keys.contains(showStatusBarIconKey))
        showStatusBarIcon = booleanValue(settings.value(showStatusBarIconKey));
    settings.endGroup();
    if (keys.isEmpty() || !openAtLogin || !showStatusBarIcon)
        return std::nullopt;

    EVAppSetting setting;
    setting.setOpenAtLogin(*openAtLogin);
    setting.setShowStatusBarIcon(*showStatusBarIcon);
    return setting;
}

void EVAppSetting::encode(QSettings &settings) const
{
    settings.remove(recordKey);
    settings.beginGroup(recordKey);
    settings.setValue(openAtLoginKey, m_openAtLogin);
    settings.setValue(showStatusBarIconKey, m_showStatusBarIcon);
    settings.endGroup();
}

void EVAppSetting::save() const
{
    const std::unique_ptr<QSettings> settings = EVUserDefaults::open();
    encode(*settings);
    settings->sync();
}
