#include "bench/panel/FrameWatch.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QGuiApplication>

#include "panel/quick/DevicePicture.h"

namespace noctra::bench {

QWindow* FrameWatch::panel() {
    for (QWindow* window : QGuiApplication::topLevelWindows())
        if (window->inherits("QQuickView"))
            return window;
    return nullptr;
}

std::vector<QObject*> FrameWatch::items(const char* className) {
    std::vector<QObject*> found;
    if (QWindow* window = panel())
        for (QObject* object : window->findChildren<QObject*>())
            if (object->inherits(className))
                found.push_back(object);
    return found;
}

void FrameWatch::begin() {
    frames_.clear();
    frames_.reserve(4096);
    before_ = paintCounts();
    // By name: this program has no Qt Quick until the panel's library brings it.
    QObject::connect(panel(), SIGNAL(frameSwapped()), this, SLOT(frameShown()),
                     Qt::UniqueConnection);
}

std::map<std::string, int> FrameWatch::painted() const {
    std::map<std::string, int> counts = paintCounts();
    for (const auto& [name, count] : before_)
        counts[name] -= count;
    return counts;
}

std::map<std::string, int> FrameWatch::paintCounts() {
    std::map<std::string, int> counts;
    for (const QObject* item : items("noctra::DevicePicture"))
        counts[item->metaObject()->className()] +=
            static_cast<const DevicePicture*>(item)->paintCount();
    return counts;
}

bool FrameWatch::awaitFrame() {
    const std::size_t before = frames_.size();
    const auto end = Clock::now() + std::chrono::seconds(1);
    while (frames_.size() == before && Clock::now() < end)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    return frames_.size() > before;
}

} // namespace noctra::bench
