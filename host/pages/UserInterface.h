#pragma once

namespace host {

// What windows with OLE pages need: OLE (which makes the calling thread a single-threaded apartment) and Media
// Foundation, started for as long as the object lives. Throws HostError, with ExitCode::Display when there is no
// desktop that could show a window, else with ExitCode::Transform.
class CUserInterface {
public:
    CUserInterface();
    CUserInterface(const CUserInterface&) = delete;
    CUserInterface& operator=(const CUserInterface&) = delete;
    ~CUserInterface();
};

} // namespace host
