// The trace file as modules of one process share it.
#include "tests/diag/TracingModule.h"
#include "tests/support/DebuggerTexts.h"
#include "tests/support/Files.h"
#include "tests/support/Heap.h"
#include "tests/support/Threads.h"

#include "diag/Trace.h"
#include "diag/text/TracePaths.h"
#include "diag/TraceSection.h"
#include "diag/TraceWriter.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <mutex>
#include <regex>
#include <sstream>

#include <tlhelp32.h>

namespace {

constexpr std::uint32_t kToFile = kTraceMaster | kTraceFile;
const std::string kMark = "\xEF\xBB\xBF";

bool ComesTrue(const std::function<bool()>& condition, DWORD milliseconds) {
    for (const ULONGLONG end = GetTickCount64() + milliseconds; !condition(); Sleep(10)) {
        if (GetTickCount64() > end) {
            return false;
        }
    }
    return true;
}

std::string Contents(const std::filesystem::path& path) {
    return ReadFileBytes<std::string>(path);
}

class TraceLog : public testing::Test {
protected:
    bool FileBecomes(const std::string& contents, DWORD milliseconds) const {
        return ComesTrue([&] { return Contents(m_file) == contents; }, milliseconds);
    }

    const TempFolder m_folder;
    const std::filesystem::path m_file = m_folder.Path() / "Trace.txt";
};

// Whole lines only, each thread's in order, none missing.
void ExpectEveryLine(const std::string& contents, int threads, int lines) {
    const std::regex whole(R"(\d\d:\d\d:\d\d\.\d\d\d: [0-9a-f]{8}: (\w+) (\d+) (x*)\r)");
    std::map<std::string, int> next;
    std::istringstream stream(contents.substr(kMark.size()) + "\r\n");
    for (std::string line; std::getline(stream, line);) {
        std::smatch parts;
        if (line == "\r") {
            continue;
        }
        ASSERT_TRUE(std::regex_match(line, parts, whole)) << line;
        ASSERT_EQ(next[parts[1]]++, std::stoi(parts[2]));
        ASSERT_EQ(std::stoi(parts[2]) % 90, parts[3].length());
    }
    EXPECT_EQ(static_cast<std::size_t>(threads), next.size());
    for (const auto& [thread, count] : next) {
        EXPECT_EQ(lines, count) << thread;
    }
}

TEST_F(TraceLog, ManyThreadsOfTwoModules) {
    constexpr int kThreads = 4;
    constexpr int kLines = 1000;
    {
        const TracingModule modules[] = {{kOneModule, kToFile | kTraceTime | kTraceThread, m_file},
                                         {kOtherModule, kToFile | kTraceTime | kTraceThread, m_file}};
        InThreads(kThreads, [&](int i) {
            for (int n = 0; n < kLines; ++n) {
                modules[i % 2].Line("thread" + std::to_string(i) + " " + std::to_string(n) + " " +
                                    std::string(static_cast<std::size_t>(n % 90), 'x'));
                if (n % 100 == 0) {
                    Sleep(70);
                }
            }
        });
    }
    ExpectEveryLine(Contents(m_file), kThreads, kLines);
}

TEST_F(TraceLog, SecondOutlivesTheTimersOwner) {
    TracingModule first(kOneModule, kToFile, m_file);
    TracingModule second(kOtherModule, kToFile, m_file);
    EXPECT_EQ(kToFile, first.Call<std::uint32_t>("Flags"));
    first.Line("a");
    EXPECT_EQ("", Contents(m_file)) << "not collected";
    EXPECT_TRUE(FileBecomes(kMark + "\r\na", 1500)) << "the timer wrote nothing";
    second.Line("b");
    first.Unload();
    EXPECT_EQ(kMark + "\r\na\r\nb", Contents(m_file));
    second.Line("c");
    EXPECT_FALSE(FileBecomes(kMark + "\r\na\r\nb\r\nc", 1200)) << "a timer is left";
    second.Unload();
    EXPECT_EQ(kMark + "\r\na\r\nb\r\nc", Contents(m_file));
}

bool IsOnProcessHeap(const void* block) {
    return HeapValidate(GetProcessHeap(), 0, block);
}

TEST_F(TraceLog, SharedSection) {
    TracingModule first(kOneModule, kToFile, m_file);
    TracingModule second(kOtherModule, kToFile, m_file);
    first.Line("a");
    CHandle section = OpenTraceSection(m_file.c_str());
    EXPECT_EQ(static_cast<DWORD>(ERROR_ALREADY_EXISTS), GetLastError());
    const TraceSectionView sectionView = ViewOf(section);
    TraceSection* const view = sectionView.Get();
    const TraceWriter* const writer = view->writer;
    ASSERT_NE(nullptr, writer);
    EXPECT_EQ(1u, writer->references);
    second.Line("b");
    EXPECT_EQ(2u, writer->references);
    first.Unload();
    EXPECT_EQ(1u, writer->references);
    view->spin = 1; // as if another thread had died with the lock: a second's patience, no more
    second.Unload();
    EXPECT_EQ(1, view->spin--);
    EXPECT_EQ(writer, view->writer);
    ASSERT_TRUE(IsOnProcessHeap(writer)) << "gone, though the section can still be found";
    TracingModule third(kOneModule, kToFile, m_file);
    third.Line("c");
    EXPECT_EQ(1u, writer->references);
    section.Reset();
    third.Unload();
    EXPECT_FALSE(IsOnProcessHeap(writer));
    EXPECT_EQ(kMark + "\r\na\r\nb\r\nc", Contents(m_file));
}

// Again and again a module is loaded at the moment when the last one is unloaded.
TEST_F(TraceLog, ComingWhileTheLastOneGoes) {
    InThreads(2, [&](int other) {
        for (int i = 0; i < 300; ++i) {
            TracingModule(other ? kOtherModule : kOneModule, kToFile, m_file).Line("a");
        }
    });
    EXPECT_EQ(kMark.size() + 600 * std::string("\r\na").size(), Contents(m_file).size());
}

TEST_F(TraceLog, ByteOrderMarkInEmptyFilesOnly) {
    for (const std::string before : {"", "old"}) {
        std::ofstream(m_file, std::ios::binary | std::ios::trunc) << before;
        TracingModule(kOneModule, kToFile, m_file).Line("a");
        EXPECT_EQ((before.empty() ? kMark : before) + "\r\na", Contents(m_file));
    }
}

TEST_F(TraceLog, FileInUse) {
    const TracingModule module(kOneModule, kToFile, m_file);
    CFileHandle lock = LockFile(m_file);
    module.Line("waits");
    Sleep(900);
    lock.Reset();
    EXPECT_TRUE(FileBecomes(kMark + "\r\nwaits", 1000));
    lock = LockFile(m_file);
    module.Line("lost");
    Sleep(2200);
    lock.Reset();
    module.Line("comes");
    EXPECT_TRUE(FileBecomes(kMark + "\r\nwaits\r\ncomes", 2000)) << Contents(m_file);
}

TEST_F(TraceLog, FolderInThePlaceOfTheFile) {
    const std::filesystem::path inside = m_file / m_file.filename();
    std::filesystem::create_directory(m_file);
    TracingModule module(kOneModule, kToFile, m_file);
    module.Line("a");
    EXPECT_TRUE(ComesTrue([&] { return Contents(inside) == kMark + "\r\na"; }, 1500));
    EXPECT_EQ(inside, module.Call<const wchar_t*>("Path"));
    const CFileHandle lock = LockFile(inside);
    module.Line("lost");
    const ULONGLONG start = GetTickCount64();
    module.Unload();
    EXPECT_GT(600u, GetTickCount64() - start) << "waited for a file in use";
}

TEST_F(TraceLog, NamedStopwatch) {
    const TracingModule module(kOneModule, kToFile, m_file);
    module.Call<void, const char*, std::int32_t, std::uint32_t>("TimeASleep", "\nquick %s", 5000, 0u);
    module.Call<void, const char*, std::int32_t, std::uint32_t>("TimeASleep", "\nslow %s", 20, 40u);
    EXPECT_TRUE(ComesTrue([&] { return !Contents(m_file).empty(); }, 1500));
    EXPECT_TRUE(std::regex_match(Contents(m_file), std::regex(kMark + "\r\nslow \\d{3}ms"))) << Contents(m_file);
}

TEST_F(TraceLog, Switches) {
    constexpr struct {
        std::uint32_t flags;
        const char* file;
        const char* debugger;
    } kCases[] = {
        {0x10 | kTraceFile | kTraceDebugger, "", ""}, // no master switch
        {kTraceMaster, "", ""},
        {kTraceMaster | kTraceDebugger, "", "\r\na"},
        {kToFile | kTraceDebugger, "\r\na", "\r\na"},
    };
    for (const auto& c : kCases) {
        const DebuggerTexts debugged;
        TracingModule(kOneModule, c.flags, m_file).Line("a");
        EXPECT_EQ(*c.file ? kMark + c.file : "", Contents(m_file)) << c.flags;
        EXPECT_EQ(c.debugger, debugged.All()) << c.flags;
    }
}

TEST_F(TraceLog, TimerLeavesWhatIsTooSoonOrBusy) {
    std::wcscpy(TracePath, m_file.c_str());
    TraceWriter* const writer = TraceWriter::Create();
    writer->AddReference();
    writer->Append("\na");
    writer->OnTimer();
    EXPECT_EQ("", Contents(m_file)) << "within 51 ms";
    Sleep(60);
    writer->busy = 1;
    writer->OnTimer();
    EXPECT_EQ("", Contents(m_file)) << "beside another callback";
    writer->busy = 0;
    writer->OnTimer();
    EXPECT_EQ(kMark + "\r\na", Contents(m_file));
    EXPECT_EQ(0u, writer->Release());
    writer->Destroy();
}

// Its virtual table may have another layout, so no slot of it is called.
TEST_F(TraceLog, BufferOfAnotherCompiler) {
    const auto slot = [] { ADD_FAILURE() << "a virtual call"; };
    void (*const table[4])() = {slot, slot, slot, slot};
    std::wcscpy(TracePath, m_file.c_str());
    TraceWriter* const writer = TraceWriter::Create();
    writer->AddReference();
    writer->Append("\na");
    *reinterpret_cast<void (*const**)()>(writer->pending) = table;
    writer->Append("\nb");
    EXPECT_EQ(0u, writer->Release());
    writer->Destroy();
    EXPECT_EQ(kMark + "\r\na\r\nb", Contents(m_file));
}

struct Belongings {
    std::int64_t bytes = 0; // on the process heap
    int handles = 0;
    int threads = 0;
    int mappings = 0;

