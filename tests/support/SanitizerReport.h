#pragma once

#include <QString>

// Whether a program's output holds what AddressSanitizer, LeakSanitizer or
// UndefinedBehaviorSanitizer print when they find something (in a sanitizer build).
inline bool hasSanitizerReport(const QString &printed)
{
    return printed.contains(QLatin1String("ERROR: AddressSanitizer")) ||
           printed.contains(QLatin1String("ERROR: LeakSanitizer")) ||
           printed.contains(QLatin1String("runtime error:"));
}
