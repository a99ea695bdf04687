#include "diag/text/Buffers.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>

CBaseBuffer::~CBaseBuffer() {
    CBaseBuffer::ReleaseStorage();
}

void CBaseBuffer::ReleaseStorage() {
    if (m_data) {
        m_free(m_data);
    }
    m_data = nullptr;
    m_length = 0;
    m_capacity = 0;
}

bool CBaseBuffer::Reserve(std::int32_t bytes) {
    if (bytes <= m_capacity) {
        return true;
    }
    void* const grown = m_reallocate(m_data, static_cast<std::size_t>(bytes));
    if (!grown) {
        return false;
    }
    m_data = grown;
    m_capacity = bytes;
    return true;
}

BufferResult CBaseBuffer::Append(const void* bytes, std::int32_t count) {
    if (count <= 0) {
        return kBufferOk;
    }
    if (count > std::numeric_limits<std::int32_t>::max() - m_length || !CBaseBuffer::Reserve(m_length + count)) {
        return kBufferOutOfMemory;
    }
    std::memcpy(Data() + m_length, bytes, static_cast<std::size_t>(count));
    m_length += count;
    return kBufferOk;
}

BufferResult CBaseBuffer::Take(CBaseBuffer* other) {
    if (!other) {
        return kBufferNullPointer;
    }
    std::swap(m_data, other->m_data);
    std::swap(m_length, other->m_length);
    std::swap(m_capacity, other->m_capacity);
    return kBufferOk;
}

BufferResult CBaseBuffer::Format(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    if (length < 0 || length == std::numeric_limits<int>::max()) {
        return kBufferNoText;
    }
    if (!CBaseBuffer::Reserve(length + 1)) {
        return kBufferOutOfMemory;
    }
    va_start(arguments, format);
    std::vsnprintf(Data(), static_cast<std::size_t>(length) + 1, format, arguments);
    va_end(arguments);
    m_length = length + 1;
    return kBufferOk;
}

CBuffer::CBuffer()
    : CBaseBuffer(&std::free, &std::realloc) {}
