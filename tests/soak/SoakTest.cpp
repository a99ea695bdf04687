// Everything that a client can do with the shipped DLL, at once and for long: nothing may grow. NMFV_SOAK_SECONDS says
// how long. After each round it prints what it has measured.
#include <initguid.h>

#include "tests/support/ComChecks.h"
#include "tests/support/Heap.h"
#include "tests/support/Media.h"
#include "tests/support/Module.h"
#include "tests/support/OraclePixels.h"
#include "tests/support/PrivateRegistry.h"
#include "tests/support/RandomBytes.h"
#include "tests/support/RegistryListing.h"
#include "tests/support/Threads.h"
#include "tests/ui/SheetWindow.h"

#include "NMFVDeinterlaceKeys.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <process.h>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <mfapi.h>
#include <mferror.h>
#include <psapi.h>

namespace {

using Clock = std::chrono::steady_clock;
constexpr OracleFrame kFrame{64, 48, 16};
constexpr char kKeyVariable[] = "NMFV_SOAK_KEY";

int Seconds() {
    const char* chosen = std::getenv("NMFV_SOAK_SECONDS");
    return chosen ? std::atoi(chosen) : 20;
}

// Wine counts no handles; they are found by asking for each that there can be.
DWORD Handles() {
    DWORD count = 0, flags = 0;
    if (GetProcessHandleCount(GetCurrentProcess(), &count) && count) {
        return count;
    }
    for (ULONG_PTR handle = 4; handle < 0x4000; handle += 4) {
        count += GetHandleInformation(reinterpret_cast<HANDLE>(handle), &flags) != 0;
    }
    return count;
}

const CLSID* const kPages[] = {&CLSID_NMFVDeinterlaceSettingsPage, &CLSID_NMFVDeinterlaceRoiPage,
                               &CLSID_NMFVDeinterlaceAboutPage};

class Soak : public testing::Test {
protected:
    void SetUp() override {
        _putenv_s(kKeyVariable, m_user.Path().c_str());
        m_picture.resize(std::size_t(kFrame.Bytes()));
        RandomBytes(TestSeed()).Fill(m_picture);
        m_allowed.push_back(m_picture);
        for (int rules = 0; rules < 8; ++rules) {
            const OracleOptions options{(rules & 1) != 0, (rules & 2) != 0, true, (rules & 4) != 0, 4, 5, 33, 40};
            std::vector<BYTE>& outcome = m_allowed.emplace_back(m_picture.size());
            OracleDeinterlace(kFrame, options, m_picture.data(), outcome.data());
        }
    }

    // One transform that a thread streams through while others change its settings.
    void MakeShared() {
        ASSERT_HR(S_OK, m_module.CreateTransform(m_shared));
        ASSERT_HR(S_OK, m_shared->QueryInterface(IID_INMFVDeinterlace, m_control.PutVoid()));
        ASSERT_HR(S_OK, m_shared->GetAttributes(m_store.Put()));
        m_control->ResetToDefaultsEx(NMVDeinterlace_APILEVEL_1);
        m_control->put_AutoDeinterlace(VARIANT_FALSE);
        m_control->put_ROIRight(33);
        m_control->put_ROIBottom(40);
        m_control->put_ROILeft(4);
        m_control->put_ROITop(5);
    }

