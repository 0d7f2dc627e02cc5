#pragma once

#include <QtCore/QString>
#include <QtCore/QVariantList>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <string>

#include "tests/desktop/support/Waiting.h"

namespace noctra::desktop {

/// A test's own connection to a message bus.
class BusClient {
public:
    /// The bus must let everybody in. Throws std::runtime_error where there is none.
    explicit BusClient(const std::string& address);
    ~BusClient();
    BusClient(const BusClient&) = delete;
    BusClient& operator=(const BusClient&) = delete;

    /// Gives the answer's values. Throws std::runtime_error when it is an error.
    QVariantList call(const char* service, const char* path, const char* interface,
                      const char* method, const QVariantList& arguments = {}) const;
    [[nodiscard]] bool hasService(const char* service) const;
    void send(const QDBusMessage& message) const;
    /// The connection's unique names on the bus, its own left out.
    [[nodiscard]] QStringList others() const;

private:
    QString name_;
    QDBusConnection connection_;
};

} // namespace noctra::desktop
