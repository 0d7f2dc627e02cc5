#pragma once

// What every Displays adapter has to do, written once and run on each of them. A test program
// includes this header and instantiates DisplaysContract with a function that makes a fixture for
// its adapter.

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Displays.h"

namespace noctra {

/// An adapter with at least two attached displays, none of which carries a filter.
class DisplaysUnderTest {
public:
    virtual ~DisplaysUnderTest() = default;
    virtual Displays& displays() = 0;
    /// The tables on the display, whoever put them there, read without the adapter.
    virtual GammaTables carried(DisplayId display) = 0;
    /// Takes the last attached display away, as unplugging does; returns once the adapter can know.
    virtual void unplugLast() = 0;
};

/// Makes a fresh one; `adapter` names it in the tests' names.
struct MakeDisplays {
    std::string adapter;
    std::function<std::unique_ptr<DisplaysUnderTest>()> make;

    friend void PrintTo(const MakeDisplays& made, std::ostream* out) { *out << made.adapter; }
};

class DisplaysContract : public testing::TestWithParam<MakeDisplays> {
protected:
    std::unique_ptr<DisplaysUnderTest> underTest = GetParam().make();
    Displays& displays = underTest->displays();

    std::vector<DisplayId> attached() {
        std::vector<DisplayId> ids{999}; // whatever was in it is replaced
        displays.attachedScreens(ids);
        return ids;
    }

    GammaTables read(DisplayId display) {
        GammaTables tables;
        std::uint32_t count = 0;
        EXPECT_EQ(displays.readTables(display, tables, count), 0);
        EXPECT_EQ(count, gammaTableSize);
        return tables;
    }

    GammaTables carried(DisplayId display) { return underTest->carried(display); }

    /// The displays whose writes failed.
    std::vector<DisplayId> settle() {
        std::vector<DisplayId> failed;
        displays.settle([&](DisplayId display, Displays::Status status) {
            EXPECT_NE(status, 0);
            failed.push_back(display);
        });
        return failed;
    }

    static GammaTables dimmed(GammaTables tables, float factor) {
        for (GammaChannel* channel : {&tables.red, &tables.green, &tables.blue})
            for (float& level : *channel)
                level *= factor;
        return tables;
    }

    /// Equal to within one step of 16 bits.
    static void expectSame(const GammaTables& actual, const GammaTables& expected) {
        for (const auto channel : {&GammaTables::red, &GammaTables::green, &GammaTables::blue})
            for (std::size_t k = 0; k < gammaTableSize; ++k)
                ASSERT_NEAR((actual.*channel)[k], (expected.*channel)[k], 1.01F / 65535.0F) << k;
    }

    static constexpr DisplayId nobody = 0xFFFFFFF0U;
};

TEST_P(DisplaysContract, NamesEachAttachedDisplayTheSameWayEveryTime) {
    const std::vector<DisplayId> first = attached();
    EXPECT_GE(first.size(), 2U);
    EXPECT_EQ(std::set<DisplayId>(first.begin(), first.end()).size(), first.size());
    EXPECT_EQ(attached(), first);
    EXPECT_EQ(displays.screenCount(), first.size());
}

TEST_P(DisplaysContract, WritesToItsDisplayOnlyAndNeverTakesThatForTheDisplaysOwnTables) {
    const std::vector<DisplayId> ids = attached();
    const GammaTables own = read(ids[0]);
    const GammaTables other = read(ids[1]);
    displays.writeTables(ids[0], dimmed(own, 0.5F));
    EXPECT_TRUE(settle().empty());
    expectSame(carried(ids[0]), dimmed(own, 0.5F));
    EXPECT_EQ(carried(ids[1]), other);
    EXPECT_EQ(read(ids[0]), own);

    displays.writeTables(ids[0], own);
    EXPECT_TRUE(settle().empty());
    EXPECT_EQ(carried(ids[0]), own) << "bit for bit";
    EXPECT_EQ(read(ids[0]), own);
}

TEST_P(DisplaysContract, TakesTheLastOfSeveralWritesToOneDisplay) {
    const DisplayId id = attached().front();
    const GammaTables own = read(id);
    for (const float factor : {0.9F, 0.1F, 0.7F})
        displays.writeTables(id, dimmed(own, factor));
    EXPECT_TRUE(settle().empty());
    expectSame(carried(id), dimmed(own, 0.7F));
}

TEST_P(DisplaysContract, AnswersForADisplayThatDoesNotExistWithoutHurtingTheOthers) {
    const DisplayId id = attached().front();
    const GammaTables own = read(id);
    GammaTables tables = dimmed(own, 0.3F);
    const GammaTables before = tables;
    std::uint32_t count = 77;
    EXPECT_NE(displays.readTables(nobody, tables, count), 0);
    EXPECT_EQ(tables, before);
    EXPECT_EQ(count, 77U);

    displays.writeTables(nobody, own);
    displays.writeTables(id, dimmed(own, 0.5F));
    EXPECT_EQ(settle(), std::vector<DisplayId>{nobody});
    expectSame(carried(id), dimmed(own, 0.5F));
    EXPECT_TRUE(settle().empty()) << "a failure is reported once";
}

TEST_P(DisplaysContract, PutsTheCalibratedTablesBackAndLeavesThemWhereTheyAre) {
    const std::vector<DisplayId> ids = attached();
    displays.restoreCalibratedTables();
    std::vector<GammaTables> own;
    for (const DisplayId id : ids) {
        own.push_back(read(id));
        displays.writeTables(id, dimmed(own.back(), 0.4F));
    }
    EXPECT_TRUE(settle().empty());
    for (int round = 0; round < 2; ++round) {
        displays.restoreCalibratedTables();
        for (std::size_t i = 0; i < ids.size(); ++i)
            EXPECT_EQ(carried(ids[i]), own[i]) << "display " << i << ", round " << round;
        EXPECT_TRUE(settle().empty()) << "its own writes are nobody else's failures";
    }
}

TEST_P(DisplaysContract, FailsForADisplayThatWasUnplugged) {
    const std::vector<DisplayId> ids = attached();
    const GammaTables own = read(ids.back());
    underTest->unplugLast();
    std::vector<DisplayId> expected(ids.begin(), ids.end() - 1);
    EXPECT_EQ(attached(), expected);
    EXPECT_EQ(displays.screenCount(), expected.size());
    displays.writeTables(ids.back(), own);
    displays.writeTables(ids.front(), read(ids.front()));
    EXPECT_EQ(settle(), std::vector<DisplayId>{ids.back()});
}

} // namespace noctra
