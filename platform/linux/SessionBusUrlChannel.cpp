#include "platform/linux/SessionBusUrlChannel.h"

#include <chrono>
#include <future>
#include <utility>

#include <QtCore/QFileInfo>
#include <QtCore/QStringList>
#include <QtCore/QVariantMap>
#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusError>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusReply>

#include "platform/linux/systembus/BusProbe.h"

namespace noctra {

namespace {

constexpr auto serviceName = "org.noctra.Noctra";
constexpr auto objectPath = "/org/noctra/Noctra";
constexpr auto interfaceName = "org.freedesktop.Application";
constexpr auto connectionName = "noctra-session";
constexpr int answerMilliseconds = 5000;

/// The session bus's address: the environment's, else the user bus's socket; never a bus that would
/// have to be started first.
QString sessionBusAddress() {
    QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (!address.isEmpty())
        return address;
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (runtime.isEmpty() || !QFileInfo::exists(runtime + "/bus"))
        return {};
    return "unix:path=" + runtime + "/bus";
}

/// The bus carries text only. What is not UTF-8 is no URL, and an empty text is none either.
QString asText(const std::string& url) {
    const QString text = QString::fromStdString(url);
    return text.toStdString() == url && !text.contains(QChar(0)) ? text : QString();
}

} // namespace

SessionBusUrlChannel::SessionBusUrlChannel(MainQueue& mainQueue)
    : mainQueue_(mainQueue), bus_(QString::fromLatin1(connectionName)) {}

SessionBusUrlChannel::~SessionBusUrlChannel() {
    QDBusConnection::disconnectFromBus(connectionName);
}

SessionBusUrlChannel::Claim SessionBusUrlChannel::claim() {
    const QString address = sessionBusAddress();
    if (address.isEmpty()) {
        problem_ = "no session bus (DBUS_SESSION_BUS_ADDRESS is not set)";
        return Claim::noBus;
    }
    if (const std::string silence =
            whyBusIsSilent(address.toStdString(), std::chrono::milliseconds(answerMilliseconds));
        !silence.empty()) {
        problem_ = "no session bus (" + silence + ")";
        return Claim::noBus;
    }
    // By its role, not by its address: Qt 6.4 stops the process where a bus at an address refuses
    // to let it in.
    qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
    // Connecting takes no time limit, so it gets a thread. One that is stuck is left to the end of
    // the process: nothing could make it stop.
    auto* connecting = new std::future<QDBusConnection>(std::async(std::launch::async, [] {
        return QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName);
    }));
    if (connecting->wait_for(std::chrono::milliseconds(answerMilliseconds)) !=
        std::future_status::ready) {
        problem_ = "no session bus (it does not answer)";
        return Claim::noBus;
    }
    bus_ = connecting->get();
    delete connecting;
    if (!bus_.isConnected()) {
        problem_ = "no session bus (" + bus_.lastError().message().toStdString() + ")";
        return Claim::noBus;
    }
    bus_.connect({}, QStringLiteral("/org/freedesktop/DBus/Local"),
                 QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                 SLOT(busWentAway()));
    // The object first: whoever sees the name can call it.
    bus_.registerVirtualObject(objectPath, this, QDBusConnection::SingleNode);
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        bus_.interface()->registerService(serviceName, QDBusConnectionInterface::DontQueueService,
                                          QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid()) {
        problem_ = "the session bus refuses the name " + std::string(serviceName) + " (" +
                   reply.error().message().toStdString() + ")";
        return Claim::noBus;
    }
    return reply.value() == QDBusConnectionInterface::ServiceRegistered ? Claim::ours
                                                                        : Claim::anothers;
}

std::string SessionBusUrlChannel::handOver(const std::vector<std::string>& urls) {
    QDBusMessage call = QDBusMessage::createMethodCall(serviceName, objectPath, interfaceName,
                                                       urls.empty() ? "Activate" : "Open");
    call.setAutoStartService(false);
    if (!urls.empty()) {
        QStringList texts;
        for (const std::string& url : urls)
            texts.append(asText(url));
        call << texts;
    }
    call << QVariantMap();
    const QDBusMessage answer = bus_.call(call, QDBus::Block, answerMilliseconds);
    if (answer.type() == QDBusMessage::ReplyMessage)
        return {};
    const std::string reason = answer.errorMessage().toStdString();
    return reason.empty() ? "no answer" : reason;
}

void SessionBusUrlChannel::deliver(const std::vector<std::string>& urls) {
    mainQueue_.async([this, urls] { receive(urls); });
}

std::string SessionBusUrlChannel::setHandlers(Handlers handlers) {
    handlers_ = std::move(handlers);
    hasHandlers_ = true;
    mainQueue_.async([this] { handOnWaiting(); });
    return problem_;
}

void SessionBusUrlChannel::removeHandlers() {
    hasHandlers_ = false;
    handlers_ = {};
}

void SessionBusUrlChannel::receive(const std::vector<std::string>& urls) {
    waiting_.insert(waiting_.end(), urls.begin(), urls.end());
    handOnWaiting();
}

void SessionBusUrlChannel::handOnWaiting() {
    if (!hasHandlers_)
        return;
    for (const std::string& url : std::exchange(waiting_, {}))
        if (handlers_.open)
            handlers_.open(url);
}

QString SessionBusUrlChannel::introspect(const QString&) const {
    return QStringLiteral(R"(  <interface name="org.freedesktop.Application">
    <method name="Activate">
      <arg type="a{sv}" name="platform_data" direction="in"/>
    </method>
    <method name="Open">
      <arg type="as" name="uris" direction="in"/>
      <arg type="a{sv}" name="platform_data" direction="in"/>
    </method>
    <method name="ActivateAction">
      <arg type="s" name="action_name" direction="in"/>
      <arg type="av" name="parameter" direction="in"/>
      <arg type="a{sv}" name="platform_data" direction="in"/>
    </method>
  </interface>
)");
}

bool SessionBusUrlChannel::handleMessage(const QDBusMessage& message,
                                         const QDBusConnection& connection) {
    if (message.type() != QDBusMessage::MethodCallMessage ||
        (!message.interface().isEmpty() && message.interface() != interfaceName))
        return false;
    const QString method = message.member();
    const QString signature = message.signature();
    if (method == "Open" && signature == "asa{sv}") {
        std::vector<std::string> urls;
        for (const QString& url : message.arguments().constFirst().toStringList())
            urls.push_back(url.toStdString());
        receive(urls);
    } else if (method == "Activate" && signature == "a{sv}") {
        if (hasHandlers_ && handlers_.activate)
            handlers_.activate();
    } else if (method == "ActivateAction" && signature == "sava{sv}") {
        connection.send(message.createErrorReply(QDBusError::InvalidArgs,
                                                 QStringLiteral("Noctra has no such action")));
        return true;
    } else {
        return false;
    }
    connection.send(message.createReply());
    return true;
}

void SessionBusUrlChannel::busWentAway() {
    problem_ = "the session bus went away";
    if (log_ != nullptr)
        log_->log("Automation commands from other programs unavailable: " + problem_);
}

} // namespace noctra
