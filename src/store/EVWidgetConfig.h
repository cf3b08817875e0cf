#pragma once

#include <QColor>
#include <QDateTime>
#include <QMetaType>
#include <QPointF>
#include <QString>

class EVKeyedArchiver;
class EVKeyedUnarchiver;

// A widget as the earlier generation of the application kept it, one per entry of the keyed
// archive under "widgets" in the settings. Read once, to bring those widgets over.
class EVWidgetConfig
{
public:
    // Decodes by key. A position stored as fractions of the main screen comes back in screen
    // points; the lead time of the reminder always comes back as 300 minutes, whatever was
    // stored, as the earlier generation did.
    static EVWidgetConfig initWithCoder(EVKeyedUnarchiver &coder);
    // Encodes by key, the position always as fractions of the main screen.
    void encodeWithCoder(EVKeyedArchiver &coder) const;

    // The event date, twice, as the earlier generation described its widgets.
    QString description() const;

    QPointF position() const { return m_position; }
    void setPosition(const QPointF &value) { m_position = value; }
    quint64 style() const { return m_style; }
    void setStyle(quint64 value) { m_style = value; }
    QString eventTitle() const { return m_eventTitle; }
    void setEventTitle(const QString &value) { m_eventTitle = value; }
    QDateTime eventDate() const { return m_eventDate; }
    void setEventDate(const QDateTime &value) { m_eventDate = value; }
    bool enabledTime() const { return m_enabledTime; }
    void setEnabledTime(bool value) { m_enabledTime = value; }
    QString iconFile() const { return m_iconFile; }
    void setIconFile(const QString &value) { m_iconFile = value; }
    QColor textColor() const { return m_textColor; }
    void setTextColor(const QColor &value) { m_textColor = value; }
    quint64 size() const { return m_size; }
    void setSize(quint64 value) { m_size = value; }
    bool soundNotification() const { return m_soundNotification; }
    void setSoundNotification(bool value) { m_soundNotification = value; }
    QString soundFile() const { return m_soundFile; }
    void setSoundFile(const QString &value) { m_soundFile = value; }
    qint32 minutesBeforeAlert() const { return m_minutesBeforeAlert; }
    void setMinutesBeforeAlert(qint32 value) { m_minutesBeforeAlert = value; }
    quint64 dateFormat() const { return m_dateFormat; }
    void setDateFormat(quint64 value) { m_dateFormat = value; }
    bool usePosPercent() const { return m_usePosPercent; }
    void setUsePosPercent(bool value) { m_usePosPercent = value; }
    bool keepTop() const { return m_keepTop; }
    void setKeepTop(bool value) { m_keepTop = value; }

    bool operator==(const EVWidgetConfig &other) const = default;

private:
    QPointF m_position;
    quint64 m_style = 0;
    QString m_eventTitle;
    QDateTime m_eventDate;
    bool m_enabledTime = false;
    QString m_iconFile;
    QColor m_textColor;
    quint64 m_size = 0;
    bool m_soundNotification = false;
    QString m_soundFile;
    qint32 m_minutesBeforeAlert = 0;
    quint64 m_dateFormat = 0;
    bool m_usePosPercent = false;
    bool m_keepTop = false;
};

Q_DECLARE_METATYPE(EVWidgetConfig)
