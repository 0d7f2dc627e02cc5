#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace noctra {

/// The files that come with the program: fonts and icons. Any thread.
class Resources {
public:
    virtual ~Resources() = default;

    /// The absolute path of the file `name`.`extension`, or nothing where the program came without
    /// it. Looks anew each time.
    [[nodiscard]] virtual std::optional<std::string> path(std::string_view name,
                                                          std::string_view extension) const = 0;
};

} // namespace noctra
