#include "bench/panel/Noctra.h"

#include <chrono>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <unistd.h>

namespace noctra::bench {

namespace {

std::vector<std::string> ownEnvironment() {
    std::vector<std::string> variables;
    for (char** variable = environ; *variable != nullptr; ++variable)
        variables.emplace_back(*variable);
    return variables;
}

constexpr const char* answerMark = "bench ";

} // namespace

Noctra::Noctra(const std::string& binary) : program_({binary}, ownEnvironment()) {
    const auto start = std::chrono::steady_clock::now();
    if (!program_.waitForLine("App launched successfully"))
        throw std::runtime_error(binary + " did not come up");
    startTime_ =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

Noctra::Memory Noctra::memory() const {
    Memory memory;
    std::ifstream file("/proc/" + std::to_string(program_.id()) + "/smaps_rollup");
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string name;
        long amount = 0;
        words >> name >> amount;
        if (name == "Rss:")
            memory.resident = amount;
        else if (name == "Pss:")
            memory.share = amount;
        else if (name == "Private_Dirty:")
            memory.dirty = amount;
    }
    return memory;
}

std::vector<std::string> Noctra::ask(const std::string& line) {
    program_.type(line);
    ++answers_;
    constexpr desktop::Duration limit{120000};
    if (!program_.waitForLines(answers_, answerMark, limit))
        throw std::runtime_error("no answer to: " + line);
    std::string answer;
    for (const std::string& each : program_.outputLines())
        if (each.starts_with(answerMark))
            answer = each;
    std::istringstream words(answer.substr(std::string(answerMark).size()));
    std::vector<std::string> all;
    for (std::string word; words >> word;)
        all.push_back(word);
    return all;
}

} // namespace noctra::bench
