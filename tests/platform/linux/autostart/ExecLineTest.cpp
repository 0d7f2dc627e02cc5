#include "platform/linux/autostart/ExecLine.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace noctra {

TEST(ExecLine, APathIsQuotedWhereItHasToBeAndReadBackAsItWas) {
    struct Case {
        const char* path;
        const char* value;
    };
    for (const Case& known :
         {Case{"/usr/bin/noctra", "/usr/bin/noctra"},
          Case{"/opt/dim ming/noctra", R"("/opt/dim ming/noctra")"},
          Case{"/100%/noctra", "/100%%/noctra"}, Case{R"(/a"b/noctra)", R"("/a\\"b/noctra")"},
          Case{"/a$b/noctra", R"("/a\\$b/noctra")"}, Case{"/a`b/noctra", R"("/a\\`b/noctra")"},
          Case{R"(/a\b/noctra)", R"("/a\\\\b/noctra")"}, Case{"/a\nb/noctra", R"("/a\nb/noctra")"}})
        EXPECT_EQ(execLineFor(known.path), known.value);
    for (const char reserved : std::string(" \t\n\"'\\><~|&;$*?#()`"))
        EXPECT_TRUE(execLineFor(std::string("/a") + reserved).starts_with('"')) << reserved;
    for (int code = 1; code < 128; ++code) {
        // Doubled, and at the end, where a trailing backslash would swallow the quotation mark.
        const std::string character(1, static_cast<char>(code));
        const std::string path = "/a/" + character + character + "s%U/x" + character;
        EXPECT_EQ(argumentsIn(execLineFor(path)), std::vector<std::string>{path}) << code;
    }
}

TEST(ExecLine, OthersLinesAreTakenApart) {
    struct Case {
        const char* value;
        std::vector<std::string> arguments;
    };
    for (const Case& known :
         {Case{"", {}}, Case{"  noctra \t %U ", {"noctra", "%U"}},
          Case{R"(env  "A=b c" "/opt/x y/noctra")", {"env", "A=b c", "/opt/x y/noctra"}},
          Case{R"("")", {""}}, Case{R"("unfinished \\)", {R"(unfinished \)"}},
          Case{R"(one\stwo)", {"one", "two"}}, Case{R"("one\stwo")", {"one two"}}})
        EXPECT_EQ(argumentsIn(known.value), known.arguments) << known.value;
}

} // namespace noctra