    static Belongings Now() {
        Belongings now;
        now.bytes = BusyBytes(GetProcessHeap());
        const CFileHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
        THREADENTRY32 thread = {};
        thread.dwSize = sizeof(thread);
        for (BOOL more = Thread32First(snapshot.Get(), &thread); more; more = Thread32Next(snapshot.Get(), &thread)) {
            now.threads += thread.th32OwnerProcessID == GetCurrentProcessId();
        }
        for (ULONG_PTR value = 4; value < 0x4000; value += 4) {
            DWORD flags = 0;
            now.handles += GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) != FALSE;
        }
        MEMORY_BASIC_INFORMATION region = {};
        for (const char* at = nullptr; VirtualQuery(at, &region, sizeof(region)); at += region.RegionSize) {
            now.mappings += region.Type == MEM_MAPPED;
        }
        return now;
    }
};

// What `again` calls of `round` add. The system keeps something from the `first` calls before them, which don't count.
Belongings Growth(int first, int again, const std::function<void()>& round) {
    const auto rounds = [&](int count) {
        for (int i = 0; i < count; ++i) {
            round();
        }
        Sleep(200); // the timer's thread ends on its own
        return Belongings::Now();
    };
    const Belongings before = rounds(first);
    Belongings after = rounds(again);
    after.bytes -= before.bytes;
    after.handles -= before.handles;
    after.threads -= before.threads;
    after.mappings -= before.mappings;
    return after;
}

