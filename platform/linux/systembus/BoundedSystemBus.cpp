#include "platform/linux/systembus/BoundedSystemBus.h"

#include <atomic>
#include <system_error>

#include <QDBusError>
#include <QDBusMessage>

#include "platform/linux/systembus/BusProbe.h"

namespace noctra {

namespace {

/// Qt keeps connections by name, for all of a process. A shared library that has this code too has
/// another counter, at another place.
QString unusedName() {
    static std::atomic<int> count = 0;
    return QStringLiteral("noctra-system-bus-%1-%2")
        .arg(reinterpret_cast<quintptr>(&count), 0, 16)
        .arg(++count);
}

/// Whether the bus or the service has stopped answering, as opposed to an answer that says no.
bool endsPass(const QDBusMessage& error) {
    switch (QDBusError(error).type()) {
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
    case QDBusError::Disconnected:
    case QDBusError::NoServer:
        return true;
    default:
        return false;
    }
}

} // namespace

BoundedSystemBus::BoundedSystemBus() : name_(unusedName()) {}

BoundedSystemBus::~BoundedSystemBus() {
    disconnect();
}

void BoundedSystemBus::beginPass(std::chrono::milliseconds budget) {
    deadline_ = Clock::now() + budget;
    if (connection_ && !connection_->isConnected())
        disconnect();
}

std::optional<QVariantList> BoundedSystemBus::call(const Method& method,
                                                   const QVariantList& arguments) {
    if (!deadline_ || !isConnected())
        return std::nullopt;
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(*deadline_ - Clock::now()).count();
    if (left <= 0) {
        deadline_.reset();
        return std::nullopt;
    }

    QDBusMessage request = QDBusMessage::createMethodCall(
        QString::fromLatin1(method.service), method.path, QString::fromLatin1(method.interface),
        QString::fromLatin1(method.name));
    request.setAutoStartService(false);
    request.setArguments(arguments);
    const QDBusMessage answer = connection_->call(request, QDBus::Block, static_cast<int>(left));
    if (answer.type() != QDBusMessage::ReplyMessage) {
        if (endsPass(answer))
            deadline_.reset();
        return std::nullopt;
    }
    if (answer.signature() != QLatin1String(method.answers))
        return std::nullopt;
    return answer.arguments();
}

bool BoundedSystemBus::isConnected() {
    if (!connection_) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(*deadline_ - Clock::now());
        if (!connecting_.valid() && !whyBusIsSilent(systemBusAddress(), left).empty()) {
            deadline_.reset();
            return false;
        }
        // Connecting cannot be given a time, so it gets a thread.
        try {
            if (!connecting_.valid())
                connecting_ = std::async(std::launch::async, [name = name_] {
                    return QDBusConnection::connectToBus(QDBusConnection::SystemBus, name);
                });
        } catch (const std::system_error&) { // no thread to be had
            deadline_.reset();
            return false;
        }
        if (connecting_.wait_until(*deadline_) != std::future_status::ready) {
            deadline_.reset();
            return false;
        }
        connection_ = connecting_.get();
    }
    if (connection_->isConnected())
        return true;
    deadline_.reset();
    return false;
}

void BoundedSystemBus::disconnect() {
    if (!connection_)
        return;
    connection_.reset();
    QDBusConnection::disconnectFromBus(name_);
}

} // namespace noctra
