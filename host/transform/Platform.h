#pragma once

namespace host {

// COM (multithreaded) and Media Foundation, started for as long as the object lives. Throws HostError with
// ExitCode::Transform.
class CPlatform {
public:
    CPlatform();
    CPlatform(const CPlatform&) = delete;
    CPlatform& operator=(const CPlatform&) = delete;
    ~CPlatform();
};

} // namespace host
