#include "tests/desktop/support/TemporaryFolder.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace noctra::desktop {

TemporaryFolder::TemporaryFolder() {
    // Short on purpose: the name of a Unix socket inside must stay below 108 bytes.
    std::string name = (std::filesystem::temp_directory_path() / "noctra-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no temporary folder can be made");
    path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string readFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void writeFile(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream << bytes;
    stream.close();
    if (!stream)
        throw std::runtime_error("cannot write " + file.string());
}

} // namespace noctra::desktop
