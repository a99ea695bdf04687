// How the program fails: the code, the message, and what lies in the folder afterwards.
#include "tests/host/ToolRun.h"

#include <windows.h>

namespace host {
namespace {

using ToolErrors = ToolTest;

Bytes Front(Bytes bytes, std::size_t dropped) {
    bytes.resize(bytes.size() - dropped);
    return bytes;
}

bool HasUnfinishedFile(const std::filesystem::path& folder) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".part") {
            return true;
        }
    }
    return false;
}

void KillWhenUnfinished(HANDLE process, const std::filesystem::path& folder) {
    for (int i = 0; i < 500 && !HasUnfinishedFile(folder); ++i) {
        Sleep(20);
    }
    EXPECT_TRUE(HasUnfinishedFile(folder));
    Sleep(100); // the program marks the file for deletion only after it has made it
    TerminateProcess(process, 99);
    WaitForSingleObject(process, INFINITE);
}

TEST_F(ToolErrors, EveryFailureSaysWhyAndLeavesNothing) {
    const Bytes clip = MakeY4m(32, 24, 3, {1});
    Write("clip.y4m", clip);
    Write("cut.y4m", Front(clip, 10));
    Write("exists.y4m", {1, 2, 3});
    Write("text.dll", {'n', 'o', ' ', 'D', 'L', 'L'});
    Write("odd.y4m", FromText("YUV4MPEG2 W3 H2 F25:1 C422\nFRAME\n0123456789abcdef"));
    Write("empty.y4m", {});
    Write("none.y4m", FromText("YUV4MPEG2 W16384 H16384 F25:1\n"));
    Write("open.y4m", {});
    const std::ifstream open(m_folder / "open.y4m");
    Write("protected.y4m", {});
    SetFileAttributesW((m_folder / "protected.y4m").c_str(), FILE_ATTRIBUTE_READONLY);
    std::filesystem::create_directory(m_folder / "folder.y4m");
    Write("tag.y4m", FromText("YUV4MPEG2 W8 H8 C42\x1B[2J\xC2\x9B\n"));
    Write("huge.y4m", FromText("YUV4MPEG2 W16384 H16384 F25:1 C444\nFRAME\n"));
    const std::vector<std::string> before = Files();
    constexpr struct {
        const char* line;
        unsigned long code;
        const char* said;
    } kCases[] = {
        {"clip.y4m out.y4m --mdoe all", 1, "did you mean --mode?"},
        {"clip.y4m out.y4m --roi 0,0,33,24", 1, "32x24"},
        {"clip.y4m out.y4m --protect 0,0,32,25", 1, "32x24"},
        {"clip.y4m out.y4m --still 1 ./OUT.y4m", 1, "./OUT.y4m: another file of this run"},
        {"clip.y4m --to none --still 1 p.png --still 2 p.png", 1, "p.png: another file of this run"},
        {"clip.y4m - --still 1 -", 1, "-: another file of this run"},
        {"clip.y4m --to none --still 1 clip.y4m --force", 1, "clip.y4m: another file of this run"},
        {"absent.y4m out.y4m", 2, "absent.y4m: cannot be opened"},
        {"\x1B]0;\x07\xC2\x9B.y4m out.y4m", 2, "nmfvdeint: ?]0;??.y4m: cannot be opened"},
        {"tag.y4m out.y4m", 2, "pixel format C42?[2J? is"},
        {"cut.y4m out.y4m", 2, "inside frame 2"},
        {"cut.y4m out.avi", 2, "--cut-off keep"},
        {"cut.y4m - --to raw", 2, "inside frame 2"},
        {"odd.y4m out.y4m --feed yuy2", 2, "3 pixels wide"},
        {"clip.y4m out.avi --to-chroma 420", 1, "Y4M outputs only"},
        {"empty.y4m out.y4m", 2, "empty"},
        {"huge.y4m out.y4m --dll absent.dll", 2, "inside frame 0"}, // before anything is made for such frames
        {"none.y4m out.y4m --dll absent.dll", 2, "none.y4m: has no frames"},
        {"- out.y4m", 2, "standard input"},
        {"clip.y4m exists.y4m", 3, "--force"},
        {"clip.y4m absent/out.y4m", 3, "absent/out.y4m: cannot be created"},
        {"- open.y4m --force", 3, "open.y4m: cannot be replaced"},
        {"- protected.y4m --force", 3, "write-protected"},
        {"- folder.y4m --force", 3, "is a folder"},
        {"- --to none --still 1 exists.y4m", 3, "--force"},
        {"- --to none --still 1 absent/p.png", 3, "absent/p.png"},
        {"clip.y4m out.y4m --dll absent.dll", 4, "absent.dll: cannot be loaded"},
        {"clip.y4m out.y4m --dll text.dll", 4, "text.dll: cannot be loaded"},
        {"clip.y4m out.y4m --dll kernel32.dll", 4, "kernel32.dll"},
        {"clip.y4m out.y4m --live clip.y4m", 1, "deinterlace has no option --live"},
    };
    for (const auto& c : kCases) {
        const ToolResult result = Run(c.line);
        EXPECT_EQ(result.code, c.code) << c.line << ": " << result.errors;
        EXPECT_NE(result.errors.find(c.said), std::string::npos) << c.line << ": " << result.errors;
        EXPECT_EQ(result.errors.find("nmfvdeint: "), 0u) << result.errors;
        EXPECT_EQ(Files(), before) << c.line;
    }
    EXPECT_EQ(Read("exists.y4m"), (Bytes{1, 2, 3}));
    SetFileAttributesW((m_folder / "protected.y4m").c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(ToolErrors, PagesNeedADesktop) {
    if (CreateWindowA("STATIC", "", WS_OVERLAPPEDWINDOW, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr)) {
        GTEST_SKIP() << "there is a desktop, where the sheet would wait for somebody";
    }
    const ToolResult result = Run("pages");
    EXPECT_EQ(result.code, 7u);
    EXPECT_NE(result.errors.find("no desktop"), std::string::npos) << result.errors;
}

TEST_F(ToolErrors, AReaderThatEndsIsNamed) {
    const Bytes clip = MakeY4m(16, 16, 800, {});
    for (const char* line : {"- -", "analyse - --csv"}) {
        const ToolResult result = Run(line, {clip, 1000});
        EXPECT_EQ(result.code, 3u) << line;
        EXPECT_NE(result.errors.find("standard output: the program that reads it has ended"), std::string::npos)
            << result.errors;
        EXPECT_GE(NumberBefore(result.errors, " bytes."), static_cast<long>(result.output.size())) << result.errors;
    }
}

// Not even its temporary file is left by a program that could clean nothing up.
TEST_F(ToolErrors, AKilledRunLeavesNothing) {
    for (const char* line : {"- out.y4m", "- out.avi"}) {
        const auto kill = [this](HANDLE process) { KillWhenUnfinished(process, m_folder); };
        EXPECT_EQ(Run(line, {MakeY4m(32, 24, 5, {}), SIZE_MAX, kill}).code, 99u);
        EXPECT_TRUE(Files().empty()) << line;
    }
}

// What takes the output's name while the run works costs nothing that is finished.
TEST_F(ToolErrors, AWholeFileStaysUnderItsTemporaryName) {
    const Bytes clip = MakeY4m(64, 48, 8, {}); // not in a pipe as a whole, so the run is past its beginning
    ASSERT_EQ(Run("- want.y4m", {clip}).code, 0u);
    const Bytes want = Read("want.y4m");
    std::filesystem::remove(m_folder / "want.y4m");
    const std::filesystem::path target = m_folder / "out.y4m";
    std::ofstream open;
    struct Case {
        const char* line;
        std::function<void(HANDLE)> meanwhile;
    };
    const Case cases[] = {
        {"- out.y4m", [&](HANDLE) { Write("out.y4m", {1}); }},
        {"- out.y4m --force", [&](HANDLE) { open.open(target); }},
        {"- out.y4m --force", [&](HANDLE) { std::filesystem::create_directory(target); }},
    };
    for (const Case& c : cases) {
        std::filesystem::remove(target);
        const ToolResult result = Run(c.line, {clip, SIZE_MAX, c.meanwhile});
        open.close();
        EXPECT_EQ(result.code, 3u) << result.errors;
        const std::vector<std::string> files = Files();
        ASSERT_EQ(files.size(), 2u) << result.errors;
        EXPECT_NE(result.errors.find("complete in " + files[1]), std::string::npos) << result.errors;
        EXPECT_EQ(Read(files[1]), want);
        std::filesystem::remove(m_folder / files[1]);
    }
}

// Ctrl-C, as the console delivers it: in a thread of the program's own.
void Interrupt(HANDLE process) {
    auto* const routine = reinterpret_cast<LPTHREAD_START_ROUTINE>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "CtrlRoutine")));
    Sleep(500); // until the program waits in its pipe
    CloseHandle(CreateRemoteThread(process, nullptr, 0, routine, ULongToPtr(CTRL_C_EVENT), 0, nullptr));
    if (WaitForSingleObject(process, 3000) != WAIT_OBJECT_0) {
        ADD_FAILURE() << "the program waits on";
        TerminateProcess(process, 98);
    }
}

