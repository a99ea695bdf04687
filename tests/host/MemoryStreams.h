// Inputs and outputs of the host in memory.
#pragma once

#include "host/formats/ByteStream.h"
#include "host/formats/FrameSource.h"
#include "host/HostError.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace host {

using Bytes = std::vector<std::uint8_t>;

// Hands its bytes out in portions of `portion` at most; with `sized` false it is like a pipe.
class CMemoryReader : public IByteReader {
public:
    explicit CMemoryReader(Bytes bytes, std::size_t portion = 1000, bool sized = true)
        : m_bytes(std::move(bytes))
        , m_portion(portion)
        , m_sized(sized) {}

    std::size_t Read(void* buffer, std::size_t bytes) override;
    std::optional<std::uint64_t> Size() const override;
    const std::string& Name() const override { return m_name; }
    // The most bytes that were wanted at once, for which there must have been memory.
    std::size_t LargestRequest() const { return m_largestRequest; }

private:
    Bytes m_bytes;
    std::size_t m_portion;
    bool m_sized;
    std::size_t m_largestRequest = 0;
    std::size_t m_position = 0;
    std::string m_name = "memory";
};

class CMemoryWriter : public IByteWriter {
public:
    explicit CMemoryWriter(bool seekable = true)
        : m_seekable(seekable) {}

    void Write(const void* data, std::size_t bytes) override;
    bool CanSeek() const override { return m_seekable; }
    void Seek(std::uint64_t offset) override { m_position = offset; }
    const std::string& Name() const override { return m_name; }

    const Bytes& Written() const { return m_bytes; }

private:
    Bytes m_bytes;
    bool m_seekable;
    std::uint64_t m_position = 0;
    std::string m_name = "memory";
};

Bytes FromText(const std::string& text);
Bytes RandomBytes(std::size_t count, unsigned seed);

// A frame's picture without padding, from the top row, plane after plane.
Bytes PictureOf(const FrameView& frame);

// Reads every frame's picture.
std::vector<Bytes> ReadAll(IFrameSource& source);

// The error that `action` throws; a failure of the test when it throws none.
struct Thrown {
    bool any = false;
    ExitCode code = ExitCode::Ok;
    std::string text;
};
Thrown ErrorOf(const std::function<void()>& action);

// `action` throws an error of this code whose text holds `said`; `name` is the case's.
void ExpectError(ExitCode code, const std::string& said, const std::string& name, const std::function<void()>& action);

} // namespace host
