#include "store/EVCalendarFile.h"

#include "core/EVClock.h"
#include "store/EVCalendarLines.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVCustomStyle.h"
#include "store/EVManagedRecord.h"
#include "store/EVObjectContext.h"
#include "store/EVReminderLead.h"
#include "store/EVWidgetEntry.h"

#include <QDateTime>
#include <QSet>
#include <QTimeZone>
#include <QUuid>

#include <libical/ical.h>

#include <memory>
#include <optional>
#include <vector>

namespace {

// Ours alone: what iCalendar cannot say about a widget, for a file to import back unchanged.
const char *const eventDateProperty = "X-TALLYVANE-EVENT-DATE";
const char *const leadProperty = "X-TALLYVANE-LEAD";
// Widget identifiers made from other producers' UIDs, always the same for one UID, so that a
// calendar imported twice finds its widgets the second time.
const QUuid uidNamespace(QStringLiteral("{6b3f2a1e-58c4-4d0e-9a27-3c1f0e7d9b42}"));
// Occurrences of a rule followed at most to find the next one.
constexpr int maximumOccurrences = 100000;

struct ComponentDeleter
{
    void operator()(icalcomponent *component) const { icalcomponent_free(component); }
};
using Component = std::unique_ptr<icalcomponent, ComponentDeleter>;

// The library aborts on its own errors unless told otherwise; a bad file must not end us.
void keepLibraryErrorsNonFatal()
{
    icalerror_set_errors_are_fatal(0);
}

QString text(const char *utf8)
{
    return utf8 ? QString::fromUtf8(utf8) : QString();
}

QString xProperty(icalcomponent *component, const char *name)
{
    for (icalproperty *property = icalcomponent_get_first_property(component, ICAL_X_PROPERTY);
         property; property = icalcomponent_get_next_property(component, ICAL_X_PROPERTY)) {
        if (qstricmp(icalproperty_get_x_name(property), name) == 0)
            return text(icalproperty_get_x(property));
    }
    return QString();
}

void addXProperty(icalcomponent *component, const char *name, const QString &value)
{
    icalproperty *property = icalproperty_new_x(value.toUtf8().constData());
    icalproperty_set_x_name(property, name);
    icalcomponent_add_property(component, property);
}

// Where the wall-clock times of one property are: in UTC, in a zone the calendar defines or
// the library knows, in a zone only the system knows, or floating (local time).
struct TimeFrame
{
    bool utc = false;
    icaltimezone *calendarZone = nullptr;
    QTimeZone systemZone;
};

// The frame of a date-time property, or why it has none.
std::optional<TimeFrame> frameOf(icalcomponent *event, icalproperty *property,
                                 const icaltimetype &value, QString *why)
{
    TimeFrame frame;
    if (value.is_date)
        return frame;
    if (icaltime_is_utc(value)) {
        frame.utc = true;
        return frame;
    }
    icalparameter *parameter = icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER);
    if (!parameter)
        return frame;
    const char *tzid = icalparameter_get_tzid(parameter);
    for (icalcomponent *c = event; c && !frame.calendarZone; c = icalcomponent_get_parent(c))
        frame.calendarZone = icalcomponent_get_timezone(c, tzid);
    if (!frame.calendarZone)
        frame.calendarZone = icaltimezone_get_builtin_timezone_from_tzid(tzid);
    if (!frame.calendarZone)
        frame.calendarZone = icaltimezone_get_builtin_timezone(tzid);
    if (frame.calendarZone)
        return frame;
    // Zones named as Windows names them, or only known to the system's database.
    const QByteArray name(tzid);
    frame.systemZone = QTimeZone(name);
    const QByteArray windowsZone = QTimeZone::windowsIdToDefaultIanaId(name);
    if (!frame.systemZone.isValid() && !windowsZone.isEmpty())
        frame.systemZone = QTimeZone(windowsZone);
    if (!frame.systemZone.isValid()) {
        *why = QStringLiteral("the time zone \"%1\" is neither defined in the file nor known")
                   .arg(QString::fromUtf8(name));
        return std::nullopt;
    }
    return frame;
}