TEST_F(ToolErrors, AnInterruptedRunDoesNotWaitForItsPipes) {
    const Bytes clip = MakeY4m(320, 240, 1, {});
    const struct {
        const char* line;
        Bytes bytes;
        bool readLate;
    } cases[] = {{"- out.y4m", Front(clip, 1), false}, {"- - --still 9 p.png", clip, true}};
    for (const auto& c : cases) {
        for (const bool stubborn : {false, true}) {
            const ToolResult result = Run(c.line, {c.bytes, SIZE_MAX, &Interrupt, c.readLate, stubborn});
            EXPECT_EQ(result.code, 5u) << c.line << ": " << result.errors;
            EXPECT_NE(result.errors.find("nmfvdeint: interrupted"), std::string::npos) << result.errors;
            EXPECT_TRUE(Files().empty()) << c.line;
        }
    }
}

TEST_F(ToolErrors, ForceAndKeepDoAsTheySay) {
    const Bytes clip = MakeY4m(32, 24, 3, {1});
    Write("clip.y4m", clip);
    Write("cut.y4m", Front(clip, 10));
    ASSERT_EQ(Run("clip.y4m clip.y4m --force --mode off").code, 0u); // onto itself
    EXPECT_EQ(Read("clip.y4m").size(), clip.size());
    const ToolResult kept = Run("cut.y4m kept.y4m --cut-off keep");
    EXPECT_EQ(kept.code, 0u);
    EXPECT_NE(kept.errors.find("cut off"), std::string::npos) << kept.errors;
    EXPECT_EQ(kept.errors.find("--cut-off"), std::string::npos) << kept.errors;
    EXPECT_EQ(NumberBefore(kept.errors, " frames in "), 2);
    EXPECT_EQ(Files(), (std::vector<std::string>{"clip.y4m", "cut.y4m", "kept.y4m"}));
}

