// A flag that is set while this lives.
#pragma once

class ScopedFlag {
public:
    explicit ScopedFlag(bool& flag)
        : m_flag(flag)
        , m_before(flag) {
        m_flag = true;
    }
    ScopedFlag(const ScopedFlag&) = delete;
    ScopedFlag& operator=(const ScopedFlag&) = delete;
    ~ScopedFlag() { m_flag = m_before; }

private:
    bool& m_flag;
    const bool m_before;
};
