// An owner for a value that one call gives back: a registry key, a handle, a view of memory.
#pragma once

#include <utility>

// Holds one value and closes it exactly once. A policy says what is owned: `Type`, `Invalid()`, the value that means
// that nothing is held, and `Close(value)`.
template <typename Policy>
class CScoped {
public:
    using Type = typename Policy::Type;

    CScoped() = default;
    explicit CScoped(Type value)
        : m_value(value) {}
    CScoped(CScoped&& other) noexcept
        : m_value(other.Detach()) {}
    CScoped& operator=(CScoped&& other) noexcept {
        if (this != &other) {
            Reset();
            m_value = other.Detach();
        }
        return *this;
    }
    ~CScoped() { Reset(); }

    Type Get() const { return m_value; }
    explicit operator bool() const { return m_value != Policy::Invalid(); }

    // For out-parameters; gives back what is held first.
    Type* Put() {
        Reset();
        return &m_value;
    }

    // Hands the value over to the caller.
    Type Detach() { return std::exchange(m_value, Policy::Invalid()); }

    void Reset() {
        if (*this) {
            Policy::Close(Detach());
        }
    }

private:
    Type m_value = Policy::Invalid();
};
