#include "host/live/LiveShow.h"

#include "host/HostError.h"
#include "host/picture/LivePace.h"
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
        CLiveWindow window(TitleOf(command.input), {player.Shape().width, player.Shape().height, player.Aspect()});
        player.Next(); // an input without frames is told before a sheet is shown
        ready = true;
        m_ready.set_value(&player.Transform());
        Play(player, window);
    } catch (...) {
        if (!ready) {
            m_ready.set_exception(std::current_exception());
        }
    }
}

// Until told to stop; the transform stays as long, even when there is nothing to be seen any more.
void CLiveShow::Play(CLivePlayer& player, CLiveWindow& window) try {
    CLivePace pace(player.Shape().rate.Value(), Now());
    do {
        window.Show(player.Before(), player.After(), pace.Status(player.FrameNumber(), player.Changed()));
        player.Next();
    } while (window.IsOpen() && WaitFor(pace.Next(Now())));
    while (WaitFor(INFINITE)) {
    }
    player.Finish();
} catch (const HostError& error) {
    m_failure = std::current_exception();
    window.ShowStatus(L"stopped: " + ToWide(error.what()));
    while (WaitFor(INFINITE)) {
    }
}

// False when told to stop.
bool CLiveShow::WaitFor(DWORD milliseconds) {
    const HANDLE stop = m_stop.Get();
    const ULONGLONG until = GetTickCount64() + milliseconds;
    for (;;) {
        DispatchMessages();
        const ULONGLONG now = GetTickCount64();
        const DWORD left = milliseconds == INFINITE ? INFINITE : now < until ? static_cast<DWORD>(until - now) : 0;
        const DWORD result = MsgWaitForMultipleObjectsEx(1, &stop, left, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
        if (result != WAIT_OBJECT_0 + 1) {
            return result == WAIT_TIMEOUT;
        }
    }
}

} // namespace host
