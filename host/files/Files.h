// Files and pipes.
#pragma once

#include "base/Handles.h"
#include "host/formats/ByteStream.h"

#include <memory>
#include <string>

namespace host {

// The path from its root; the path itself when the platform knows none.
std::wstring FullPath(const std::wstring& path);
// Whether both name one place; as the transform's own registration does, without a look at the disk.
bool SamePath(const std::wstring& a, const std::wstring& b);

// "-" is standard input. Throws HostError with ExitCode::Input.
std::unique_ptr<IByteReader> OpenReader(const std::string& path);

// An output that only gets its name when it is whole.
class IOutput : public IByteWriter {
public:
    // Gives the output its final name; a whole file that cannot get it stays under its temporary one, which the error
    // names. What is not committed is removed on destruction; a pipe or device keeps what was written.
    virtual void Commit() = 0;
};

// "-" is standard output. A file that exists is replaced (by Commit) only when `replace` is set and nobody has it open
// now, this program included. Throws HostError with ExitCode::Output.
std::unique_ptr<IOutput> OpenOutput(const std::string& path, bool replace);

} // namespace host