    // Frames whose picture must be one of the allowed ones, and now and then one that cannot be taken.
    void Stream(IMFTransform* transform, bool isShared, const auto& goesOn) {
        CComRef<IMFMediaType> type;
        MakeVideoType(MFVideoFormat_YUY2, UINT32(kFrame.width), UINT32(kFrame.height), type);
        ASSERT_HR(S_OK, transform->SetInputType(0, type.Get(), 0));
        ASSERT_HR(S_OK, transform->SetOutputType(0, type.Get(), 0));
        transform->ProcessMessage(MFT_MESSAGE_NOTIFY_START_OF_STREAM, 0);
        for (int i = 0; goesOn(i) && !HasFatalFailure(); ++i, ++m_frames) {
            CComRef<IMFSample> in, out;
            MakeSample(m_picture, in);
            MakeSample(std::vector<BYTE>(m_picture.size() - (i % 7 == 0)), out);
            ASSERT_HR(S_OK, transform->ProcessInput(0, in.Get(), 0));
            if (i % 11 == 0) {
                transform->ProcessMessage(MFT_MESSAGE_COMMAND_FLUSH, 0);
                continue;
            }
            MFT_OUTPUT_DATA_BUFFER buffer{0, out.Get(), 0, nullptr};
            DWORD status = 0;
            ASSERT_HR(i % 7 ? S_OK : MF_E_BUFFERTOOSMALL, transform->ProcessOutput(0, 1, &buffer, &status));
            ASSERT_TRUE(!isShared || i % 7 == 0 || std::ranges::count(m_allowed, BytesOf(out.Get())))
                << "a picture that no settings give";
        }
        transform->ProcessMessage(MFT_MESSAGE_NOTIFY_END_OF_STREAM, 0);
    }

    void LiveAndDie() {
        CComRef<IMFTransform> own;
        ASSERT_HR(S_OK, m_module.CreateTransform(own));
        Stream(own.Get(), false, [](int i) { return i < 20; });
        CComRef<INMFVDeinterlace> control;
        own->QueryInterface(IID_INMFVDeinterlace, control.PutVoid());
        control->AddSegment(0);
        control->ResetToDefaultsEx(NMVDeinterlace_APILEVEL_2);
        EXPECT_HR(S_OK, control->LoadAttributes());
    }

    void ChangeByInterface(int i) {
        m_control->put_Even(i & 1 ? VARIANT_TRUE : VARIANT_FALSE);
        m_control->put_EnableROI(i & 2 ? VARIANT_TRUE : VARIANT_FALSE);
        m_control->SaveAttributes();
    }

    void ChangeByStore(int i) {
        m_store->SetUINT32(NMFV_DEINTERLACE_MERGE_FIELDS, UINT32(i & 1));
        m_store->SetUINT32(NMFV_DEINTERLACE_ENABLED, UINT32(i % 5 != 0));
    }

    void OpenPage(const CLSID& clsid, HWND sheet) {
        CComRef<IPropertyPage> page;
        ASSERT_HR(S_OK, m_module.Create(clsid, page));
        IUnknown* object = m_control.Get();
        constexpr RECT kRect{0, 0, 640, 700};
        ASSERT_HR(S_OK, page->SetPageSite(&m_site));
        ASSERT_HR(S_OK, page->SetObjects(1, &object));
        ASSERT_HR(S_OK, page->Activate(sheet, &kRect, FALSE));
        ASSERT_HR(S_OK, page->Deactivate());
        page->SetObjects(0, nullptr);
        page->SetPageSite(nullptr);
        ++m_pages;
    }

    void Register() {
        EXPECT_HR(S_OK, m_module.Register());
        EXPECT_HR(S_OK, m_module.Unregister());
    }

    // Another process that saves settings in this one's registry.
    void RunProcess() {
        char program[MAX_PATH];
        GetModuleFileNameA(nullptr, program, MAX_PATH);
        EXPECT_EQ(0, _spawnl(_P_WAIT, program, "another", "--gtest_filter=SoakProcess.*",
                             "--gtest_also_run_disabled_tests", "--gtest_brief=1", nullptr));
    }

    // All of it for a while; afterwards all is as before. Pages open in one thread from the first round to the last, as
    // in applications: under Wine each thread that ever had an edit control leaves one font behind.
    void Round(Clock::time_point end) {
        MakeShared();
        const auto goesOn = [&](int) { return Clock::now() < end; };
        const auto repeat = [&](const auto& work) {
            for (int i = 0; goesOn(i) && !HasFatalFailure(); ++i) {
                work(i);
            }
        };
        const std::function<void()> works[] = {
            [&] { Stream(m_shared.Get(), true, goesOn); },
            [&] { repeat([&](int i) { ChangeByInterface(i); }); },
            [&] { repeat([&](int i) { ChangeByStore(i); }); },
            [&] { repeat([&](int) { LiveAndDie(); }); },
            [&] { repeat([&](int) { Register(); }); },
            [&] { RunProcess(); },
            [&] { RunProcess(); },
        };
        std::thread others([&] { InThreads(int(std::size(works)), [&](int i) { works[i](); }); });
        const SheetWindow sheet;
        repeat([&](int i) { OpenPage(*kPages[i % 3], sheet.Get()); });
        others.join();
        m_store.Reset();
        m_control.Reset();
        m_shared.Reset();
    }

