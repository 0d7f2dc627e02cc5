#include "platform/linux/SessionBusUrlChannel.h"

#include <utility>

#include <QtCore/QStringList>
#include <QtCore/QVariantMap>
#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusError>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>
#include <QtDBus/QDBusReply>

namespace noctra {

namespace {

constexpr auto serviceName = "org.noctra.Noctra";
constexpr auto objectPath = "/org/noctra/Noctra";
constexpr auto interfaceName = "org.freedesktop.Application";
constexpr auto busService = "org.freedesktop.DBus";
constexpr auto busPath = "/org/freedesktop/DBus";
constexpr int answerMilliseconds = 5000;
constexpr uint inQueue = 2; ///< RequestName's answer where another has the name

/// The bus carries text only. What is not UTF-8 is no URL, and an empty text is none either.
QString asText(const std::string& url) {
    const QString text = QString::fromStdString(url);
    return text.toStdString() == url && !text.contains(QChar(0)) ? text : QString();
}

} // namespace

SessionBusUrlChannel::SessionBusUrlChannel(MainQueue& mainQueue, SessionBusLink& bus)
    : mainQueue_(mainQueue), bus_(bus) {}

SessionBusUrlChannel::Claim SessionBusUrlChannel::claim() {
    problem_ = bus_.open();
    if (!problem_.empty())
        return Claim::noBus;
    QDBusConnection bus = bus_.connection();
    // The object comes first: calls may come as soon as the name is there.
    bus.registerVirtualObject(objectPath, this, QDBusConnection::SingleNode);
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        bus.interface()->registerService(serviceName, QDBusConnectionInterface::DontQueueService,
                                         QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid()) {
        problem_ = "the session bus refuses the name " + std::string(serviceName) + " (" +
                   reply.error().message().toStdString() + ")";
        return Claim::noBus;
    }
    if (reply.value() != QDBusConnectionInterface::ServiceRegistered)
        return Claim::anothers;
    connect(&bus_, &SessionBusLink::lost, this, &SessionBusUrlChannel::busWentAway);
    connect(&bus_, &SessionBusLink::renewed, this, &SessionBusUrlChannel::askForName);
    return Claim::ours;
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
    const QDBusMessage answer = bus_.connection().call(call, QDBus::Block, answerMilliseconds);
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
    say("unavailable: " + problem_);
}

/// Without waiting. The bus queues the wish where another process has the name, so that one which
/// is only passing (a later start that could not find this one) leaves it to this one.
void SessionBusUrlChannel::askForName() {
    QDBusConnection bus = bus_.connection();
    bus.registerVirtualObject(objectPath, this, QDBusConnection::SingleNode);
    bus.connect(busService, busPath, busService, QStringLiteral("NameAcquired"), this,
                SLOT(nameAcquired(QString)));
    QDBusMessage request =
        QDBusMessage::createMethodCall(busService, busPath, busService, "RequestName");
    request << QString::fromLatin1(serviceName) << 0U;
    auto* const call =
        new QDBusPendingCallWatcher(bus.asyncCall(request, answerMilliseconds), this);
    connect(call, &QDBusPendingCallWatcher::finished, this,
            [this, name = bus.name()](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                const QDBusConnection& now = bus_.connection();
                if (now.name() != name || !now.isConnected())
                    return; // the bus is lost again, which has been reported
                const QDBusPendingReply<uint> reply = *finished;
                if (reply.isError())
                    nameNotHad(reply.error().message().toStdString());
                else if (reply.value() == inQueue)
                    nameNotHad("another program has the name " + std::string(serviceName));
            });
}

void SessionBusUrlChannel::nameNotHad(const std::string& reason) {
    problem_ = reason;
    say("still unavailable on the new session bus: " + problem_);
}

void SessionBusUrlChannel::nameAcquired(const QString& name) {
    if (name != serviceName)
        return;
    problem_.clear();
    say("available again");
}

void SessionBusUrlChannel::say(const std::string& message) {
    if (log_ != nullptr)
        log_->log("Automation commands from other programs " + message);
}

} // namespace noctra
