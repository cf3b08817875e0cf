#pragma once

#include "store/EVImportReport.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

class EVCoreDataDelegate;
class EVWidgetEntry;

// Widgets to and from iCalendar files. On import each VEVENT becomes a widget: SUMMARY the
// title, DESCRIPTION the note, DTSTART the date (a DATE makes a widget without time, a
// DATE-TIME in UTC, in any TZID or floating is taken to local time), a recurring event its next
// occurrence from now, and the first VALARM triggered a while before the start an armed
// reminder with that lead in its largest whole unit. On export each widget becomes one VEVENT
// with its uuid as UID and a VALARM when its reminder is armed; a few X-TALLYVANE- properties
// keep what iCalendar cannot say (milliseconds, the exact time behind a date, the lead's unit),
// so that an exported file imports back to the same widgets.
class EVCalendarFile
{
public:
    // The calendar of the entries. A widget without a date has no event and is left out, with
    // a line in skipped.
    static QByteArray exportEntries(const QList<EVWidgetEntry *> &entries,
                                    QStringList *skipped = nullptr);

    // Adds a widget for every event of the calendar, unsaved: all of them or, on any error in
    // the file, none. An event whose widget identifier (its UID, or one made from it) the store
    // already holds is left out and reported. fileName only names the file in messages.
    static EVImportReport importInto(EVCoreDataDelegate *store, const QString &fileName,
                                     const QByteArray &content);
};
