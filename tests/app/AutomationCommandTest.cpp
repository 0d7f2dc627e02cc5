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

TEST(AutomationCommand, IsTheHostOrElseTheFirstComponentOfThePath) {
    using Command = AutomationCommand;
    const std::vector<std::pair<std::string, Command>> cases{
        {"noctra://on/anything?x=1", Command::on},
        {"noctra://OFF", Command::off},
        {"NOCTRA://Toggle", Command::toggle},
        {"noctra:/show", Command::show},
        {"noctra:////show//x", Command::show},
        {"noctra:///toggle/off?x#y", Command::toggle},
        {"noctra://on#off", Command::on},
        {"noctra://me:secret@on:65535/x", Command::on},
        {"noctra://:@on:/x", Command::on},
        {"noctra://%20%6Fn%0a", Command::on},
        {"noctra:///%74oggle%20", Command::toggle},
        {"noctra:///%C2%A0off%E2%80%A8", Command::off},
        {"noctra://on?L%C3%BCneburg/?@:", Command::on},
        {"noctra://on?" + std::string(longestUrl - 12, 'x'), Command::on},
    };
    for (const auto& [text, command] : cases)
        EXPECT_EQ(commandInUrl(text), command) << text.substr(0, 60);
}

TEST(AutomationCommand, IsNothingInABadUrlOfAnyShape) {
    std::vector<std::string> cases{"",
                                   "noctra://o n",
                                   " noctra://on",
                                   "noctra://on?a b",
                                   "noctra://on/\n[00:00:00.000] forged",
                                   "noctra://on?\xC2\x9B",
                                   "noctra://on?\xC3\xBC",
                                   "noctra://on?\xED\xA0\x80",
                                   std::string("noctra://on\0", 12),
                                   "noctra://on?" + std::string(longestUrl - 11, 'x')};
    std::istringstream words(
        "on //on : ://on noctra noctra:on noctra:/// noctra://dim noctra://foo/on noctra://onn "
        "noctra://%256Fn noctra:///%252fon noctra:///%2Fon noctra://?on noctra://on:abc "
        "noctra://on:65536 noctra://on:99999999999999999999 noctra://on:-1 noctra://on:8:0 "
        "noctra://a@b@on noctra://@on@ noctra://on%2 noctra://on%zz noctra://on%+1 noctra://on/%2 "
        "noctra://on#a#b noctra://on?[x] noctra://o\"n noctra://on/<x> noctra://on\\ noctra://[on] "
        "1noctra://on noctra2://on other://on file:///on noctra://on\xFF noctra://on?\x1B[2J "
        "noctra://on?\x7F");
    for (std::string word; words >> word;)
        cases.push_back(word);
    for (const std::string& text : cases)
        EXPECT_EQ(commandInUrl(text), std::nullopt) << text.substr(0, 60);
}

TEST(CommandLine, KnowsUrlsAndTwoOptionsAndRefusesTheRest) {
    using Action = CommandLine::Action;
    const std::vector<std::pair<std::vector<std::string>, Action>> cases{
        {{}, Action::run},
        {{"noctra://on", "http://x", "noctra:"}, Action::run},
        {{"-h"}, Action::help},
        {{"noctra://on", "--version"}, Action::version},
        {{""}, Action::refuse},
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
