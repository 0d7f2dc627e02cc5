#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <string>

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QThread>

namespace noctra::test {

/// Owns colord's name on the private bus and answers, on a thread of its own, as a script says.
class FakeColord : private QDBusVirtualObject {
public:
    /// The values to answer a call with, or nothing to leave it without an answer for ever.
    using Script = std::function<std::optional<QVariantList>(const QDBusMessage&)>;

    explicit FakeColord(Script script);
    ~FakeColord() override;

    /// The calls that have come so far.
    [[nodiscard]] int callCount() const { return calls_; }

    /// What a colord answers in which each output named X has a device /device/X, which has a
    /// profile /profile/X, which is in the file `folder`/X.icc.
    [[nodiscard]] static QVariantList rightAnswer(const QDBusMessage& call,
                                                  const std::string& folder);
    /// The answer to a property query for a device with these profiles.
    [[nodiscard]] static QVariantList device(const QVariant& profiles, bool enabled = true);

private:
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
    QString introspect(const QString&) const override { return {}; }

    const Script script_;
    std::atomic<int> calls_ = 0;
    QThread thread_;
};

} // namespace noctra::test
