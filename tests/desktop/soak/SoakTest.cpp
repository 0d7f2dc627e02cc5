// The program on a desktop on which everything goes wrong, again and again. Repeat a run with
// NOCTRA_SOAK_SEED; let it go on with NOCTRA_SOAK_SECONDS.

#include <chrono>
#include <cstdlib>
#include <numeric>

#include "tests/desktop/soak/Soak.h"

namespace noctra::desktop {

namespace {

constexpr int mostActionsInARound = 6;

unsigned number(const char* variable, unsigned otherwise) {
    const char* given = std::getenv(variable);
    return given != nullptr ? static_cast<unsigned>(std::stoul(given)) : otherwise;
}

} // namespace

struct SoakTest : Soak {
    const unsigned seed = number("NOCTRA_SOAK_SEED", 20261123);

    SoakTest() { chance = SoakChance(seed); }

    const Action& draw() {
        const int all =
            std::accumulate(actions.begin(), actions.end(), 0,
                            [](int sum, const Action& one) { return sum + one.weight; });
        int left = chance.below(all);
        auto drawn = actions.begin();
        while (left >= drawn->weight)
            left -= (drawn++)->weight;
        return *drawn;
    }
    void playARound() {
        for (int more = 1 + chance.below(mostActionsInARound); more > 0; --more) {
            const Action& action = draw();
            std::cout << "; " << action.name << std::flush;
            (this->*action.run)();
        }
        settle();
    }
};

TEST_F(SoakTest, EndsEveryRoundInOrder) {
    const std::chrono::seconds length(number("NOCTRA_SOAK_SECONDS", 30));
    std::cout << "NOCTRA_SOAK_SEED=" << seed;
    const auto end = std::chrono::steady_clock::now() + length;
    for (int round = 1; std::chrono::steady_clock::now() < end && !HasFailure(); ++round) {
        std::cout << "\nround " << round;
        SCOPED_TRACE("NOCTRA_SOAK_SEED=" + std::to_string(seed) + ", round " +
                     std::to_string(round));
        playARound();
    }
    std::cout << std::endl;
}

} // namespace noctra::desktop
