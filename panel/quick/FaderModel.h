#pragma once

#include <functional>
#include <utility>

#include <QtQml/qqmlregistration.h>

#include "panel/PanelServices.h"
#include "panel/quick/FaderSource.h"

namespace noctra {

/// One of the panel's faders for its QML file.
class FaderModel : public FaderSource {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")

public:
    /// `fader` gives the fader as it is to be shown now. `services` outlives the model.
    FaderModel(const PanelServices& services, std::function<StudioFader()> fader)
        : services_(services), fader_(std::move(fader)) {}

    [[nodiscard]] StudioFader fader() const override { return fader_(); }
    [[nodiscard]] MainQueue& mainQueue() const override { return services_.mainQueue; }
    [[nodiscard]] const SteadyClock& clock() const override { return services_.steadyClock; }

private:
    const PanelServices& services_;
    const std::function<StudioFader()> fader_;
};

} // namespace noctra