// The timer comes due while the unloading thread, which holds the loader's lock, waits for a file in use, or waits for
// that file itself when the module goes.
TEST_F(TraceLog, UnloadingInTheMiddleOfAFlushLeavesNothing) {
    int n = 0;
    const Belongings growth = Growth(2, 4, [&] {
        std::filesystem::remove(m_file);
        TracingModule module(kOneModule, kToFile, m_file);
        CFileHandle lock = LockFile(m_file);
        module.Line("a");
        InThreads(2, [&](int unlocks) {
            Sleep(unlocks ? 750 : ++n % 2 ? 600 : 200);
            if (unlocks) {
                return lock.Reset();
            }
            module.Line("b");
            module.Unload();
        });
        const std::string contents = Contents(m_file);
        EXPECT_TRUE(contents == kMark + "\r\na\r\nb" || contents == kMark + "\r\nb\r\na") << contents;
    });
    EXPECT_EQ(nullptr, GetModuleHandleW(kOneModule));
    EXPECT_EQ(0, growth.handles);
    EXPECT_EQ(0, growth.threads);
}

// Enough of them to stand out against what the system keeps.
TEST_F(TraceLog, ModulesThatComeAndGoLeaveNothing) {
    Belongings growth;
    int tries = 0;
    do { // the heap itself grows at times, but what each module loses shows every time
        growth = Growth(50, 200, [&] { TracingModule(kOneModule, kToFile, m_file).Line("a"); });
    } while (growth.bytes > 200 * 8 && ++tries < 5);
    EXPECT_LE(growth.bytes, 200 * 8);
    EXPECT_EQ(0, growth.handles);
    EXPECT_EQ(0, growth.threads);
    EXPECT_GE(0, growth.mappings);
}

