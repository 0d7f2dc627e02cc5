// The preferences file as a person finds it after the program has run.

#include <csignal>
#include <gtest/gtest.h>

#include "tests/desktop/support/DesktopFixture.h"

namespace noctra::desktop {

namespace {

class PreferencesFile : public DesktopFixture {
protected:
    bool comesToContain(const std::string& text) {
        return pollUntil(patience, [&] {
            return readFile(desktop().preferencesFile()).find(text) != std::string::npos;
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

TEST_F(PreferencesFile, ThatIsDamagedIsReportedKeptAndReplacedByDefaults) {
    const std::string garbage = "{\"filterIntensity\": 0.9}\n";
    desktop().writePreferences(garbage);
    const std::unique_ptr<Program> program = startProgram();
    EXPECT_EQ(program->countLines("cannot be read; starting with defaults"), 1U);
    command(*program, "noctra://on");
    EXPECT_TRUE(isDimmed(0, 1)) << "not the defaults";
    EXPECT_TRUE(comesToContain("filterEnabled=true"));
    EXPECT_EQ(readFile(desktop().preferencesFile().string() + ".damaged-1"), garbage);
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

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
