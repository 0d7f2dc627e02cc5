#pragma once

#include <chrono>

#include <QtCore/QAbstractAnimation>
#include <QtCore/QAnimationDriver>
#include <QtCore/QCoreApplication>

#include "foundation/Clock.h"

namespace noctra {

/// Shows animations a frame when the test says so, at the time of `clock`. Qt keeps it running for
/// as long as it lives: if it stopped between two animations, the wall clock would show in the
/// next one's start.
class StepDriver : public QAnimationDriver {
public:
    explicit StepDriver(const SteadyClock& clock) : clock_(clock), start_(clock.now()) {
        install();
        connect(this, &QAnimationDriver::started, this, [this] { start_ = clock_.now(); });
        endless_.start();
        QCoreApplication::processEvents(); // it starts on a later turn
        advance();                         // what the wall clock has added until now
    }
    ~StepDriver() override {
        endless_.stop();
        uninstall();
    }

    [[nodiscard]] qint64 elapsed() const override {
        return std::chrono::round<std::chrono::milliseconds>(clock_.now() - start_).count();
    }
    void advance() override { advanceAnimation(); }

private:
    struct Endless : QAbstractAnimation {
        [[nodiscard]] int duration() const override { return -1; }
        void updateCurrentTime(int) override {}
    };

    const SteadyClock& clock_;
    SteadyClock::TimePoint start_;
    Endless endless_;
};

} // namespace noctra
