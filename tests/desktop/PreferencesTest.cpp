// The preferences file is the person's: it is read with care and never loses what it held.

#include <algorithm>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/desktop/support/DesktopFixture.h"

namespace noctra::desktop {

namespace {

using ::testing::HasSubstr;

class PreferencesFile : public DesktopFixture {
protected:
    bool comesToContain(const std::string& text) {
        return pollUntil(patience, [&] {
            return readFile(desktop().preferencesFile()).find(text) != std::string::npos;
        });
    }

    /// Whether a file beside the preferences file holds exactly `bytes`.
    bool isKeptBeside(const std::string& bytes) {
        const std::filesystem::path file = desktop().preferencesFile();
        const std::string prefix = file.filename().string() + ".";
        const std::filesystem::directory_iterator folder(file.parent_path());
        return std::any_of(begin(folder), end(folder), [&](const auto& entry) {
            return entry.path().filename().string().starts_with(prefix) &&
                   readFile(entry.path()) == bytes;
        });
    }
};

TEST_F(PreferencesFile, IsWrittenAfterAChangeAndTheFilterStillStartsOff) {
    const std::unique_ptr<Program> program = startDimmed();
    EXPECT_TRUE(comesToContain("filterEnabled=true"));
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
    const std::unique_ptr<Program> next = startProgram();
    EXPECT_TRUE(isUntouched());
    EXPECT_TRUE(comesToContain("filterEnabled=false"));
    command(*next, "noctra://on");
    EXPECT_TRUE(isDimmed()) << "warmth and brightness are kept";
}

TEST_F(PreferencesFile, KeepsWhatItHeldBesideTheProgramsOwnKeys) {
    desktop().writePreferences("[General]\nfilterIntensity=0.5\nfilterBrightness=0.6\n"
                               "pwmSafeMode=true\nlaterKey=\"of a later version\"\n\n"
                               "[Other]\nword=kept\n");
    const std::unique_ptr<Program> program = startDimmed();
    EXPECT_TRUE(comesToContain("filterEnabled=true"));
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
    const std::string text = readFile(desktop().preferencesFile());
    for (const char* part :
         {"pwmSafeMode=true", "laterKey=", "of a later version", "[Other]", "word=kept"})
        EXPECT_THAT(text, HasSubstr(part));
}

struct Garbage {
    const char* name;
    std::string bytes;
};

void PrintTo(const Garbage& garbage, std::ostream* stream) {
    *stream << garbage.name;
}

class DamagedPreferencesFile : public PreferencesFile,
                               public ::testing::WithParamInterface<Garbage> {};

TEST_P(DamagedPreferencesFile, IsReportedKeptAndReplacedByDefaults) {
    desktop().writePreferences(GetParam().bytes);
    const std::unique_ptr<Program> program = startProgram();
    EXPECT_GT(program->countLines("references"), 0U) << "the log says nothing";
    command(*program, "noctra://on");
    EXPECT_TRUE(isDimmed(0, 1)) << "not the defaults";
    EXPECT_TRUE(comesToContain("filterEnabled=true"));
    EXPECT_TRUE(isKeptBeside(GetParam().bytes)) << "the old content is lost";
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

std::string everyByteOnce() {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes.push_back(static_cast<char>(byte));
    return bytes;
}

INSTANTIATE_TEST_SUITE_P(
    PreferencesFile, DamagedPreferencesFile,
    ::testing::Values(Garbage{"EveryByte", everyByteOnce()},
                      Garbage{"AnImage", std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16)},
                      Garbage{"Zeros", std::string(300, '\0')},
                      Garbage{"AnotherLanguage", "{\"filterIntensity\": 0.9}\n"},
                      Garbage{"HeaderCutShort", "[General\nfilterIntensity=0.9\n"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(PreferencesFile, WhoseFolderCannotBeUsedStopsNothing) {
    std::filesystem::remove_all(desktop().preferencesFile().parent_path());
    writeFile(desktop().preferencesFile().parent_path(), "a file where the folder should be");
    const std::unique_ptr<Program> program = startProgram();
    command(*program, "noctra://on");
    EXPECT_TRUE(isDimmed(0, 1));
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

} // namespace

} // namespace noctra::desktop