// A thread holds the writer's lock while the module goes, for too long or for good; the timer waits for it too.
TEST_F(TraceLog, UnloadingWhileTheWriterIsLocked) {
    for (const DWORD held : {1600, 60'000}) {
        const ULONGLONG start = GetTickCount64();
        EXPECT_EXIT(
            {
                TracingModule module(kOneModule, kToFile, m_file);
                module.Line("a");
                TraceWriter& writer = *ViewOf(OpenTraceSection(m_file.c_str())).Get()->writer;
                std::thread([&] {
                    const std::lock_guard hold(writer.lock);
                    Sleep(held);
                }).detach();
                Sleep(100);
                module.Unload();
                Sleep(700); // long enough for a timer that was left
                ExitProcess(Contents(m_file) == kMark + "\r\na" ? 7 : 8);
            },
            testing::ExitedWithCode(7), "")
            << held;
        EXPECT_GT(20'000u, GetTickCount64() - start);
    }
}

// The timer's thread dies with the file unwritten; the process must end all the same.
TEST_F(TraceLog, ProcessEndsInTheMiddleOfAFlush) {
    const ULONGLONG start = GetTickCount64();
    EXPECT_EXIT(
        {
            const CFileHandle lock = LockFile(m_file);
            const TracingModule module(kOneModule, kToFile, m_file);
            module.Line("a");
            Sleep(700);
            ExitProcess(7);
        },
        testing::ExitedWithCode(7), "");
    EXPECT_GT(20'000u, GetTickCount64() - start);
}

} // namespace
