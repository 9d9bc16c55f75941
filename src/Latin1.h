#pragma once

#include <QLatin1String>

#include <cstddef>

/// A Latin-1 text as a constant: QLatin1String's own constructor counts the characters, which not every
/// compiler does at compile time.
template <std::size_t SizeWithZero>
constexpr QLatin1String
latin1(const char (&text)[SizeWithZero]) // NOLINT(modernize-avoid-c-arrays): a literal is one
{
    return QLatin1String(static_cast<const char *>(text), static_cast<int>(SizeWithZero - 1));
}
