#pragma once

#include "base/Handles.h"
#include "host/live/LivePlayer.h"
#include "host/live/LiveWindow.h"
#include "host/player/LivePace.h"

#include <exception>
#include <future>
#include <thread>

namespace host {

// A clip that plays through the transform in a window of its own, on a thread of its own, while the caller's thread
// shows the property sheet. A change of the settings shows on the next frame, or on the paused one. The user may close
// the window before.
class CLiveShow {
public:
    // Returns when the clip is open and the transform ready. Throws HostError.
    explicit CLiveShow(const Command& command);
    CLiveShow(const CLiveShow&) = delete;
    CLiveShow& operator=(const CLiveShow&) = delete;
    ~CLiveShow();

    // The transform that the frames go through: the object locks itself, so any thread may use it. Valid until Stop.
    CHeldTransform& Transform() { return *m_transform; }

    // Closes the window. Throws what ended the playing early, if something did.
    void Stop();

private:
    enum class Event { Stop, Input, Time };

    void Run(const Command& command);
    void Play(CLivePlayer& player, CLiveWindow& window);
    void PlayFrames(CLivePlayer& player, CLiveWindow& window);
    void Fail(CLiveWindow& window) noexcept;
    Event WaitUntil(std::uint64_t time, CLiveWindow& window);
    void AwaitStop();

    CHandle m_stop;
    std::promise<CHeldTransform*> m_ready;
    CHeldTransform* m_transform = nullptr;
    std::exception_ptr m_failure;
    std::thread m_thread;
};

} // namespace host
