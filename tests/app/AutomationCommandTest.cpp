#include "app/AutomationCommand.h"

#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "app/CommandLine.h"
#include "app/Url.h"

namespace noctra {

namespace {

std::optional<AutomationCommand> commandIn(const std::string& text) {
    const std::optional<Url> url = parseUrl(text);
    return url ? automationCommand(*url) : std::nullopt;
}

} // namespace

TEST(AutomationCommand, IsTheHostOrElseTheFirstComponentOfThePath) {
    using Command = AutomationCommand;
    const std::vector<std::pair<std::string, Command>> cases{
        {"noctra://on", Command::on},
        {"noctra://OFF", Command::off},
        {"NOCTRA://Toggle", Command::toggle},
        {"noctra:///show", Command::show},
        {"noctra:/show", Command::show},
        {"noctra:////show//x", Command::show},
        {"noctra://on/", Command::on},
        {"noctra://on/off", Command::on},
        {"noctra://on/anything?x=1", Command::on},
        {"noctra://on?off", Command::on},
        {"noctra://on#off", Command::on},
        {"noctra:///toggle/off?x#y", Command::toggle},
        {"noctra://me:secret@on:80/x", Command::on},
        {"noctra:// on ", Command::on},
        {"noctra:///\xC2\xA0off\xE2\x80\xA8", Command::off},
    };
    for (const auto& [text, command] : cases)
        EXPECT_EQ(commandIn(text), command) << text;
}

TEST(AutomationCommand, IsNothingInABadUrlOfAnyShape) {
    std::vector<std::string> cases{"",
                                   "noctra://o n",
                                   "noctra://on\n",
                                   " noctra://on",
                                   "noc tra://on",
                                   "noctra://on/\n[00:00:00.000] forged",
                                   "noctra://on?\xC2\x9B",
                                   "noctra://on?\xED\xA0\x80",
                                   std::string("noctra://on\0", 12),
                                   std::string("noctra://on?\0x", 14),
                                   "noctra://on?" + std::string(1 << 20, 'x'),
                                   "noctra://" + std::string(1 << 20, '/'),
                                   std::string(1 << 20, 'n')};
    std::istringstream words(
        "on /on //on : ://on noctra noctra: noctra:on noctra:// noctra:/// noctra://dim "
        "noctra://foo/on noctra://onn noctra://%6Fn noctra://on%20 noctra:///%6fn noctra://?on "
        "noctra://@on@ noctra://[on] 1noctra://on noctra2://on other://on file:///on "
        "noctra://on\xFF noctra://on?\xC3 noctra://on?\xC0\xAF noctra://on?\xE0\x80\x80 "
        "noctra://on?\xF4\x90\x80\x80 "
        "noctra://on?\x1B[2J noctra://on?\x7F");
    for (std::string word; words >> word;)
        cases.push_back(word);
    for (const std::string& text : cases)
        EXPECT_EQ(commandIn(text), std::nullopt) << text.substr(0, 60);
}

TEST(AutomationCommand, TakesALongUrlUpToItsLimitAndTextInAnyLanguage) {
    const std::string start = "noctra://on?";
    EXPECT_TRUE(commandIn(start + std::string(longestUrl - start.size(), 'x')));
    EXPECT_FALSE(commandIn(start + std::string(longestUrl - start.size() + 1, 'x')));
    EXPECT_TRUE(commandIn("noctra://on?Lüneburg=日本語😀"));
}

TEST(AutomationCommand, MatchesItsRawValueExactly) {
    EXPECT_EQ(automationCommand("toggle"), AutomationCommand::toggle);
    for (const char* word : {"On", " on", "on ", "", "0"})
        EXPECT_EQ(automationCommand(std::string_view(word)), std::nullopt) << word;
    EXPECT_EQ(rawValue(AutomationCommand::show), "show");
}

TEST(CommandLine, KnowsUrlsAndTwoOptionsAndRefusesTheRest) {
    using Action = CommandLine::Action;
    const std::vector<std::pair<std::vector<std::string>, Action>> cases{
        {{}, Action::run},
        {{"noctra://on", "http://x", "noctra:"}, Action::run},
        {{"--help"}, Action::help},
        {{"noctra://on", "--version"}, Action::version},
        {{"on"}, Action::refuse},
        {{""}, Action::refuse},
        {{"-h"}, Action::refuse},
        {{"noctra://on", "off"}, Action::refuse},
        {{"--", "noctra://on"}, Action::refuse},
        {{"/usr/share"}, Action::refuse},
    };
    for (const auto& [arguments, action] : cases) {
        const CommandLine parsed = parseCommandLine(arguments);
        EXPECT_EQ(parsed.action, action) << testing::PrintToString(arguments);
        EXPECT_EQ(parsed.urls, action == Action::run ? arguments : std::vector<std::string>{});
    }
}

} // namespace noctra
