#pragma once

#include <map>
#include <string>

#include "platform/Resources.h"

namespace noctra {

class SimulatedResources : public Resources {
public:
    std::map<std::string, std::string, std::less<>> paths; ///< by "name.extension"

    [[nodiscard]] std::optional<std::string> path(std::string_view name,
                                                  std::string_view extension) const override {
        const auto found = paths.find(std::string(name) + '.' + std::string(extension));
        return found == paths.end() ? std::nullopt : std::optional(found->second);
    }
};

} // namespace noctra
