#pragma once

#include <functional>
#include <utility>

#include <QtCore/QAbstractAnimation>

namespace noctra {

/// Calls back on each frame while it runs. Main thread.
class FrameTicker : public QAbstractAnimation {
    Q_OBJECT

public:
    explicit FrameTicker(std::function<void()> tick, QObject* parent = nullptr)
        : QAbstractAnimation(parent), tick_(std::move(tick)) {}

    [[nodiscard]] int duration() const override { return -1; } // until it is stopped

    /// Starts it or stops it, as far as it has to be.
    void setRunning(bool running) {
        if (running && state() != Running)
            start();
        else if (!running && state() == Running)
            stop();
    }

protected:
    void updateCurrentTime(int) override { tick_(); }

private:
    const std::function<void()> tick_;
};

} // namespace noctra