TEST_F(ToolErrors, NamesBeyondTheCodePageWork) {
    const std::string name = "\xC3\xA4\xE6\x98\xA0.y4m";
    Write(name, MakeY4m(32, 24, 2, {}));
    if (Read(name).empty()) {
        GTEST_SKIP() << "this platform makes no files of such names (Wine in a locale without UTF-8)";
    }
    const ToolResult result = RunTool(m_folder, {name, "\xD0\xB6.avi"});
    EXPECT_EQ(result.code, 0u) << result.errors;
    EXPECT_FALSE(Read("\xD0\xB6.avi").empty());
    const ToolResult missing = RunTool(m_folder, {"\xD0\xB6.y4m", "x.avi"});
    EXPECT_NE(missing.errors.find("\xD0\xB6.y4m"), std::string::npos) << missing.errors;
}

TEST_F(ToolErrors, QuietIsQuietAndHelpIsOnStandardOutput) {
    const ToolResult quiet = Run("- - --quiet", {MakeY4m(32, 24, 2, {})});
    EXPECT_EQ(quiet.code, 0u);
    EXPECT_EQ(quiet.errors, "");
    const ToolResult help = Run("--help");
    EXPECT_EQ(help.code, 0u);
    EXPECT_NE(help.Text().find("--sensitivity"), std::string::npos);
    EXPECT_EQ(Run("--version").Text().find("nmfvdeint "), 0u);
}

} // namespace
} // namespace host
