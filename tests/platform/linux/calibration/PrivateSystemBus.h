#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include <QDBusConnection>
#include <QDBusMessage>

#include "tests/platform/linux/calibration/ChildProcess.h"

namespace noctra::test {

/// A system bus of the tests' own, at one address in every test; running while the object lives.
class PrivateSystemBus {
public:
    PrivateSystemBus();
    ~PrivateSystemBus();

    [[nodiscard]] static std::string socketPath();
    [[nodiscard]] static std::string address() { return "unix:path=" + socketPath(); }

    /// The bus can start colord and another service: programs that leave this file.
    [[nodiscard]] static std::filesystem::path activationMark(const std::string& service);
    static constexpr const char* otherService = "org.noctra.Other";

    /// A connection other than that of the code under test.
    [[nodiscard]] QDBusConnection& client() { return *client_; }

    /// Calls a method; an error fails the test.
    QDBusMessage call(const QString& service, const QString& path, const QString& interface,
                      const QString& method, const QVariantList& arguments);

    [[nodiscard]] bool hasOwner(const QString& service);

private:
    std::optional<ChildProcess> daemon_;
    std::optional<QDBusConnection> client_;
};

} // namespace noctra::test
