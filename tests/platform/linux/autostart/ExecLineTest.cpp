#include "platform/linux/autostart/ExecLine.h"

#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

namespace noctra {

namespace {

TEST(ExecLine, APathIsQuotedWhereItHasToBe) {
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
}

TEST(ExecLine, EveryPathIsReadBackAndStandsInAValidEntry) {
    const test::TemporaryFolder folder;
    const bool canValidate = std::system("command -v desktop-file-validate >/dev/null") == 0;
    for (int code = 1; code < 128; ++code) {
        if (code == '/')
            continue;
        // Doubled, and at the end, where a trailing backslash would swallow the quotation mark.
        const std::string path = "/a/" + std::string(2, static_cast<char>(code)) + "s%U/x" +
                                 std::string(1, static_cast<char>(code));
        const std::string value = execLineFor(path);
        EXPECT_EQ(argumentsIn(value), std::vector<std::string>{path}) << code;
        EXPECT_EQ(value.find('\n'), std::string::npos) << code;
        if (!canValidate || code < ' ' || code == 127) // it takes no control characters
            continue;
        const auto file = folder / "entry.desktop";
        test::writeFile(file, "[Desktop Entry]\nType=Application\nName=x\nExec=" + value + "\n");
        EXPECT_EQ(std::system(("desktop-file-validate " + file.string()).c_str()), 0) << value;
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
          Case{R"(one\stwo)", {"one", "two"}}, Case{R"("one\stwo")", {"one two"}},
          Case{R"(a\)", {R"(a\)"}}})
        EXPECT_EQ(argumentsIn(known.value), known.arguments) << known.value;
}

} // namespace

} // namespace noctra
