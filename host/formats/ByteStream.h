// Bytes in and out, without regard to files or pipes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace host {

// Where bytes come from. Implementations throw HostError with ExitCode::Input.
class IByteReader {
public:
    virtual ~IByteReader() = default;
    // Reads at least one byte and at most `bytes`; 0 only at the end.
    virtual std::size_t Read(void* buffer, std::size_t bytes) = 0;
    // How many bytes there are in all; nothing for a pipe.
    virtual std::optional<std::uint64_t> Size() const = 0;
    // For messages.
    virtual const std::string& Name() const = 0;
};

// Where bytes go. Implementations throw HostError with ExitCode::Output.
class IByteWriter {
public:
    virtual ~IByteWriter() = default;
    virtual void Write(const void* data, std::size_t bytes) = 0;
    // False for a pipe; Seek then throws.
    virtual bool CanSeek() const = 0;
    virtual void Seek(std::uint64_t offset) = 0;
    virtual const std::string& Name() const = 0;
};

// A reader with a small look-ahead, which counts the bytes that were taken.
class CInputStream {
public:
    explicit CInputStream(IByteReader& reader);

    // The next bytes without taking them; fewer than `bytes` (at most 4096) only when the input ends.
    std::vector<std::uint8_t> Peek(std::size_t bytes);
    // Fills the buffer as far as the input goes; returns the number of bytes read.
    std::size_t Read(void* buffer, std::size_t bytes);
    // Takes bytes without keeping them; returns how many there were.
    std::uint64_t Skip(std::uint64_t bytes);
    // Takes a line up to and including '\n' and returns it without; nothing at the end of input, or when `limit` bytes
    // hold no '\n' (what was read is then lost).
    std::optional<std::string> ReadLine(std::size_t limit);

    std::uint64_t Position() const { return m_position; }
    std::optional<std::uint64_t> Size() const { return m_reader.Size(); }
    const std::string& Name() const { return m_reader.Name(); }

private:
    std::size_t Buffered() const { return m_end - m_begin; }
    bool Fill();

    IByteReader& m_reader;
    std::vector<std::uint8_t> m_buffer;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    std::uint64_t m_position = 0;
};

} // namespace host
