#pragma once

#include <string>

namespace noctra {

/// The program's own registration to be started when the user logs in. Main thread.
class LoginItem {
public:
    enum class Status { notRegistered, enabled, requiresApproval, notFound };

    virtual ~LoginItem() = default;

    [[nodiscard]] virtual Status status() const = 0;
    /// Each returns an empty text on success, else the error in words.
    virtual std::string registerItem() = 0;
    virtual std::string unregisterItem() = 0;
};

} // namespace noctra
