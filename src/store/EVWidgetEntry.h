#pragma once

#include "store/EVManagedRecord.h"

#include <QByteArray>
#include <QColor>
#include <QDateTime>
#include <QList>
#include <QRectF>
#include <QString>

#include <optional>

class EVCustomStyle;

// One widget the user defined: its event, how it counts, how it looks and its reminder.
// Numbers that were never set read as 0 and booleans as false, but stay unset in the store.
class EVWidgetEntry : public EVManagedRecord
{
public:
    EVWidgetEntry() = default;
    ~EVWidgetEntry();

    // What resetDefault sets besides zeros and false; a stored value that cannot be used takes
    // the same.
    static constexpr int defaultCountdownUnit = 1;
    static constexpr int defaultDateformat = 4;
    static constexpr int defaultIntervalAlertUnit = 1;
    static constexpr int defaultIntervalBeforeAlert = 1;
    static constexpr int defaultStyleIndex = 9;
    // styleIndex 0 to 11 selects a built-in style, 12 and above a custom style by position.
    static constexpr int builtinStyleCount = 12;
    // The event lies this long after the entry's creation.
    static constexpr qint64 defaultEventDistanceSeconds = 2592000;
    static QString defaultEventTitle() { return QStringLiteral("Event Title"); }
    static QColor defaultTextcolor() { return QColor(Qt::white); }

    void resetDefault();

    int countdownUnit() const { return m_countdownUnit.value_or(0); }
    void setCountdownUnit(std::optional<int> value) { assign(m_countdownUnit, value); }
    int dateformat() const { return m_dateformat.value_or(0); }
    void setDateformat(std::optional<int> value) { assign(m_dateformat, value); }
    QDateTime eventCreationDate() const { return m_eventCreationDate; }
    void setEventCreationDate(const QDateTime &value) { assign(m_eventCreationDate, value); }
    QDateTime eventDate() const { return m_eventDate; }
    void setEventDate(const QDateTime &value) { assign(m_eventDate, value); }
    QString eventTitle() const { return m_eventTitle; }
    void setEventTitle(const QString &value) { assign(m_eventTitle, value); }
    QByteArray iconfile() const { return m_iconfile; }
    void setIconfile(const QByteArray &value) { assign(m_iconfile, value); }
    QString iconFilePath() const { return m_iconFilePath; }
    void setIconFilePath(const QString &value) { assign(m_iconFilePath, value); }
    int ignoredDayType() const { return m_ignoredDayType.value_or(0); }
    void setIgnoredDayType(std::optional<int> value) { assign(m_ignoredDayType, value); }
    int intervalAlertUnit() const { return m_intervalAlertUnit.value_or(0); }
    void setIntervalAlertUnit(std::optional<int> value) { assign(m_intervalAlertUnit, value); }
    int intervalBeforeAlert() const { return m_intervalBeforeAlert.value_or(0); }
    void setIntervalBeforeAlert(std::optional<int> value) { assign(m_intervalBeforeAlert, value); }
    int keepTop() const { return m_keepTop.value_or(0); }
    void setKeepTop(std::optional<int> value) { assign(m_keepTop, value); }
    bool lockWidget() const { return m_lockWidget.value_or(false); }
    void setLockWidget(std::optional<bool> value) { assign(m_lockWidget, value); }
    QString note() const { return m_note; }
    void setNote(const QString &value) { assign(m_note, value); }
    int priority() const { return m_priority.value_or(0); }
    void setPriority(std::optional<int> value) { assign(m_priority, value); }
    bool soundAlert() const { return m_soundAlert.value_or(false); }
    void setSoundAlert(std::optional<bool> value) { assign(m_soundAlert, value); }
    int styleIndex() const { return m_styleIndex.value_or(0); }
    void setStyleIndex(std::optional<int> value) { assign(m_styleIndex, value); }
    QColor textcolor() const { return m_textcolor; }
    void setTextcolor(const QColor &value) { assign(m_textcolor, value); }
    bool timeElement() const { return m_timeElement.value_or(false); }
    void setTimeElement(std::optional<bool> value) { assign(m_timeElement, value); }
    QString uuid() const { return m_uuid; }
    void setUuid(const QString &value) { assign(m_uuid, value); }
    QString widgetFrameDesc() const { return m_widgetFrameDesc; }
    void setWidgetFrameDesc(const QString &value) { assign(m_widgetFrameDesc, value); }

    // The widget window's frame in screen points, kept in widgetFrameDesc as fractions of the
    // main screen so that a widget keeps its relative place when the resolution changes. A
    // stored frame that no window could be made of or seen in (not finite, not of positive
    // size, larger than a few screens, or off every screen) reads as the zero rectangle, as an
    // unset one does.
    QRectF frame() const;
    void setFrame(const QRectF &frame);

    // The icon's picture data, kept as a file in the picture folder named by the uuid.
    QByteArray iconfileData();
    void setIconfileData(const QByteArray &data);

    // The widget's custom styles in the order they were added; adding and removing keeps each
    // style's widget() in step.
    const QList<EVCustomStyle *> &customStyles() const { return m_customStyles; }
    void addCustomStylesObject(EVCustomStyle *style);
    void removeObjectFromCustomStylesAtIndex(qsizetype index);

private:
    friend class EVStoreFile;
    friend class EVWidgetBackup;

    std::optional<int> m_countdownUnit;
    std::optional<int> m_dateformat;
    QDateTime m_eventCreationDate;
    QDateTime m_eventDate;
    QString m_eventTitle;
    QByteArray m_iconfile;
    QString m_iconFilePath;
    std::optional<int> m_ignoredDayType;
    std::optional<int> m_intervalAlertUnit;
    std::optional<int> m_intervalBeforeAlert;
    std::optional<int> m_keepTop;
    std::optional<bool> m_lockWidget;
    QString m_note;
    std::optional<int> m_priority;
    std::optional<bool> m_soundAlert;
    std::optional<int> m_styleIndex;
    QColor m_textcolor;
    std::optional<bool> m_timeElement;
    QString m_uuid;
    QString m_widgetFrameDesc;
    QList<EVCustomStyle *> m_customStyles;
};
