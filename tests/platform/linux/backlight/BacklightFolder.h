#pragma once

#include <filesystem>
#include <string>

#include "tests/support/TemporaryFolder.h"

namespace noctra::test {

/// A folder in the place of the kernel's class folder.
class BacklightFolder {
public:
    struct Device {
        std::string type = "raw\n";
        std::string maximum = "100\n";
        std::string value = "40\n";
    };

    [[nodiscard]] std::string path() const { return folder_.path(); }

    void add(const std::string& name, const Device& device) {
        std::filesystem::create_directory(folder_ / name);
        write(name, "type", device.type);
        write(name, "max_brightness", device.maximum);
        set(name, device.value);
    }
    /// Setting and hardware alike.
    void set(const std::string& name, const std::string& value) {
        write(name, "brightness", value);
        write(name, "actual_brightness", value);
    }
    void write(const std::string& name, const std::string& file, const std::string& bytes) {
        test::writeFile(folder_ / name / file, bytes);
    }
    /// As the kernel takes a device away: open files say nothing any more, the names are gone.
    void remove(const std::string& name) {
        set(name, "");
        std::filesystem::remove_all(folder_ / name);
    }

private:
    test::TemporaryFolder folder_;
};

} // namespace noctra::test
