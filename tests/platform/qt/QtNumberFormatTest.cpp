#include "platform/qt/QtNumberFormat.h"

#include <vector>

#include <QtCore/QByteArray>

#include <gtest/gtest.h>

namespace noctra {

TEST(QtNumberFormat, FollowsTheVariablesOfTheEnvironmentInTheirOrder) {
    struct Case {
        const char *all, *numeric, *lang, *written;
    };
    for (const auto& [all, numeric, lang, written] :
         std::vector<Case>{{"", "", "", "4,000"},
                           {"", "", "C.UTF-8", "4,000"},
                           {"", "", "de_DE.UTF-8", "4.000"},
                           {"", "de_DE.UTF-8", "C", "4.000"},
                           {"", "en_GB.UTF-8", "de_DE.UTF-8", "4,000"},
                           {"C", "de_DE.UTF-8", "de_DE.UTF-8", "4,000"}}) {
        qputenv("LC_ALL", all);
        qputenv("LC_NUMERIC", numeric);
        qputenv("LANG", lang);
        EXPECT_EQ(QtNumberFormat().decimal(4000), written) << all << ';' << numeric << ';' << lang;
    }
}

} // namespace noctra
