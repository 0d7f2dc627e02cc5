// Every file of a corpus once, for builds without libFuzzer. Its argument: the folder.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int count, char** arguments) {
    int inputs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(count == 2 ? arguments[1] : ".")) {
        std::fprintf(stderr, "%s\n", entry.path().c_str());
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<std::uint8_t> bytes(std::istreambuf_iterator<char>(file), {});
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
        ++inputs;
    }
    return inputs > 0 ? 0 : 1;
}
