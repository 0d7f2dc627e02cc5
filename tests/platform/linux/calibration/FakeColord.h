#pragma once

#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QThread>
#include <gtest/gtest.h>

#include "tests/desktop/support/SystemBus.h"

namespace noctra::test {

constexpr const char* colordName = "org.freedesktop.ColorManager";

/// Tests with a system bus of their own. It does not run before it is started.
class ColordTest : public testing::Test {
protected:
    /// The bus library reads the address once in a process, so all tests have the same.
    static void SetUpTestSuite() {
        if (bus_)
            return;
        bus_ = std::make_unique<desktop::SystemBus>();
        ::setenv("DBUS_SYSTEM_BUS_ADDRESS", bus_->address().c_str(), 1);
    }
    void TearDown() override { bus_->kill(); }

    static inline std::unique_ptr<desktop::SystemBus> bus_;
};

/// Plays colord on a bus, on a thread of its own: each output named X has a device /device/X, which
/// has a profile /profile/X, which is in the file `folder`/X.icc.
class FakeColord : private QDBusVirtualObject {
public:
    /// The values to answer a call with instead of the right ones, or nothing to leave it without
    /// an answer for ever.
    using Script =
        std::function<std::optional<QVariantList>(const QDBusMessage&, const QVariantList& right)>;

    FakeColord(const desktop::SystemBus& bus, const std::string& folder, Script script = {})
        : folder_(QString::fromStdString(folder)), script_(std::move(script)) {
        auto connection =
            QDBusConnection::connectToBus(QString::fromStdString(bus.address()), name);
        EXPECT_TRUE(connection.registerVirtualObject("/", this, QDBusConnection::SubPath));
        moveToThread(&thread_);
        thread_.start();
        EXPECT_TRUE(connection.registerService(colordName));
    }
    ~FakeColord() override {
        QDBusConnection::disconnectFromBus(name);
        thread_.quit();
        thread_.wait();
    }

    /// The answer to a property query for a device with these profiles.
    [[nodiscard]] static QVariantList device(const QVariant& profiles, bool enabled = true) {
        return {QVariantMap{{"Profiles", profiles}, {"Enabled", enabled}}};
    }

private:
    [[nodiscard]] QVariantList rightAnswer(const QDBusMessage& call) const {
        const QString object = call.path().section('/', -1);
        const QDBusObjectPath itsProfile("/profile/" + object), another("/profile/another");
        if (call.member() == "FindDeviceByProperty")
            return {QVariant::fromValue(
                QDBusObjectPath("/device/" + call.arguments().value(1).toString()))};
        if (call.member() == "GetAll")
            return device(QVariant::fromValue(QList{itsProfile, another}));
        return {QVariant::fromValue(QDBusVariant(folder_ + '/' + object + ".icc"))};
    }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& connection) override {
        const QVariantList right = rightAnswer(call);
        const auto answer = script_ ? script_(call, right) : right;
        return !answer || connection.send(call.createReply(*answer));
    }
    QString introspect(const QString&) const override { return {}; }

    static inline const QString name = QStringLiteral("fake colord");
    const QString folder_;
    const Script script_;
    QThread thread_;
};

} // namespace noctra::test