// A wall-clock time in a zone (local time for none). One that the change to summer time skips
// is read with the offset before the change, as calendar programs read it.
QDateTime wallClock(const QDate &date, const QTime &time, const QTimeZone &zone)
{
    const QDateTime exact = zone.isValid() ? QDateTime(date, time, zone) : QDateTime(date, time);
    if (exact.isValid())
        return exact.toLocalTime();
    const QDateTime dayStart = zone.isValid() ? date.startOfDay(zone) : date.startOfDay();
    return QDateTime(date, time, Qt::OffsetFromUTC, dayStart.offsetFromUtc()).toLocalTime();
}

// The instant in local time; none for a date or time that does not exist.
std::optional<QDateTime> toLocal(const icaltimetype &value, const TimeFrame &frame)
{
    const QDate date(value.year, value.month, value.day);
    if (!date.isValid())
        return std::nullopt;
    // A day whose midnight summer time skips starts when its first hour does.
    if (value.is_date)
        return date.startOfDay();
    const QTime time(value.hour, value.minute, value.second);
    if (!time.isValid())
        return std::nullopt;
    if (frame.utc)
        return QDateTime(date, time, Qt::UTC).toLocalTime();
    if (frame.calendarZone)
        return QDateTime::fromSecsSinceEpoch(
            qint64(icaltime_as_timet_with_zone(value, frame.calendarZone)));
    return wallClock(date, time, frame.systemZone);
}

// The wall-clock time of an instant in a frame, for the recurrence iterator.
icaltimetype inFrame(const QDateTime &instant, const TimeFrame &frame, bool isDate)
{
    if (frame.calendarZone)
        return icaltime_from_timet_with_zone(time_t(instant.toSecsSinceEpoch()), isDate,
                                             frame.calendarZone);
    const QDateTime there = frame.utc                    ? instant.toUTC()
                            : frame.systemZone.isValid() ? instant.toTimeZone(frame.systemZone)
                                                         : instant.toLocalTime();
    icaltimetype value = isDate ? icaltime_null_date() : icaltime_null_time();
    value.year = there.date().year();
    value.month = there.date().month();
    value.day = there.date().day();
    if (!isDate) {
        value.hour = there.time().hour();
        value.minute = there.time().minute();
        value.second = there.time().second();
    }
    if (frame.utc)
        value.zone = icaltimezone_get_utc_timezone();
    return value;
}

struct ImportedEvent
{
    QString uuid; // null: the new widget keeps its own
    QString uid;
    QString title;
    QString note;
    QDateTime date;
    bool timeElement = false;
    std::optional<EVReminderLead> reminder;
    // A changed occurrence of a recurring event: its series gives the widget.
    bool isOverride = false;
};

class EventReader
{
public:
    EventReader(icalcomponent *event, const EVCalendarLines::Event &lines)
        : m_event(event)
        , m_lines(lines)
    {}

    // The event, or the message and line of its first error.
    bool read(ImportedEvent *imported, QString *error, int *line);

private:
    bool fail(int line, const QString &text)
    {
        *m_error = text;
        *m_line = line;
        return false;
    }
    bool readStart(ImportedEvent *imported);
    bool nextOccurrence(const icaltimetype &start, const TimeFrame &frame, QDateTime *date);
    std::optional<QDateTime> propertyTime(icalproperty *property, const icaltimetype &value,
                                          const char *name);
    std::optional<EVReminderLead> reminder() const;
    static QString widgetUuid(const QString &uid);

    icalcomponent *m_event;
    const EVCalendarLines::Event &m_lines;
    QString *m_error = nullptr;
    int *m_line = nullptr;
};

