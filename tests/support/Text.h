#pragma once

#include <QString>

/// "text"_s is a QString; tests have too many of them for a longer word, or for a namespace.
inline QString operator""_s(const char *text, std::size_t size)
{
    return QString::fromUtf8(text, static_cast<int>(size));
}
