#include "platform/linux/calibration/ColordProfiles.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QVariantMap>

#include "platform/linux/calibration/ProfileFile.h"
#include "platform/linux/systembus/BoundedSystemBus.h"

namespace noctra {

namespace {

constexpr const char* service = "org.freedesktop.ColorManager";
constexpr const char* properties = "org.freedesktop.DBus.Properties";

/// The path of colord's object for the output; empty when it knows none.
QString devicePath(BoundedSystemBus& bus, std::string_view outputName) {
    const auto answer =
        bus.call({service, QStringLiteral("/org/freedesktop/ColorManager"), service,
                  "FindDeviceByProperty", "o"},
                 {QStringLiteral("XRANDR_name"),
                  QString::fromUtf8(outputName.data(), static_cast<qsizetype>(outputName.size()))});
    return answer ? answer->first().value<QDBusObjectPath>().path() : QString();
}

/// The path of the profile in use: the first of an enabled device's list.
QString profilePath(BoundedSystemBus& bus, const QString& device) {
    const auto answer = bus.call({service, device, properties, "GetAll", "a{sv}"},
                                 {QStringLiteral("org.freedesktop.ColorManager.Device")});
    if (!answer)
        return {};
    const auto values = qdbus_cast<QVariantMap>(answer->first());
    if (!values.value(QStringLiteral("Enabled"), true).toBool())
        return {};
    const QVariant profiles = values.value(QStringLiteral("Profiles"));
    if (!profiles.canConvert<QDBusArgument>() ||
        profiles.value<QDBusArgument>().currentSignature() != QLatin1String("ao"))
        return {};
    const auto paths = qdbus_cast<QList<QDBusObjectPath>>(profiles);
    return paths.isEmpty() ? QString() : paths.first().path();
}

QString fileName(BoundedSystemBus& bus, const QString& profile) {
    const auto answer = bus.call(
        {service, profile, properties, "Get", "v"},
        {QStringLiteral("org.freedesktop.ColorManager.Profile"), QStringLiteral("Filename")});
    if (!answer)
        return {};
    const QVariant value = answer->first().value<QDBusVariant>().variant();
    return value.typeId() == QMetaType::QString ? value.toString() : QString();
}

} // namespace

ColordProfiles::ColordProfiles() : bus_(std::make_unique<BoundedSystemBus>()) {}

ColordProfiles::~ColordProfiles() = default;

void ColordProfiles::beginPass(std::chrono::milliseconds budget) {
    running_.reset();
    bus_->beginPass(budget);
}

ColordProfiles::Found ColordProfiles::profileOf(const Output& output) {
    const std::string file = defaultProfileFile(output.name);
    return file.empty() ? Found() : Found{readProfileFile(file), "colord: " + file};
}

std::string ColordProfiles::defaultProfileFile(std::string_view outputName) {
    if (!isRunning())
        return {};
    const QString device = devicePath(*bus_, outputName);
    if (device.isEmpty())
        return {};
    const QString profile = profilePath(*bus_, device);
    if (profile.isEmpty())
        return {};
    const QString file = fileName(*bus_, profile);
    return file.startsWith(QLatin1Char('/')) ? file.toStdString() : std::string();
}

bool ColordProfiles::isRunning() {
    if (!running_) {
        const auto answer =
            bus_->call({"org.freedesktop.DBus", QStringLiteral("/org/freedesktop/DBus"),
                        "org.freedesktop.DBus", "NameHasOwner", "b"},
                       {QString::fromLatin1(service)});
        running_ = answer && answer->first().toBool();
    }
    return *running_;
}

} // namespace noctra