bool EventReader::read(ImportedEvent *imported, QString *error, int *line)
{
    m_error = error;
    m_line = line;
    const QList<icalcomponent *> parts = [this] {
        QList<icalcomponent *> components{m_event};
        for (icalcomponent *alarm =
                 icalcomponent_get_first_component(m_event, ICAL_VALARM_COMPONENT);
             alarm; alarm = icalcomponent_get_next_component(m_event, ICAL_VALARM_COMPONENT))
            components.append(alarm);
        return components;
    }();
    for (icalcomponent *part : parts) {
        for (icalproperty *problem =
                 icalcomponent_get_first_property(part, ICAL_XLICERROR_PROPERTY);
             problem; problem = icalcomponent_get_next_property(part, ICAL_XLICERROR_PROPERTY)) {
            const QString message = text(icalproperty_get_xlicerror(problem)).simplified();
            // A property without a value is as good as none, as many producers write it.
            if (message.startsWith(QLatin1String("No value for ")))
                continue;
            return fail(EVCalendarLines::lineOfMessage(m_lines, message), message);
        }
    }

    imported->uid = text(icalcomponent_get_uid(m_event));
    imported->uuid = widgetUuid(imported->uid);
    imported->isOverride =
        icalcomponent_get_first_property(m_event, ICAL_RECURRENCEID_PROPERTY) != nullptr;
    imported->title = text(icalcomponent_get_summary(m_event));
    if (imported->title.isNull())
        imported->title = QStringLiteral("");
    imported->note = text(icalcomponent_get_description(m_event));
    if (imported->note.isNull())
        imported->note = QStringLiteral("");
    imported->reminder = reminder();
    return readStart(imported);
}

bool EventReader::readStart(ImportedEvent *imported)
{
    icalproperty *property = icalcomponent_get_first_property(m_event, ICAL_DTSTART_PROPERTY);
    if (!property)
        return fail(m_lines.beginLine, QStringLiteral("the event has no DTSTART"));
    const icaltimetype start = icalproperty_get_dtstart(property);
    const int line = EVCalendarLines::lineOf(m_lines, QStringLiteral("DTSTART"));
    QString why;
    const std::optional<TimeFrame> frame = frameOf(m_event, property, start, &why);
    if (!frame)
        return fail(line, QStringLiteral("DTSTART: %1").arg(why));
    const std::optional<QDateTime> local = toLocal(start, *frame);
    if (!local)
        return fail(line, QStringLiteral("DTSTART %1 is not a real date and time")
                              .arg(text(icalproperty_get_value_as_string(property))));
    imported->timeElement = !start.is_date;
    imported->date = *local;

    const bool recurs = icalcomponent_get_first_property(m_event, ICAL_RRULE_PROPERTY) ||
                        icalcomponent_get_first_property(m_event, ICAL_RDATE_PROPERTY);
    if (recurs)
        return nextOccurrence(start, *frame, &imported->date);

    // Our own exports carry the exact instant, which a date or whole seconds cannot hold.
    const QDateTime exact =
        QDateTime::fromString(xProperty(m_event, eventDateProperty), Qt::ISODateWithMs)
            .toLocalTime();
    const bool agrees = exact.isValid() && (start.is_date ? exact.date() == local->date()
                                                          : qAbs(exact.msecsTo(*local)) < 1000);
    if (agrees)
        imported->date = exact;
    return true;
}

std::optional<QDateTime> EventReader::propertyTime(icalproperty *property,
                                                   const icaltimetype &value, const char *name)
{
    QString why;
    const std::optional<TimeFrame> frame = frameOf(m_event, property, value, &why);
    const std::optional<QDateTime> local = frame ? toLocal(value, *frame) : std::nullopt;
    if (!local) {
        fail(EVCalendarLines::lineOf(m_lines, QString::fromLatin1(name)),
             frame ? QStringLiteral("%1 %2 is not a real date and time")
                         .arg(QString::fromLatin1(name),
                              text(icalproperty_get_value_as_string(property)))
                   : QStringLiteral("%1: %2").arg(QString::fromLatin1(name), why));
    }
    return local;
}

