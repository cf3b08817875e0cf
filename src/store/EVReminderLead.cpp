#include "store/EVReminderLead.h"

#include <array>
#include <limits>

namespace {

constexpr std::array<qint64, 5> secondsPerUnit{1, 60, 3600, 86400, 604800};
constexpr std::array<char16_t, 5> unitLetters{u's', u'm', u'h', u'd', u'w'};

} // namespace

qint64 EVReminderLead::unitSeconds(int unit)
{
    if (unit < 0 || unit >= int(secondsPerUnit.size()))
        return 0;
    return secondsPerUnit[std::size_t(unit)];
}

std::optional<EVReminderLead> EVReminderLead::fromText(const QString &text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.size() < 2)
        return std::nullopt;
    const QChar letter = trimmed.back().toLower();
    int unit = -1;
    for (std::size_t i = 0; i < unitLetters.size(); ++i) {
        if (letter == QChar(unitLetters[i]))
            unit = int(i);
    }
    if (unit < 0)
        return std::nullopt;
    const QStringView digits = QStringView(trimmed).chopped(1);
    for (QChar c : digits) {
        // Only plain digits: no sign, no blanks, no other scripts' digits.
        if (c < u'0' || c > u'9')
            return std::nullopt;
    }
    bool ok = false;
    const int count = digits.toInt(&ok);
    if (!ok || count <= 0)
        return std::nullopt;
    return EVReminderLead{count, unit};
}

QString EVReminderLead::text() const
{
    const qint64 perUnit = unitSeconds(unit);
    if (perUnit == 0)
        return QString::number(count);
    return QString::number(count) + QChar(unitLetters[std::size_t(unit)]);
}

std::optional<EVReminderLead> EVReminderLead::fromSeconds(qint64 seconds)
{
    if (seconds <= 0)
        return std::nullopt;
    for (int unit = Weeks; unit >= Seconds; --unit) {
        const qint64 perUnit = unitSeconds(unit);
        if (seconds % perUnit != 0)
            continue;
        const qint64 count = seconds / perUnit;
        if (count > std::numeric_limits<int>::max())
            return std::nullopt;
        return EVReminderLead{int(count), unit};
    }
    return std::nullopt;
}
