#pragma once

#include <QByteArray>
#include <QString>

// Equality that tells none from empty: a null string or byte array is not the same value as
// an empty one anywhere in the application.
template <typename T>
bool isIdentical(const T &a, const T &b)
{
    if constexpr (requires { a.isNull(); })
        return a.isNull() == b.isNull() && a == b;
    else
        return a == b;
}
