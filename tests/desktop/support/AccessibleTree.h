#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/desktop/support/BusClient.h"
#include "tests/desktop/support/InputDevices.h"

namespace noctra::desktop {

/// Roles and states by their numbers in AT-SPI.
enum class AccessibleRole : unsigned {
    checkBox = 7,
    dialog = 16,
    frame = 23,
    label = 29,
    button = 43,
    slider = 51,
    application = 75,
};
enum class AccessibleState : unsigned {
    active = 1,
    checked = 4,
    focusable = 11,
    focused = 12,
    showing = 25
};

/// One thing of a program as assistive technology is told of it, asked anew each time. Throws
/// std::runtime_error where the program does not answer, or no longer has it.
class Accessible {
public:
    Accessible(std::shared_ptr<const BusClient> bus, QString service, QString path);

    [[nodiscard]] std::string name() const;
    [[nodiscard]] std::string description() const;
    [[nodiscard]] AccessibleRole role() const;
    [[nodiscard]] bool is(AccessibleState state) const;
    /// On the screen.
    [[nodiscard]] Box extents() const;
    [[nodiscard]] std::vector<Accessible> children() const;

    [[nodiscard]] double value() const { return number("CurrentValue"); }
    [[nodiscard]] double minimum() const { return number("MinimumValue"); }
    [[nodiscard]] double maximum() const { return number("MaximumValue"); }
    void setValue(double value) const;

    /// Does the action that is called `action`.
    void perform(const std::string& action) const;

private:
    [[nodiscard]] QVariantList call(const char* interface, const char* method,
                                    const QVariantList& arguments = {}) const;
    [[nodiscard]] QVariant property(const char* interface, const char* name) const;
    [[nodiscard]] double number(const char* name) const;

    std::shared_ptr<const BusClient> bus_;
    QString service_;
    QString path_;
};

/// All that programs tell assistive technology.
class AccessibleTree {
public:
    /// `address` is the accessibility bus's.
    explicit AccessibleTree(const std::string& address);

    /// What there is now, a parent before its children. Things that go meanwhile are left out.
    [[nodiscard]] std::vector<Accessible> all() const;
    /// The first of all for which `condition` holds.
    [[nodiscard]] std::optional<Accessible>
    find(const std::function<bool(const Accessible&)>& condition) const;

private:
    std::shared_ptr<const BusClient> bus_;
};

} // namespace noctra::desktop
