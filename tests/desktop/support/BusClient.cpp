#include "tests/desktop/support/BusClient.h"

#include <QtDBus/QDBusConnectionInterface>
#include <stdexcept>

namespace noctra::desktop {

namespace {

QString newConnectionName() {
    static int count = 0;
    return QStringLiteral("test client %1").arg(++count);
}

} // namespace

BusClient::BusClient(const std::string& address)
    : name_(newConnectionName()),
      connection_(QDBusConnection::connectToBus(QString::fromStdString(address), name_)) {
    if (connection_.isConnected())
        return;
    QDBusConnection::disconnectFromBus(name_);
    throw std::runtime_error("no message bus at " + address);
}

BusClient::~BusClient() {
    QDBusConnection::disconnectFromBus(name_);
}

QVariantList BusClient::call(const char* service, const char* path, const char* interface,
                             const char* method, const QVariantList& arguments) const {
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, method);
    call.setArguments(arguments);
    const QDBusMessage answer =
        connection_.call(call, QDBus::Block, static_cast<int>(patience.count()));
    if (answer.type() != QDBusMessage::ReplyMessage)
        throw std::runtime_error(std::string(method) + ": " + answer.errorMessage().toStdString());
    return answer.arguments();
}

bool BusClient::hasService(const char* service) const {
    return connection_.interface()->isServiceRegistered(service);
}

void BusClient::send(const QDBusMessage& message) const {
    if (!connection_.send(message))
        throw std::runtime_error("the message bus takes no message");
}

QStringList BusClient::others() const {
    QStringList names =
        connection_.interface()->registeredServiceNames().value().filter(QStringLiteral(":"));
    names.removeAll(connection_.baseService());
    return names;
}

} // namespace noctra::desktop
