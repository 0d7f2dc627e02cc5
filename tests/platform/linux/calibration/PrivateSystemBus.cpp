#include "tests/platform/linux/calibration/PrivateSystemBus.h"

#include <fstream>

#include <gtest/gtest.h>

#include "tests/platform/linux/calibration/ScratchFolder.h"

namespace noctra::test {

namespace {

const QString clientName = QStringLiteral("test client");
constexpr const char* colord = "org.freedesktop.ColorManager";

std::string writeConfiguration() {
    const std::string path = scratchFolder() / "bus.conf";
    std::ofstream(path) << R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <listen>)" << PrivateSystemBus::address()
                        << R"(</listen>
  <auth>EXTERNAL</auth>
  <servicedir>)" << scratchFolder().string()
                        << R"(</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";
    for (const std::string service : {colord, PrivateSystemBus::otherService}) {
        std::ofstream(scratchFolder() / (service + ".service"))
            << "[D-BUS Service]\nName=" << service << "\nExec=/bin/touch "
            << PrivateSystemBus::activationMark(service).string() << '\n';
        std::filesystem::remove(PrivateSystemBus::activationMark(service));
    }
    return path;
}

} // namespace

std::string PrivateSystemBus::socketPath() {
    return scratchFolder() / "bus";
}

std::filesystem::path PrivateSystemBus::activationMark(const std::string& service) {
    return scratchFolder() / (service + ".started");
}

PrivateSystemBus::PrivateSystemBus() {
    daemon_.emplace(std::vector<std::string>{"dbus-daemon", "--nofork", "--nopidfile",
                                             "--config-file=" + writeConfiguration()});
    EXPECT_TRUE(waitUntil([this] {
        QDBusConnection::disconnectFromBus(clientName);
        client_ = QDBusConnection::connectToBus(QDBusConnection::SystemBus, clientName);
        return client_->isConnected();
    })) << "the bus does not come up";
}

PrivateSystemBus::~PrivateSystemBus() {
    client_.reset();
    QDBusConnection::disconnectFromBus(clientName);
}

QDBusMessage PrivateSystemBus::call(const QString& service, const QString& path,
                                    const QString& interface, const QString& method,
                                    const QVariantList& arguments) {
    auto message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    QDBusMessage answer = client_->call(message);
    EXPECT_EQ(answer.type(), QDBusMessage::ReplyMessage)
        << method.toStdString() << ": " << answer.errorMessage().toStdString();
    return answer;
}

bool PrivateSystemBus::hasOwner(const QString& service) {
    const QString bus = QStringLiteral("org.freedesktop.DBus");
    return call(bus, QStringLiteral("/org/freedesktop/DBus"), bus, QStringLiteral("NameHasOwner"),
                {service})
        .arguments()
        .value(0)
        .toBool();
}

} // namespace noctra::test
