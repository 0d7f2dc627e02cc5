#pragma once

#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/desktop/soak/SmallDisk.h"
#include "tests/desktop/soak/SoakChance.h"
#include "tests/desktop/soak/SoakModel.h"
#include "tests/desktop/support/FakeBacklight.h"
#include "tests/desktop/support/MockLogind.h"
#include "tests/desktop/support/PanelFixture.h"
#include "tests/desktop/support/TrayHost.h"
#include "tests/desktop/support/XSettingsManager.h"

namespace noctra::desktop {

/// Folders in it included; 0 where there is none.
[[nodiscard]] std::size_t countFiles(const std::filesystem::path& folder);

/// A whole desktop, the program on it, and what is expected of them. Actions change the desktop and
/// the model together; `settle` waits until all is quiet, and says where the two differ.
class Soak : public PanelFixture {
protected:
    using Answer = std::map<std::string, std::string>; ///< values by their names

    struct Action {
        const char* name;
        int weight;
        void (Soak::*run)();
    };
    static const std::vector<Action> actions;

    static void SetUpTestSuite();
    void SetUp() override;
    void TearDown() override;

    /// Waits for quiet and checks everything.
    void settle();
    /// What was decided within an action, for whoever repeats it.
    void note(const std::string& what) { std::cout << " " << what << std::flush; }

    SoakChance chance{0};

private:
    // The desktop.
    void learnThePanel();
    void start();
    Ending awaitEnding(const Ending& expected);
    void endAndStartAgain(const Ending& expected);
    void bringUp();
    void takeDown();
    void bringUpLogind();
    void open(const std::string& url, bool throughABus);
    void openGood(bool throughABus);
    [[nodiscard]] std::optional<Box> onPanel(const std::string& control);
    void click(const char* control);
    void play(const InputDevices::Commands& commands);
    void plug(int output, bool in);
    /// After the session bus was started again the program takes a while to find it.
    void awaitProgramOnBus();
    void awaitCommands();
    void awaitOtherStarts();
    bool awaitTrayItem();

    // Actions.
    void goodUrl();
    void badUrl();
    void plugOrUnplug();
    void changeMode();
    void setMode(int output, const std::string& mode);
    void wake();
    void restartSystemBus();
    void restartSessionBus();
    void restartTray();
    void drag();
    void turnTheWheel();
    void press();
    void useTheSettings();
    void closePanel();
    void disturbConfig();
    void removeFromConfig();
    void disturbRuntime();
    void writeForeignTables();
    void setBacklight();
    void breakBacklight();
    void switchPwmSafe();
    void switchLogin();
    void endBySignal();
    void crash();
    void stopAndContinue();
    void signalInVain();
    void loseTheServer();

    // Checks, in the order in which `settle` makes them.
    [[nodiscard]] bool isStoppedByHand();
    [[nodiscard]] bool outlivesHands();
    void awaitRefresh();
    void checkState();
    void followHands();
    void checkTables();
    void checkBacklight();
    [[nodiscard]] bool levelIsUnknown() const;
    void checkLevelAfterTheEnd();
    void checkPreferences();
    [[nodiscard]] std::string preferencesTrouble();
    [[nodiscard]] std::size_t mostFiles() const;
    void checkAutostart();
    void checkProcess();
    void checkLog();
    Answer ask(const std::string& question);
    [[nodiscard]] Answer readPreferences();
    [[nodiscard]] std::vector<Tables> ownTablesThatFit(int crtc, const Tables& carried,
                                                       bool filtered) const;
    [[nodiscard]] std::string tableTrouble(bool filtered) const;
    void keepWhatIsFound(bool filtered);

    std::unique_ptr<SmallDisk> config_;
    std::unique_ptr<SmallDisk> runtime_;
    std::unique_ptr<FakeBacklight> backlight_;
    std::unique_ptr<SystemBus> systemBus_;
    std::unique_ptr<MockLogind> logind_;
    std::unique_ptr<TrayHost> tray_;
    TrayKind trayKind_ = TrayKind::embedded;
    std::unique_ptr<XSettingsManager> settings_;
    std::unique_ptr<CommandChannel> commands_;
    std::unique_ptr<Program> program_;
    std::vector<std::unique_ptr<Program>> otherStarts_;
    std::map<std::string, Box> controls_; ///< in the panel; those of the sheet too
    Box panelSize_;
    SoakModel model_;
    struct Use {
        long kib = 0;
        int threads = 0;
        int descriptors = 0;
    };
    [[nodiscard]] Use use() const;
    std::optional<Use> atFirst_;
    std::set<int> plugged_;
    std::size_t logRead_ = 0;
    std::size_t errorsRead_ = 0;
};

} // namespace noctra::desktop
