#pragma once

#include <optional>

#include <QtCore/QAbstractAnimation>

#include "foundation/Clock.h"
#include "panel/AnimationTransaction.h"
#include "panel/Spring.h"

namespace noctra {

/// A number that follows its target as if a spring pulled it there. It goes on from where it is,
/// and as fast as it is moving, when the target changes on the way. Main thread.
class SpringFollower : public QAbstractAnimation {
    Q_OBJECT
public:
    explicit SpringFollower(const SteadyClock& clock, double value, QObject* parent = nullptr);

    [[nodiscard]] double value() const { return value_; }

    /// Without a spring it is there at once.
    void moveTo(double target, const std::optional<SpringSpec>& spring);

    [[nodiscard]] int duration() const override { return -1; }

signals:
    void valueChanged();
    /// It has come to rest on its target.
    void settled();

protected:
    void updateCurrentTime(int milliseconds) override;

private:
    void setValue(double value);
    [[nodiscard]] Seconds elapsed() const { return clock_.now() - start_; }

    const SteadyClock& clock_;
    double value_;
    double target_;
    std::optional<Spring> spring_;
    SteadyClock::TimePoint start_{};
};

} // namespace noctra
