#pragma once

#include "platform/CursorStack.h"

namespace noctra {

/// The override cursors of the QGuiApplication.
class QtCursorStack : public CursorStack {
public:
    void pushPointingHand() override;
    void pop() override;
};

} // namespace noctra
