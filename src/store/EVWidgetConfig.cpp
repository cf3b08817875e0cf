#include "store/EVWidgetConfig.h"

#include "platform/EVMainScreen.h"
#include "store/EVKeyedArchiver.h"
#include "store/EVKeyedUnarchiver.h"

namespace {

QString stringValue(const QVariant &value)
{
    return value.typeId() == QMetaType::QString ? value.toString() : QString();
}

QDateTime dateValue(const QVariant &value)
{
    return value.typeId() == QMetaType::QDateTime ? value.toDateTime() : QDateTime();
}

QColor colorValue(const QVariant &value)
{
    return value.typeId() == QMetaType::QColor ? value.value<QColor>() : QColor();
}

// How the earlier generation printed a date: UTC with the zone's offset.
QString dateDescription(const QDateTime &date)
{
    if (!date.isValid())
        return QStringLiteral("(null)");
    return date.toUTC().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) + QStringLiteral(" +0000");
}

} // namespace

EVWidgetConfig EVWidgetConfig::initWithCoder(EVKeyedUnarchiver &coder)
{
    EVWidgetConfig config;
    config.m_usePosPercent = coder.decodeBoolForKey(QStringLiteral("usePosPercent"));
    config.m_position = coder.decodePointForKey(QStringLiteral("position"));
    if (config.m_usePosPercent) {
        const QSizeF screen = EVMainScreen::frame().size();
        config.m_position = QPointF(config.m_position.x() * screen.width(),
                                    config.m_position.y() * screen.height());
    }
    config.m_style = quint64(coder.decodeIntegerForKey(QStringLiteral("style")));
    config.m_eventTitle = stringValue(coder.decodeObjectForKey(QStringLiteral("eventTitle")));
    config.m_eventDate = dateValue(coder.decodeObjectForKey(QStringLiteral("eventDate")));
    config.m_enabledTime = coder.decodeBoolForKey(QStringLiteral("enabledTime"));
    config.m_iconFile = stringValue(coder.decodeObjectForKey(QStringLiteral("iconFile")));
    config.m_textColor = colorValue(coder.decodeObjectForKey(QStringLiteral("textColor")));
    config.m_size = quint64(coder.decodeIntegerForKey(QStringLiteral("size")));
    config.m_soundNotification = coder.decodeBoolForKey(QStringLiteral("soundNotification"));
    config.m_soundFile = stringValue(coder.decodeObjectForKey(QStringLiteral("soundFile")));
    // Whatever lead time "minutesBeforeAlert" holds, the earlier generation reminded five hours
    // ahead; the stored value is not read.
    config.m_minutesBeforeAlert = 300;
    config.m_dateFormat = quint64(coder.decodeIntegerForKey(QStringLiteral("dateFormat")));
    config.m_keepTop = coder.decodeBoolForKey(QStringLiteral("keepTop"));
    return config;
}

void EVWidgetConfig::encodeWithCoder(EVKeyedArchiver &coder) const
{
    // No guard against a screen of no size: the fractions are then written as they come out.
    const QSizeF screen = EVMainScreen::frame().size();
    coder.encodePoint(QPointF(m_position.x() / screen.width(), m_position.y() / screen.height()),
                      QStringLiteral("position"));
    coder.encodeInt32(qint32(m_style), QStringLiteral("style"));
    coder.encodeObject(m_eventTitle, QStringLiteral("eventTitle"));
    coder.encodeObject(m_eventDate, QStringLiteral("eventDate"));
    coder.encodeBool(m_enabledTime, QStringLiteral("enabledTime"));
    coder.encodeObject(m_iconFile, QStringLiteral("iconFile"));
    coder.encodeObject(m_textColor, QStringLiteral("textColor"));
    coder.encodeInt32(qint32(m_size), QStringLiteral("size"));
    coder.encodeBool(m_soundNotification, QStringLiteral("soundNotification"));
    coder.encodeObject(m_soundFile, QStringLiteral("soundFile"));
    coder.encodeInt32(m_minutesBeforeAlert, QStringLiteral("minutesBeforeAlert"));
    coder.encodeInt32(qint32(m_dateFormat), QStringLiteral("dateFormat"));
    // Positions are always written as fractions, whatever the field says.
    coder.encodeBool(true, QStringLiteral("usePosPercent"));
    coder.encodeBool(m_keepTop, QStringLiteral("keepTop"));
}

QString EVWidgetConfig::description() const
{
    // The date twice, not the title: the earlier generation's own description, kept as it was.
    return QStringLiteral("%1 %2").arg(dateDescription(m_eventDate), dateDescription(m_eventDate));
}
