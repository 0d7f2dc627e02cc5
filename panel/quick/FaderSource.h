#pragma once

#include <QtCore/QObject>
#include <QtQml/qqmlregistration.h>

#include "foundation/Clock.h"
#include "foundation/MainQueue.h"
#include "panel/StudioFader.h"

namespace noctra {

/// Where a FaderItem gets its fader from. Main thread.
class FaderSource : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")

public:
    using QObject::QObject;

    /// The fader as it is to be shown now.
    [[nodiscard]] virtual StudioFader fader() const = 0;
    /// Both outlive the items that show the fader.
    [[nodiscard]] virtual MainQueue& mainQueue() const = 0;
    [[nodiscard]] virtual const SteadyClock& clock() const = 0;

signals:
    /// The panel has been rendered again: `fader` may be another one.
    void rendered();
};

} // namespace noctra
