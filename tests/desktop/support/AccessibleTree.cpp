#include "tests/desktop/support/AccessibleTree.h"

#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusVariant>
#include <stdexcept>

namespace noctra::desktop {

namespace {

constexpr const char* accessibleInterface = "org.a11y.atspi.Accessible";
constexpr const char* componentInterface = "org.a11y.atspi.Component";
constexpr const char* valueInterface = "org.a11y.atspi.Value";
constexpr const char* actionInterface = "org.a11y.atspi.Action";
constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr unsigned onTheScreen = 0;

/// Whether `use` found what it asked about still there.
bool whileThere(const std::function<void()>& use) {
    try {
        use();
        return true;
    } catch (const std::runtime_error&) {
        return false;
    }
}

/// `visit` says whether to go on. The child of a thing that has gone is not visited.
bool visitFrom(const Accessible& accessible, const std::function<bool(const Accessible&)>& visit) {
    std::vector<Accessible> children;
    bool goesOn = true;
    whileThere([&] {
        goesOn = visit(accessible);
        children = accessible.children();
    });
    for (const Accessible& child : children)
        goesOn = goesOn && visitFrom(child, visit);
    return goesOn;
}

} // namespace

Accessible::Accessible(std::shared_ptr<const BusClient> bus, QString service, QString path)
    : bus_(std::move(bus)), service_(std::move(service)), path_(std::move(path)) {}

std::string Accessible::name() const {
    return property(accessibleInterface, "Name").toString().toStdString();
}

std::string Accessible::description() const {
    return property(accessibleInterface, "Description").toString().toStdString();
}

AccessibleRole Accessible::role() const {
    return static_cast<AccessibleRole>(call(accessibleInterface, "GetRole").value(0).toUInt());
}

bool Accessible::is(AccessibleState state) const {
    QList<uint> words;
    call(accessibleInterface, "GetState").value(0).value<QDBusArgument>() >> words;
    const auto bit = static_cast<unsigned>(state);
    return (words.value(static_cast<int>(bit / 32)) >> (bit % 32) & 1U) != 0;
}

Box Accessible::extents() const {
    Box box;
    const auto answer =
        call(componentInterface, "GetExtents", {onTheScreen}).value(0).value<QDBusArgument>();
    answer.beginStructure();
    answer >> box.x >> box.y >> box.width >> box.height;
    answer.endStructure();
    return box;
}

std::vector<Accessible> Accessible::children() const {
    std::vector<Accessible> children;
    const auto answer = call(accessibleInterface, "GetChildren").value(0).value<QDBusArgument>();
    answer.beginArray();
    while (!answer.atEnd()) {
        QString service;
        QDBusObjectPath path;
        answer.beginStructure();
        answer >> service >> path;
        answer.endStructure();
        children.emplace_back(bus_, service, path.path());
    }
    answer.endArray();
    return children;
}

void Accessible::setValue(double value) const {
    static_cast<void>(
        call(propertiesInterface, "Set",
             {valueInterface, "CurrentValue", QVariant::fromValue(QDBusVariant(value))}));
}

void Accessible::perform(const std::string& action) const {
    const auto answer = call(actionInterface, "GetActions").value(0).value<QDBusArgument>();
    int found = -1;
    answer.beginArray();
    for (int index = 0; !answer.atEnd(); ++index) {
        QString name;
        QString description;
        QString keys;
        answer.beginStructure();
        answer >> name >> description >> keys;
        answer.endStructure();
        if (name.toStdString() == action)
            found = index;
    }
    answer.endArray(); // else Qt loses some memory
    if (found < 0)
        throw std::runtime_error("there is no action " + action);
    static_cast<void>(call(actionInterface, "DoAction", {found}));
}

QVariantList Accessible::call(const char* interface, const char* method,
                              const QVariantList& arguments) const {
    return bus_->call(service_.toUtf8(), path_.toUtf8(), interface, method, arguments);
}

QVariant Accessible::property(const char* interface, const char* name) const {
    return call(propertiesInterface, "Get", {interface, name})
        .value(0)
        .value<QDBusVariant>()
        .variant();
}

double Accessible::number(const char* name) const {
    return property(valueInterface, name).toDouble();
}

AccessibleTree::AccessibleTree(const std::string& address)
    : bus_(std::make_shared<const BusClient>(address)) {}

std::vector<Accessible> AccessibleTree::all() const {
    std::vector<Accessible> found;
    static_cast<void>(find([&](const Accessible& accessible) {
        found.push_back(accessible);
        return false;
    }));
    return found;
}

std::optional<Accessible>
AccessibleTree::find(const std::function<bool(const Accessible&)>& condition) const {
    std::optional<Accessible> found;
    const Accessible desktop(bus_, QStringLiteral("org.a11y.atspi.Registry"),
                             QStringLiteral("/org/a11y/atspi/accessible/root"));
    visitFrom(desktop, [&](const Accessible& accessible) {
        if (!condition(accessible))
            return true;
        found = accessible;
        return false;
    });
    return found;
}

} // namespace noctra::desktop