bool EventReader::nextOccurrence(const icaltimetype &start, const TimeFrame &frame, QDateTime *date)
{
    const QDateTime now = EVClock::now();
    const bool isDate = start.is_date;
    // An all-day event is still to come on its own day.
    const auto ahead = [&](const QDateTime &when) {
        return isDate ? when.date() >= now.toLocalTime().date() : when >= now;
    };

    QSet<qint64> excluded;
    for (icalproperty *p = icalcomponent_get_first_property(m_event, ICAL_EXDATE_PROPERTY); p;
         p = icalcomponent_get_next_property(m_event, ICAL_EXDATE_PROPERTY)) {
        const std::optional<QDateTime> when = propertyTime(p, icalproperty_get_exdate(p), "EXDATE");
        if (!when)
            return false;
        excluded.insert(when->toMSecsSinceEpoch());
    }

    std::optional<QDateTime> next;
    std::optional<QDateTime> last;
    // True for an occurrence still to come.
    const auto consider = [&](const QDateTime &when) {
        if (excluded.contains(when.toMSecsSinceEpoch()))
            return false;
        if (!ahead(when)) {
            if (!last || when > *last)
                last = when;
            return false;
        }
        if (!next || when < *next)
            next = when;
        return true;
    };
    consider(*date);

    for (icalproperty *p = icalcomponent_get_first_property(m_event, ICAL_RDATE_PROPERTY); p;
         p = icalcomponent_get_next_property(m_event, ICAL_RDATE_PROPERTY)) {
        const icaldatetimeperiodtype rdate = icalproperty_get_rdate(p);
        const icaltimetype value =
            icaltime_is_null_time(rdate.time) ? rdate.period.start : rdate.time;
        const std::optional<QDateTime> when = propertyTime(p, value, "RDATE");
        if (!when)
            return false;
        consider(*when);
    }

    for (icalproperty *p = icalcomponent_get_first_property(m_event, ICAL_RRULE_PROPERTY); p;
         p = icalcomponent_get_next_property(m_event, ICAL_RRULE_PROPERTY)) {
        const icalrecurrencetype rule = icalproperty_get_rrule(p);
        const int line = EVCalendarLines::lineOf(m_lines, QStringLiteral("RRULE"));
        std::unique_ptr<icalrecur_iterator, void (*)(icalrecur_iterator *)> occurrences(
            icalrecur_iterator_new(rule, start), icalrecur_iterator_free);
        if (!occurrences)
            return fail(line, QStringLiteral("RRULE cannot be followed"));
        // Rules of hours, minutes or seconds start near now rather than at the first
        // occurrence, which may lie millions of occurrences back.
        if (rule.freq == ICAL_HOURLY_RECURRENCE || rule.freq == ICAL_MINUTELY_RECURRENCE ||
            rule.freq == ICAL_SECONDLY_RECURRENCE) {
            if (rule.count == 0 && !ahead(*date))
                icalrecur_iterator_set_start(occurrences.get(),
                                             inFrame(now.addDays(-2), frame, isDate));
        }
        int followed = 0;
        for (icaltimetype value = icalrecur_iterator_next(occurrences.get());
             !icaltime_is_null_time(value); value = icalrecur_iterator_next(occurrences.get())) {
            if (++followed > maximumOccurrences)
                return fail(line, QStringLiteral("RRULE repeats too often to find the next "
                                                 "occurrence"));
            const std::optional<QDateTime> when = toLocal(value, frame);
            if (!when)
                continue;
            // Occurrences come in order: the first still to come is this rule's next.
            if (consider(*when))
                break;
        }
    }
    if (next)
        *date = *next;
    else if (last)
        *date = *last;
    return true;
}

std::optional<EVReminderLead> EventReader::reminder() const
{
    for (icalcomponent *alarm = icalcomponent_get_first_component(m_event, ICAL_VALARM_COMPONENT);
         alarm; alarm = icalcomponent_get_next_component(m_event, ICAL_VALARM_COMPONENT)) {
        icalproperty *property = icalcomponent_get_first_property(alarm, ICAL_TRIGGER_PROPERTY);
        if (!property)
            continue;
        const icaltriggertype trigger = icalproperty_get_trigger(property);
        if (!icaltime_is_null_time(trigger.time))
            continue; // at a fixed time, not a while before the start
        icalparameter *related = icalproperty_get_first_parameter(property, ICAL_RELATED_PARAMETER);
        if (related && icalparameter_get_related(related) == ICAL_RELATED_END)
            continue;
        const qint64 before = -qint64(icaldurationtype_as_int(trigger.duration));
        std::optional<EVReminderLead> lead = EVReminderLead::fromSeconds(before);
        if (!lead)
            continue;
        // Our own exports say which unit the lead was given in.
        const std::optional<EVReminderLead> ours =
            EVReminderLead::fromText(xProperty(alarm, leadProperty));
        if (ours && ours->seconds() == before)
            lead = ours;
        return lead;
    }
    return std::nullopt;
}

