#pragma once

#include <QtGlobal>

#include <optional>

// A length of time in calendar components, any of which may be left unset, as a notification's
// repeat interval is given.
struct FLDateComponents
{
    std::optional<qint64> year;
    std::optional<qint64> month;
    std::optional<qint64> weekday;
    std::optional<qint64> day;
    std::optional<qint64> hour;
    std::optional<qint64> minute;
    std::optional<qint64> second;

    bool operator==(const FLDateComponents &other) const = default;
};
