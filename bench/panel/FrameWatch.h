#pragma once

#include <chrono>
#include <map>
#include <string>
#include <vector>

#include <QtCore/QObject>
#include <QtGui/QWindow>

namespace noctra::bench {

/// Notes when the panel's window shows a frame, and what was painted for it. Main thread.
class FrameWatch : public QObject {
    Q_OBJECT
public:
    using Clock = std::chrono::steady_clock;

    /// The panel's window; null while there is none.
    [[nodiscard]] static QWindow* panel();
    /// The panel's items of this class ("noctra::FaderItem"), in the order of their making.
    [[nodiscard]] static std::vector<QObject*> items(const char* className);

    /// Starts over with the window that is there now.
    void begin();
    [[nodiscard]] const std::vector<Clock::time_point>& frames() const { return frames_; }
    /// How many pictures were painted anew since `begin`, by the class of the item.
    [[nodiscard]] std::map<std::string, int> painted() const;
    /// Runs the main loop until another frame has been shown, or a second has passed.
    bool awaitFrame();

private slots:
    void frameShown() { frames_.push_back(Clock::now()); }

private:
    [[nodiscard]] static std::map<std::string, int> paintCounts();

    std::vector<Clock::time_point> frames_;
    std::map<std::string, int> before_;
};

} // namespace noctra::bench
