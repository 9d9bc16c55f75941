#pragma once

#include <atomic>
#include <mutex>
#include <type_traits>

namespace libtactora {

namespace detail {

/// One for all types, and recursive, because the constructor of one single instance may ask for another.
inline std::recursive_mutex &singletonMutex()
{
    static std::recursive_mutex mutex;
    return mutex;
}

} // namespace detail

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
        if (T *existing = s_instance.load(std::memory_order_acquire)) {
            return existing;
        }
        const std::lock_guard lock(detail::singletonMutex());
        if (s_instance.load(std::memory_order_relaxed) == nullptr) {
            s_instance.store(create(), std::memory_order_release);
        }
        return s_instance.load(std::memory_order_relaxed);
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

    inline static std::atomic<T *> s_instance = nullptr;
};

} // namespace libtactora
