// The short run of a fuzz target, for builds without libFuzzer: every file of a corpus, then a
// fixed number of changed ones, the same ones each time; one that fails is left in
// fuzz-failed-input. Its arguments: the folder of the corpus, and that number.

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t longest = 16384;

char current[512] = "before the first input\n"; ///< what is being run

const Bytes* bytesNow = nullptr; ///< these are its bytes
constexpr auto keptAs = "fuzz-failed-input";

/// The sanitizers' reports, too, end here.
void tellCurrent(int) {
    static_cast<void>(!::write(STDERR_FILENO, current, std::char_traits<char>::length(current)));
    const int file = ::open(keptAs, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file >= 0 && bytesNow != nullptr)
        static_cast<void>(!::write(file, bytesNow->data(), bytesNow->size()));
    std::signal(SIGABRT, SIG_DFL);
    std::abort();
}

struct Seed {
    std::string name;
    Bytes bytes;
};

std::vector<Seed> corpusIn(const std::filesystem::path& folder) {
    std::vector<Seed> corpus;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::ifstream file(entry.path(), std::ios::binary);
        corpus.push_back(
            {entry.path().filename(), Bytes(std::istreambuf_iterator<char>(file), {})});
    }
    std::sort(corpus.begin(), corpus.end(),
              [](const Seed& a, const Seed& b) { return a.name < b.name; });
    return corpus;
}

class Mutator {
public:
    explicit Mutator(const std::vector<Seed>& corpus) : corpus_(corpus) {}

    [[nodiscard]] const Seed& pick() { return corpus_[below(corpus_.size())]; }

    void change(Bytes& bytes) {
        for (std::size_t left = 1 + below(4); left > 0; --left)
            changeOnce(bytes);
        bytes.resize(std::min(bytes.size(), longest));
    }

private:
    std::size_t below(std::size_t limit) { return limit == 0 ? 0 : random_() % limit; }

    void changeOnce(Bytes& bytes) {
        constexpr std::uint8_t telling[]{0, 1, 0x7F, 0x80, 0xFF, '\n', '=', '/', '-', '9'};
        const std::size_t at = below(bytes.size());
        const auto place = bytes.begin() + static_cast<std::ptrdiff_t>(at);
        const auto end = place + static_cast<std::ptrdiff_t>(below(bytes.size() - at + 1));
        switch (below(6)) {
        case 0:
            if (!bytes.empty())
                bytes[at] ^= static_cast<std::uint8_t>(1U << below(8));
            break;
        case 1:
            if (!bytes.empty())
                bytes[at] = telling[below(std::size(telling))];
            break;
        case 2:
            bytes.insert(place, telling[below(std::size(telling))]);
            break;
        case 3:
            bytes.erase(place, end);
            break;
        case 4: { // a part twice
            const Bytes part(place, end);
            bytes.insert(place, part.begin(), part.end());
            break;
        }
        default: { // another one's end
            const Bytes& other = pick().bytes;
            const auto from = static_cast<std::ptrdiff_t>(below(other.size()));
            bytes.erase(place, bytes.end());
            bytes.insert(bytes.end(), other.begin() + from, other.end());
        }
        }
    }

    const std::vector<Seed>& corpus_;
    std::mt19937 random_{20260101}; // the same numbers with every standard library
};

void run(const Bytes& bytes) {
    const Bytes exact(bytes); // not a byte of room behind it
    bytesNow = &exact;
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
    bytesNow = nullptr;
}

} // namespace

int main(int count, char** arguments) {
    const auto corpus = count == 3 ? corpusIn(arguments[1]) : std::vector<Seed>();
    const int mutations = count == 3 ? std::atoi(arguments[2]) : 0;
    if (corpus.empty() || mutations <= 0) {
        std::fputs("A target takes the folder of its corpus, with files in it, and a number.\n",
                   stderr);
        return 2;
    }
    std::signal(SIGABRT, tellCurrent);
    for (const Seed& seed : corpus) {
        std::snprintf(current, sizeof current, "The input was %s.\n", seed.name.c_str());
        run(seed.bytes);
    }
    Mutator mutator(corpus);
    for (int i = 0; i < mutations; ++i) {
        const Seed& seed = mutator.pick();
        std::snprintf(current, sizeof current, "The input was change %d, of %s.\n", i,
                      seed.name.c_str());
        Bytes bytes = seed.bytes;
        mutator.change(bytes);
        run(bytes);
    }
    std::printf("%zu inputs and %d changed ones\n", corpus.size(), mutations);
    return 0;
}
