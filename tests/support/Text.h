#pragma once

#include <QString>

namespace test_support {

/// "text"_s is a QString; tests have too many of them for a longer word.
inline QString operator""_s(const char *text, std::size_t size)
{
    return QString::fromUtf8(text, static_cast<int>(size));
}

} // namespace test_support
