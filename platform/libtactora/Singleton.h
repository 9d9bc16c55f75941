#pragma once

#include <type_traits>

namespace libtactora {

/// The one instance of T in this process: made on first use, by whichever thread comes first, and never
/// destroyed, so that it can be used as late as in the destructors of static objects. A T without a default
/// constructor gets a null parent.
template <typename T>
class Singleton
{
public:
    Singleton() = delete;

    /// Never null. A QObject belongs to the thread that asked first.
    static T *instance()
    {
        static T *const instance = create();
        return instance;
    }

private:
    static T *create()
    {
        if constexpr (std::is_default_constructible_v<T>) {
            return new T;
        } else {
            return new T(nullptr);
        }
    }
};

} // namespace libtactora
