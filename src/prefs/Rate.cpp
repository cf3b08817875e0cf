#include "prefs/Rate.h"

#include "core/EVAlert.h"
#include "core/EVAppInfo.h"
#include "core/EVUserDefaults.h"

#include <QDesktopServices>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>

namespace {

Rate::RandomSource &installedRandomSource()
{
    static Rate::RandomSource source;
    return source;
}

// A text of the table filled with the application's name; a text without a place for it (a
// missing key shows the key) is shown as it is.
QString withName(const QString &format, const QString &name)
{
    return format.contains(QLatin1String("%1")) ? format.arg(name) : format;
}

quint32 draw()
{
    if (const Rate::RandomSource &source = installedRandomSource())
        return source();
    return QRandomGenerator::system()->generate();
}

} // namespace

Rate *Rate::shareRate()
{
    static Rate rate;
    return &rate;
}

Rate::Rate(const QString &stringTablePath)
    : m_stringTablePath(stringTablePath)
{}

void Rate::setRandomSource(RandomSource source)
{
    installedRandomSource() = std::move(source);
}

QString Rate::localizedStringForKey(const QString &key, const QString &defaultText) const
{
    QFile file(m_stringTablePath);
    if (file.open(QIODevice::ReadOnly)) {
        const QJsonValue text = QJsonDocument::fromJson(file.readAll()).object().value(key);
        if (text.isString())
            return text.toString();
    }
    return defaultText.isNull() ? key : defaultText;
}

void Rate::showRateAlert(QWidget *window)
{
    if (EVUserDefaults::integerForKey(rateAppKey) != 0)
        return;
    if (draw() % 4 != 2)
        return;

    const QString name = EVAppInfo::name();
    EVAlert alert;
    alert.icon = QMessageBox::Information;
    alert.messageText = withName(localizedStringForKey(QStringLiteral("iRateMessageTitle")), name);
    alert.informativeText =
        withName(localizedStringForKey(QStringLiteral("iRateAppMessage")), name);
    alert.buttons = {localizedStringForKey(QStringLiteral("iRateRateButton")),
                     localizedStringForKey(QStringLiteral("iRateCancelButton")),
                     localizedStringForKey(QStringLiteral("iRateRemindButton"))};
    alert.window = window;
    // Buttons in order: rate (the default), decline, ask later; closing the sheet asks later.
    static constexpr int returnCodes[] = {rateReturnCode, declineReturnCode, remindReturnCode};
    const int chosen = alert.run();
    alertDidEndReturnCodeContextInfo(alert, chosen >= 0 && chosen < 3 ? returnCodes[chosen]
                                                                      : remindReturnCode);
}

void Rate::alertDidEndReturnCodeContextInfo(const EVAlert &, int returnCode)
{
    if (returnCode == rateReturnCode) {
        // Whether the page opened is not checked: the user chose to rate.
        QDesktopServices::openUrl(QUrl(storePageAddress));
        EVUserDefaults::setInteger(rateAppKey, 1);
    } else if (returnCode == declineReturnCode) {
        EVUserDefaults::setInteger(rateAppKey, -1);
    }
}
