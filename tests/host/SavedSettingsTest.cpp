// The user's saved settings before and after runs of the program.
#include "tests/host/ToolRun.h"
#include "tests/support/SavedSettings.h"

namespace host {
namespace {

class ToolSettings : public ToolTest {
protected:
    static bool KeyExists() {
        HKEY key = nullptr;
        RegOpenKeyExA(HKEY_CURRENT_USER, kSettingsKey, 0, KEY_READ, &key);
        return RegCloseKey(key) == ERROR_SUCCESS;
    }

    const Bytes m_clip = MakeY4m(32, 24, 4, {1});
    const Bytes m_longClip = MakeY4m(64, 48, 8, {}); // not in a pipe as a whole, so its frames are being taken
    const UsersSettings m_users;
};

const char* const kRuns[] = {
    "- - --mode off --roi 0,0,8,8 --sensitivity 2",
    "- - --saved --method rebuild",
    "- - --roi 0,0,99,99", // fails while the settings are applied
    "- - --feed rgb24 --mode all --pattern 1,2,3,on --segment 5,all --protect 1,1,5,5",
};

TEST_F(ToolSettings, NoneStayNone) {
    for (const char* run : kRuns) {
        Run(run, {m_clip});
        EXPECT_FALSE(KeyExists()) << run;
    }
}

// Those that were saved when the run began, or by another program while it ran.
TEST_F(ToolSettings, OldOnesStayByteForByte) {
    ASSERT_EQ(Run("- - --save --mode all --sensitivity 3.5", {m_clip}).code, 0u);
    const std::vector<BYTE> own = ReadSavedSettings();
    ASSERT_FALSE(own.empty());
    const std::vector<BYTE> damaged = {1, 2, 3, 4, 5};
    const std::vector<BYTE> others(9000, 7);
    for (const std::vector<BYTE>& saved : {own, damaged}) {
        WriteSavedSettings(REG_BINARY, saved);
        for (const char* run : kRuns) {
            Run(run, {m_clip});
            EXPECT_EQ(ReadSavedSettings(), saved) << run;
            Run(run, {m_longClip, SIZE_MAX, [&others](HANDLE) { WriteSavedSettings(REG_BINARY, others); }});
            EXPECT_EQ(ReadSavedSettings(), others) << run;
            WriteSavedSettings(REG_BINARY, saved);
        }
        Bytes cut = m_clip;
        cut.pop_back();
        EXPECT_EQ(Run("- - --save --mode off", {cut}).code, 2u);
        EXPECT_EQ(ReadSavedSettings(), saved) << "a run that fails saves nothing";
    }
}

TEST_F(ToolSettings, SaveAndSavedWorkTogether) {
    ASSERT_EQ(Run("- - --save --mode all", {m_clip}).code, 0u);
    EXPECT_EQ(NumberBefore(Run("- - --saved", {m_clip}).errors, " frames came out different"), 4);
    EXPECT_EQ(NumberBefore(Run("- - --saved --mode off", {m_clip}).errors, " frames came out different"), 0);
    ASSERT_EQ(Run("- - --saved --save --mode off", {m_clip}).code, 0u);
    EXPECT_EQ(NumberBefore(Run("- - --saved", {m_clip}).errors, " frames came out different"), 0);
    EXPECT_EQ(NumberBefore(Run("- - --mode all", {m_clip}).errors, " frames came out different"), 4);
}

// Over a saved rectangle of any kind the rectangle of the command line arrives.
TEST_F(ToolSettings, RegionsReplaceSavedOnes) {
    for (const char* saved : {"0,0,32,24", "20,2,30,4", "1,20,2,24"}) {
        ASSERT_EQ(Run(std::string("- - --save --mode all --roi ") + saved, {m_clip}).code, 0u);
        for (const char* region : {"0,0,4,4", "4,4,32,24", "10,1,12,23"}) {
            const std::string options = std::string("- - --mode all --roi ") + region;
            const ToolResult fresh = Run(options, {m_clip});
            const ToolResult over = Run(options + " --saved", {m_clip});
            EXPECT_EQ(over.code, 0u) << over.errors;
            EXPECT_EQ(over.output, fresh.output) << region << " over " << saved;
        }
    }
}

} // namespace
} // namespace host
