#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include <QtCore/QCoreApplication>
#include <QtGui/QMouseEvent>

namespace noctra {

/// Remembers the presses of mouse buttons that Qt's windows have been told of. Main thread; needs a
/// QCoreApplication that outlives it.
class QtPresses : public QObject {
public:
    QtPresses() { QCoreApplication::instance()->installEventFilter(this); }

    /// Whether one of the last presses is the raw press of `time`, in ms by the X server's clock,
    /// which begins anew after 49 days. The server dates the event for a window a little later than
    /// the raw one; two presses are further apart than that.
    [[nodiscard]] bool include(std::uint32_t time) const {
        constexpr std::uint32_t later = 50;
        return std::any_of(times_.begin(), times_.end(),
                           [&](std::uint32_t own) { return own != 0 && own - time <= later; });
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::MouseButtonPress ||
            event->type() == QEvent::MouseButtonDblClick) {
            times_[next_] =
                static_cast<std::uint32_t>(static_cast<QMouseEvent*>(event)->timestamp());
            next_ = (next_ + 1) % times_.size();
        }
        return false;
    }

private:
    // Each press comes by several times, on its way to the item that takes it.
    std::array<std::uint32_t, 128> times_{};
    std::size_t next_ = 0;
};

} // namespace noctra
