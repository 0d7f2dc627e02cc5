#include "bench/support/CommandChannel.h"

#include <QtCore/QStringList>
#include <QtCore/QVariantMap>
#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusMessage>
#include <stdexcept>

namespace noctra::desktop {

namespace {

const QString service = QStringLiteral("org.noctra.Noctra");

QString newConnectionName() {
    static int count = 0;
    return QStringLiteral("test %1").arg(++count);
}

QDBusMessage message(const QString& method, const QVariantList& arguments) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, QStringLiteral("/org/noctra/Noctra"),
                                       QStringLiteral("org.freedesktop.Application"), method);
    call.setArguments(arguments);
    return call;
}

QVariantList openArguments(const std::vector<std::string>& urls) {
    QStringList texts;
    for (const std::string& url : urls)
        texts.append(QString::fromStdString(url));
    return {texts, QVariantMap()};
}

} // namespace

CommandChannel::CommandChannel(const std::string& busAddress)
    : name_(newConnectionName()), connection_(connect(busAddress, name_)) {}

CommandChannel::~CommandChannel() {
    QDBusConnection::disconnectFromBus(name_);
}

bool CommandChannel::isServed() const {
    return connection_.interface()->isServiceRegistered(service);
}

void CommandChannel::open(const std::vector<std::string>& urls) {
    call(QStringLiteral("Open"), openArguments(urls));
}

void CommandChannel::openWithoutWaiting(const std::vector<std::string>& urls) {
    if (!connection_.send(message(QStringLiteral("Open"), openArguments(urls))))
        throw std::runtime_error("the session bus takes no message");
}

void CommandChannel::activate() {
    call(QStringLiteral("Activate"), {QVariantMap()});
}

QDBusConnection CommandChannel::connect(const std::string& address, const QString& name) {
    QDBusConnection connection =
        QDBusConnection::connectToBus(QString::fromStdString(address), name);
    if (!connection.isConnected())
        throw std::runtime_error("no session bus answers at " + address);
    return connection;
}

void CommandChannel::call(const QString& method, const QVariantList& arguments) {
    const QDBusMessage reply = connection_.call(message(method, arguments), QDBus::Block,
                                                static_cast<int>(patience.count()));
    if (reply.type() != QDBusMessage::ReplyMessage)
        throw std::runtime_error(method.toStdString() + ": " + reply.errorMessage().toStdString());
}

} // namespace noctra::desktop