QString EventReader::widgetUuid(const QString &uid)
{
    if (uid.isEmpty())
        return QString();
    if (EVManagedRecord::isUuid(uid))
        return uid;
    return QUuid::createUuidV5(uidNamespace, uid).toString(QUuid::WithoutBraces).toUpper();
}

// Every VEVENT in the order of the file, in one calendar or in several.
QList<icalcomponent *> eventsOf(icalcomponent *root)
{
    QList<icalcomponent *> calendars;
    if (icalcomponent_isa(root) == ICAL_VCALENDAR_COMPONENT) {
        calendars.append(root);
    } else {
        for (icalcomponent *c = icalcomponent_get_first_component(root, ICAL_VCALENDAR_COMPONENT);
             c; c = icalcomponent_get_next_component(root, ICAL_VCALENDAR_COMPONENT))
            calendars.append(c);
    }
    QList<icalcomponent *> events;
    for (icalcomponent *calendar : std::as_const(calendars)) {
        for (icalcomponent *e = icalcomponent_get_first_component(calendar, ICAL_VEVENT_COMPONENT);
             e; e = icalcomponent_get_next_component(calendar, ICAL_VEVENT_COMPONENT))
            events.append(e);
    }
    return events;
}

icaltimetype utcTime(const QDateTime &instant)
{
    // Whole seconds, rounded down also before 1970.
    const qint64 milliseconds = instant.toMSecsSinceEpoch();
    const qint64 seconds = milliseconds / 1000 - (milliseconds % 1000 < 0 ? 1 : 0);
    return icaltime_from_timet_with_zone(time_t(seconds), 0, icaltimezone_get_utc_timezone());
}

icalcomponent *alarmFor(const EVWidgetEntry &entry)
{
    const EVReminderLead lead{entry.intervalBeforeAlert(), entry.intervalAlertUnit()};
    if (!entry.soundAlert() || lead.count <= 0 || lead.seconds() <= 0)
        return nullptr;
    icaldurationtype duration = icaldurationtype_null_duration();
    duration.is_neg = 1;
    const auto count = unsigned(lead.count);
    switch (lead.unit) {
    case EVReminderLead::Seconds:
        duration.seconds = count;
        break;
    case EVReminderLead::Minutes:
        duration.minutes = count;
        break;
    case EVReminderLead::Hours:
        duration.hours = count;
        break;
    case EVReminderLead::Days:
        duration.days = count;
        break;
    default:
        duration.weeks = count;
        break;
    }
    icaltriggertype trigger;
    trigger.time = icaltime_null_time();
    trigger.duration = duration;

    icalcomponent *alarm = icalcomponent_new_valarm();
    icalcomponent_add_property(alarm, icalproperty_new_action(ICAL_ACTION_DISPLAY));
    const QString title = entry.eventTitle();
    icalcomponent_add_property(
        alarm, icalproperty_new_description(
                   (title.isEmpty() ? QStringLiteral("Reminder") : title).toUtf8().constData()));
    icalcomponent_add_property(alarm, icalproperty_new_trigger(trigger));
    addXProperty(alarm, leadProperty, lead.text());
    return alarm;
}

} // namespace

