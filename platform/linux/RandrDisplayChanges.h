#pragma once

#include <utility>

#include "platform/DisplayChanges.h"

namespace noctra {

/// Tells the program that the X server's configuration has changed. Main thread.
///
/// So far only as a change of the screen parameters: neither what happened to which display nor a
/// wake from sleep is reported.
class RandrDisplayChanges : public DisplayChanges {
public:
    void setHandlers(Handlers handlers) override { handlers_ = std::move(handlers); }

    /// To be called after each change.
    void configurationChanged() const {
        if (handlers_.screenParametersChanged)
            handlers_.screenParametersChanged();
    }

private:
    Handlers handlers_;
};

} // namespace noctra