    struct Measures {
        std::int64_t memory, heap, handles, drawing, inUse, registry; // the first two in kB
    };

    Measures Measure() {
        PROCESS_MEMORY_COUNTERS memory{};
        K32GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof(memory));
        std::set<std::string> user, classes;
        ListRegistry(HKEY_CURRENT_USER, "Software", user);
        ListRegistry(HKEY_CLASSES_ROOT, "", classes);
        return {std::int64_t(memory.PagefileUsage / 1024),
                BusyBytes() / 1024,
                Handles(),
                DrawingObjects(),
                m_module.CanUnloadNow() == S_OK ? 0 : 1,
                std::int64_t(user.size() + classes.size())};
    }

    PrivateRegistry m_user{HKEY_CURRENT_USER};
    PrivateRegistry m_classes{HKEY_CLASSES_ROOT};
    Module m_module;
    std::vector<BYTE> m_picture;
    std::vector<std::vector<BYTE>> m_allowed;
    CComRef<IMFTransform> m_shared;
    CComRef<INMFVDeinterlace> m_control;
    CComRef<IMFAttributes> m_store;
    NotingSite m_site;
    std::atomic<int> m_frames = 0;
    int m_pages = 0;
};

TEST_F(Soak, NothingGrows) {
    const auto begin = Clock::now(), end = begin + std::chrono::seconds(Seconds());
    const auto round = std::chrono::milliseconds(std::clamp(Seconds() * 1000 / 60, 1500, 5000));
    std::vector<Measures> all;
    while (Clock::now() < end && !HasFailure()) {
        Round(std::min(Clock::now() + round, end));
        const Measures now = all.emplace_back(Measure());
        const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
        std::printf("figures: %.1f %d %d %lld %lld %lld %lld %lld %lld\n", seconds, m_frames.load(), m_pages,
                    now.memory, now.heap, now.handles, now.drawing, now.inUse, now.registry);
        std::fflush(stdout);
    }
    ASSERT_GE(all.size(), 3u);
    const Measures &warm = all[all.size() / 3], &last = all.back();
    EXPECT_EQ(0, last.inUse);
    EXPECT_EQ(warm.registry, last.registry);
    EXPECT_GE(warm.handles + 10, last.handles);
    EXPECT_GE(warm.drawing + 20, last.drawing);
    EXPECT_GE(warm.heap + 1024, last.heap); // what allocators keep grows slowly on a busy machine
}

// What another process does, in the registry that it is told of; no test by itself.
TEST(SoakProcess, DISABLED_Saves) {
    const char* const key = std::getenv(kKeyVariable);
    CRegKey user;
    ASSERT_TRUE(key);
    ASSERT_EQ(ERROR_SUCCESS, RegOpenKeyExA(HKEY_CURRENT_USER, key, 0, KEY_ALL_ACCESS, user.Put()));
    ASSERT_EQ(ERROR_SUCCESS, RegOverridePredefKey(HKEY_CURRENT_USER, user.Get()));
    const Module module;
    for (int i = 0; i < 50; ++i) {
        CComRef<IMFTransform> transform;
        ASSERT_HR(S_OK, module.CreateTransform(transform)); // which saves when it goes
        CComRef<INMFVDeinterlace> control;
        transform->QueryInterface(IID_INMFVDeinterlace, control.PutVoid());
        EXPECT_HR(S_OK, control->LoadAttributes());
    }
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
}

} // namespace