QByteArray EVCalendarFile::exportEntries(const QList<EVWidgetEntry *> &entries,
                                         QStringList *skipped)
{
    keepLibraryErrorsNonFatal();
    Component calendar(icalcomponent_new_vcalendar());
    icalcomponent_add_property(calendar.get(), icalproperty_new_version("2.0"));
    icalcomponent_add_property(calendar.get(), icalproperty_new_prodid("-//Velto//Tallyvane//EN"));
    const icaltimetype stamp = utcTime(EVClock::now());

    for (const EVWidgetEntry *entry : entries) {
        const QDateTime date = entry->eventDate();
        if (!date.isValid()) {
            if (skipped)
                skipped->append(QStringLiteral("%1: the widget has no date").arg(entry->uuid()));
            continue;
        }
        icalcomponent *event = icalcomponent_new_vevent();
        icalcomponent_add_property(event, icalproperty_new_uid(entry->uuid().toUtf8().constData()));
        icalcomponent_add_property(event, icalproperty_new_dtstamp(stamp));
        if (entry->timeElement()) {
            icalcomponent_add_property(event, icalproperty_new_dtstart(utcTime(date)));
        } else {
            const QDate day = date.toLocalTime().date();
            icaltimetype start = icaltime_null_date();
            start.year = day.year();
            start.month = day.month();
            start.day = day.day();
            icalcomponent_add_property(event, icalproperty_new_dtstart(start));
        }
        if (!entry->eventTitle().isEmpty())
            icalcomponent_add_property(
                event, icalproperty_new_summary(entry->eventTitle().toUtf8().constData()));
        if (!entry->note().isEmpty())
            icalcomponent_add_property(
                event, icalproperty_new_description(entry->note().toUtf8().constData()));
        addXProperty(event, eventDateProperty, date.toUTC().toString(Qt::ISODateWithMs));
        if (icalcomponent *alarm = alarmFor(*entry))
            icalcomponent_add_component(event, alarm);
        icalcomponent_add_component(calendar.get(), event);
    }

    char *text = icalcomponent_as_ical_string_r(calendar.get());
    const QByteArray result(text);
    icalmemory_free_buffer(text);
    return result;
}

EVImportReport EVCalendarFile::importInto(EVCoreDataDelegate *store, const QString &fileName,
                                          const QByteArray &content)
{
    const QByteArray calendarText = EVImportReport::withoutByteOrderMark(content);
    const EVCalendarLines lines(calendarText);
    if (!lines.error().isNull())
        return EVImportReport::failure(fileName, lines.errorLine(), lines.error());

    keepLibraryErrorsNonFatal();
    const Component root(icalparser_parse_string(calendarText.constData()));
    const QList<icalcomponent *> events = root ? eventsOf(root.get()) : QList<icalcomponent *>();
    if (!root || events.size() != lines.events().size())
        return EVImportReport::failure(fileName, 0, QStringLiteral("the calendar cannot be read"));

    std::vector<ImportedEvent> imported(std::size_t(events.size()));
    for (qsizetype i = 0; i < events.size(); ++i) {
        QString error;
        int line = 0;
        if (!EventReader(events.at(i), lines.events().at(i))
                 .read(&imported[std::size_t(i)], &error, &line))
            return EVImportReport::failure(fileName, line, error);
    }

    EVObjectContext *context = store ? store->managedObjectContext() : nullptr;
    if (!context)
        return EVImportReport::storeUnavailable(fileName);
    QSet<QString> taken = context->usedUuids();

    EVImportReport report;
    for (const ImportedEvent &event : imported) {
        const QString name =
            event.uid.isEmpty() ? QStringLiteral("\"%1\"").arg(event.title) : event.uid;
        if (event.isOverride) {
            report.skipped.append(QStringLiteral("%1: a changed occurrence of a recurring event, "
                                                 "whose series makes the widget")
                                      .arg(name));
            continue;
        }
        if (!event.uuid.isNull() && taken.contains(event.uuid)) {
            report.skipped.append(
                QStringLiteral("%1: a widget with this identifier already exists").arg(name));
            continue;
        }
        EVWidgetEntry *entry = store->addWidgetEntry();
        if (!event.uuid.isNull()) {
            // The default icon's file is named by the identifier, so it moves with it.
            const QByteArray icon = entry->iconfileData();
            entry->setIconfileData(QByteArray());
            entry->setUuid(event.uuid);
            entry->setIconfileData(icon);
            taken.insert(event.uuid);
        }
        entry->setEventTitle(event.title);
        entry->setNote(event.note);
        entry->setEventDate(event.date);
        entry->setTimeElement(event.timeElement);
        if (event.reminder) {
            entry->setSoundAlert(true);
            entry->setIntervalBeforeAlert(event.reminder->count);
            entry->setIntervalAlertUnit(event.reminder->unit);
        }
        report.added.append(entry);
    }
    return report;
}
