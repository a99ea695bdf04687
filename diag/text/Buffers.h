// Growable byte buffers whose memory comes from where the derived class says.
#pragma once

#include <cstddef>
#include <cstdint>

// What buffer calls return: COM result codes, named here so that no platform header is needed.
using BufferResult = std::int32_t;
inline constexpr BufferResult kBufferOk = 0;
inline constexpr BufferResult kBufferNoText = static_cast<BufferResult>(0x80004005);      // E_FAIL
inline constexpr BufferResult kBufferNullPointer = static_cast<BufferResult>(0x80004003); // E_POINTER
inline constexpr BufferResult kBufferOutOfMemory = static_cast<BufferResult>(0x8007000E); // E_OUTOFMEMORY

// Not thread-safe. Modules hand buffers to each other, so the order of virtual functions and members is fixed.
// Compilers differ, however, in how many slots a destructor takes: a buffer that another module may have made is never
// called virtually, and the non-virtual functions make no virtual call. Its memory is grown and freed by the functions
// it came with.
class CBaseBuffer {
public:
    // As std::realloc and std::free: null in gives a new block, null out means no memory, and the old block stays
    // valid.
    using ReallocateFunction = void* (*)(void* block, std::size_t bytes);
    using FreeFunction = void (*)(void* block);

    CBaseBuffer(const CBaseBuffer&) = delete;
    CBaseBuffer& operator=(const CBaseBuffer&) = delete;

    virtual ~CBaseBuffer();

    // Frees the memory; the length is then 0.
    virtual void ReleaseStorage();

    // Grows the capacity to at least `bytes`, in one step and no further; contents and length stay. False when there is
    // no memory for it.
    virtual bool Reserve(std::int32_t bytes);

    // Adds bytes at the end. On kBufferOutOfMemory the buffer is as it was.
    BufferResult Append(const void* bytes, std::int32_t count);

    // Exchanges contents with `other`, which must take its memory from the same place; kBufferNullPointer for null.
    BufferResult Take(CBaseBuffer* other);

    // Fills the buffer with a printf-style text and its terminator; both count in the length.
    // Kept: no caller in this module; buffers of the module family have it. Test: Buffer.Format.
    BufferResult Format(const char* format, ...);

    // Length 0; the memory stays for the next contents. Kept: as Format is. Test: Buffer.GrowsToTheByte.
    void Clear() { m_length = 0; }

    char* Data() { return static_cast<char*>(m_data); }
    const char* Data() const { return static_cast<const char*>(m_data); }
    std::int32_t Length() const { return m_length; }
    std::int32_t Capacity() const { return m_capacity; }

protected:
    CBaseBuffer(FreeFunction free, ReallocateFunction reallocate)
        : m_free(free)
        , m_reallocate(reallocate) {}

private:
    void* m_data = nullptr;
    std::int32_t m_length = 0;
    std::int32_t m_capacity = 0;
    FreeFunction m_free;
    ReallocateFunction m_reallocate;
};

// Memory of the C run-time of this module. Kept: as Format is. Test: Buffer.Take.
class CBuffer : public CBaseBuffer {
public:
    CBuffer();
};

// Memory of the process heap, which any module of the process may grow and free.
class CHeapBuffer : public CBaseBuffer {
public:
    CHeapBuffer();
};
