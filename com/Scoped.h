// An owner for a value that one call gives back: a registry key, a handle, a block of task memory.
#pragma once

// Holds one value and closes it exactly once. T's zero value means that nothing is held.
template <typename T, auto Close>
class CScoped {
public:
    CScoped() = default;
    explicit CScoped(T value)
        : m_value(value) {}
    CScoped(const CScoped&) = delete;
    CScoped& operator=(const CScoped&) = delete;
    ~CScoped() { Reset(); }

    T Get() const { return m_value; }
    explicit operator bool() const { return m_value != T{}; }

    // For out-parameters; gives back what is held first.
    T* Put() {
        Reset();
        return &m_value;
    }

    // Hands the value over to the caller.
    T Detach() {
        T value = m_value;
        m_value = {};
        return value;
    }

    void Reset() {
        if (m_value != T{}) {
            Close(m_value);
            m_value = {};
        }
    }

private:
    T m_value{};
};
