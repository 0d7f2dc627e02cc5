#pragma once

#include <optional>
#include <string>

namespace noctra {

/// A file of the kernel's that says one number, read anew each time. One thread at a time.
class NumberFile {
public:
    NumberFile() = default; ///< no file: reads nothing
    explicit NumberFile(const std::string& path);
    NumberFile(NumberFile&& other) noexcept;
    NumberFile& operator=(NumberFile&& other) noexcept;
    ~NumberFile();

    /// The number that the file says now; nothing when there is no file, or when what it says is
    /// negative, beyond the type or more than a number and white space after it. One system call.
    [[nodiscard]] std::optional<unsigned int> read() const;

private:
    int descriptor_ = -1;
};

} // namespace noctra
