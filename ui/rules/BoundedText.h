// Text in fixed buffers: what doesn't fit is cut or reported, never written.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

// Appends to a buffer and keeps it terminated. Platform-free.
class CTextWriter {
public:
    // `buffer` has room for at least the terminator.
    explicit CTextWriter(std::span<char> buffer)
        : m_buffer(buffer) {
        m_buffer[0] = '\0';
    }

    CTextWriter& Append(std::string_view text) {
        for (const char c : text) {
            AppendOne(c);
        }
        return *this;
    }

    CTextWriter& AppendWithoutBlanks(std::string_view text) {
        for (const char c : text) {
            if (c != ' ') {
                AppendOne(c);
            }
        }
        return *this;
    }

    // False when something was cut off.
    bool Fits() const { return !m_cut; }

private:
    void AppendOne(char c) {
        if (m_length + 1 >= m_buffer.size()) {
            m_cut = true;
            return;
        }
        m_buffer[m_length++] = c;
        m_buffer[m_length] = '\0';
    }

    std::span<char> m_buffer;
    std::size_t m_length = 0;
    bool m_cut = false;
};

// Copies as much as fits. False when something was cut off.
inline bool CopyText(std::span<char> to, std::string_view text) {
    return CTextWriter(to).Append(text).Fits();
}
