#include "host/live/LiveShow.h"

#include "host/HostError.h"
#include "host/live/LiveStage.h"
#include "host/transform/Platform.h"
#include "host/console/Text.h"

#include <chrono>

namespace host {

namespace {

double Now() {
    using Seconds = std::chrono::duration<double>;
    return Seconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

std::wstring TitleOf(const std::string& input) {
    return ToWide(input.substr(input.find_last_of("\\/") + 1));
}

constexpr std::uint32_t kIdle = 100; // milliseconds after which a paused frame is looked at again

std::wstring FailureText(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const std::bad_alloc&) {
        return L"there is not enough memory.";
    } catch (const std::exception& error) {
        return ToWide(error.what());
    }
}

// Handles what has come in so far.
void DispatchMessages() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

} // namespace

CLiveShow::CLiveShow(const Command& command)
    : m_stop(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
    std::future<CHeldTransform*> ready = m_ready.get_future();
    m_thread = std::thread([this, command] { Run(command); });
    try {
        m_transform = ready.get();
    } catch (...) {
        m_thread.join();
        throw;
    }
}

CLiveShow::~CLiveShow() {
    SetEvent(m_stop.Get());
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void CLiveShow::Stop() {
    SetEvent(m_stop.Get());
    m_thread.join();
    if (m_failure) {
        std::rethrow_exception(m_failure);
    }
}

// Everything that belongs to the clip is made, used and destroyed on this one thread.
void CLiveShow::Run(const Command& command) {
    bool ready = false;
    try {
        const CPlatform platform;
        CLivePlayer player(command);
        const PictureShape shape{player.Shape().width, player.Shape().height, player.Aspect()};
        CLiveModel model(shape, player.Shape().rate.Value(), player.Frames());
        CLiveWindow window(TitleOf(command.input), model, shape);
        ready = true;
        m_ready.set_value(&player.Transform());
        Play(player, window);
    } catch (...) {
        if (!ready) {
            m_ready.set_exception(std::current_exception());
        } else {
            m_failure = std::current_exception();
        }
    }
}

// Until told to stop; the transform stays as long, even when there is nothing to be seen any more.
void CLiveShow::Play(CLivePlayer& player, CLiveWindow& window) {
    try {
        PlayFrames(player, window);
    } catch (...) {
        Fail(window);
    }
    AwaitStop();
    if (!m_failure) {
        player.Finish();
    }
}

void CLiveShow::PlayFrames(CLivePlayer& player, CLiveWindow& window) {
    CLiveStage stage(player, window);
    CLivePace pace(player.Shape().rate.Value(), Now());
    CPlayback& playback = window.Model().Playback();
    ULONGLONG due = 0;
    Event event = Event::Input;
    while (window.IsOpen()) {
        const bool arrived = stage.Update(pace.Measured(), event == Event::Input);
        const ULONGLONG idle = GetTickCount64() + kIdle;
        event = WaitUntil(!arrived ? 0 : playback.IsPaused() ? idle : due, window);
        if (event == Event::Stop) {
            return;
        }
        if (event == Event::Time && arrived && !playback.IsPaused()) {
            playback.Advance();
            due = GetTickCount64() + pace.Next(Now());
        }
    }
}

// Whatever ended the playing, the sheet's transform stays alive until the sheet is closed.
void CLiveShow::Fail(CLiveWindow& window) noexcept {
    m_failure = std::current_exception();
    try {
        window.ShowStatus(L"stopped: " + FailureText(m_failure));
    } catch (...) {
        // Stop tells it.
    }
}

// Handles messages until the time, by GetTickCount64; returns before at the user's doing.
CLiveShow::Event CLiveShow::WaitUntil(std::uint64_t time, CLiveWindow& window) {
    const HANDLE stop = m_stop.Get();
    for (;;) {
        DispatchMessages();
        if (window.TakeInput()) {
            return WaitForSingleObject(stop, 0) == WAIT_OBJECT_0 ? Event::Stop : Event::Input;
        }
        const ULONGLONG now = GetTickCount64();
        const DWORD left = now < time ? static_cast<DWORD>(time - now) : 0;
        const DWORD result = MsgWaitForMultipleObjectsEx(1, &stop, left, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
        if (result != WAIT_OBJECT_0 + 1) {
            return result == WAIT_TIMEOUT ? Event::Time : Event::Stop;
        }
    }
}

void CLiveShow::AwaitStop() {
    const HANDLE stop = m_stop.Get();
    do {
        DispatchMessages();
    } while (MsgWaitForMultipleObjectsEx(1, &stop, INFINITE, QS_ALLINPUT, MWMO_INPUTAVAILABLE) == WAIT_OBJECT_0 + 1);
}

} // namespace host
