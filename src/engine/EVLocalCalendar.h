#pragma once

#include <QDateTime>
#include <QString>

// The user's calendar as ICU and the C library see it: the process's time zone (TZ) and its
// LC_TIME locale, read afresh on every call. Formatters and the calendar are kept between
// calls, per locale and time zone, because making them costs more than the rest of a widget's
// update. Main thread only.
namespace EVLocalCalendar {

enum class Unit { Day, Week, Month, Year };

// Instants the calendar can represent; none and instants millions of years away are not.
bool isWithinCalendar(const QDateTime &instant);

// An instant in the local time zone by a Unicode pattern ("yyyy-MM-dd HH:mm:ss") in the user's
// locale; a null string when it cannot be rendered.
QString renderPattern(const QDateTime &instant, const QString &pattern);
// The same by a strftime format ("%b %d, %Y") under LC_TIME.
QString renderStrftime(const QDateTime &instant, const QString &format);

// The count of whole units from one instant to another, truncated toward zero (negative once
// the second lies before the first). Zero when either instant is none or out of range.
int difference(const QDateTime &from, const QDateTime &to, Unit unit);

// A number that changes whenever the time zone or the locale changed since the last call, so
// that texts computed under the old ones can be recomputed.
quint64 settingsGeneration();

// Turning caching off makes formatters and the calendar anew on every call; results are the
// same, which the benchmark uses to compare speeds.
void setCachingEnabled(bool enabled);

} // namespace EVLocalCalendar
