#include "tests/platform/linux/calibration/FakeColord.h"

#include <utility>

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QVariantMap>
#include <gtest/gtest.h>

namespace noctra::test {

namespace {

const QString connectionName = QStringLiteral("fake colord");

} // namespace

FakeColord::FakeColord(Script script) : script_(std::move(script)) {
    auto bus = QDBusConnection::connectToBus(QDBusConnection::SystemBus, connectionName);
    EXPECT_TRUE(bus.registerVirtualObject(QStringLiteral("/"), this, QDBusConnection::SubPath));
    moveToThread(&thread_);
    thread_.start();
    EXPECT_TRUE(bus.registerService(QStringLiteral("org.freedesktop.ColorManager")));
}

FakeColord::~FakeColord() {
    QDBusConnection::disconnectFromBus(connectionName);
    thread_.quit();
    thread_.wait();
}

QVariantList FakeColord::rightAnswer(const QDBusMessage& call, const std::string& folder) {
    const QString name = call.path().section(QLatin1Char('/'), -1);
    if (call.member() == QLatin1String("FindDeviceByProperty"))
        return {QVariant::fromValue(
            QDBusObjectPath(QStringLiteral("/device/") + call.arguments().at(1).toString()))};
    if (call.member() == QLatin1String("GetAll"))
        return device(QVariant::fromValue(
            QList<QDBusObjectPath>{QDBusObjectPath(QStringLiteral("/profile/") + name),
                                   QDBusObjectPath(QStringLiteral("/profile/another"))}));
    return {QVariant::fromValue(QDBusVariant(QString::fromStdString(folder) + QLatin1Char('/') +
                                             name + QLatin1String(".icc")))};
}

QVariantList FakeColord::device(const QVariant& profiles, bool enabled) {
    return {
        QVariantMap{{QStringLiteral("Profiles"), profiles}, {QStringLiteral("Enabled"), enabled}}};
}

bool FakeColord::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    ++calls_;
    const std::optional<QVariantList> answer = script_(message);
    return answer ? connection.send(message.createReply(*answer)) : true;
}

} // namespace noctra::test
