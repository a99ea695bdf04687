// Runs the real program and looks at what it leaves behind.
#pragma once

#include "tests/host/MemoryStreams.h"
#include "tests/support/Files.h"

#include <functional>
#include <string>
#include <vector>

namespace host {

struct ToolResult {
    unsigned long code = 0;
    Bytes output; // standard output
    std::string errors;

    std::string Text() const { return {output.begin(), output.end()}; }
};

struct ToolInput {
    Bytes bytes;
    std::size_t readAtMost = SIZE_MAX;                 // of standard output, which is closed then
    std::function<void(void* process)> meanwhile = {}; // called when all bytes are in the pipe, before it is closed
    bool readLate = false;                             // standard output is not read until the program has ended
    bool stubborn = false;                             // a read or write of the program that waits cannot be cancelled
};

// nmfvdeint.exe beside the test program, its standard streams connected to pipes. Paths are relative to the folder.
ToolResult RunTool(const std::filesystem::path& folder, const std::vector<std::string>& arguments,
                   const ToolInput& input = {});

// A folder of the test's own, gone when it ends.
class ToolTest : public testing::Test {
protected:
    ToolResult Run(const std::string& commandLine, const ToolInput& input = {}) const;
    void Write(const std::string& name, const Bytes& bytes) const;
    Bytes Read(const std::string& name) const;
    std::vector<std::string> Files() const;

    const TempFolder m_temporary;
    const std::filesystem::path& m_folder = m_temporary.Path();
};

// The number that stands before `words` in the text; -1 when they are not there.
long NumberBefore(const std::string& text, const std::string& words);

// A Y4M clip of 4:2:2 whose frames have vertical detail; those in `combed` show combs as wide as the picture.
Bytes MakeY4m(int width, int height, int frames, const std::vector<int>& combed, const std::string& rate = "25:1");

} // namespace host
