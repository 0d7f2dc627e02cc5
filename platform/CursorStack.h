#pragma once

namespace noctra {

/// The pointer's shape, as a stack that all of the program's windows share. Main thread.
class CursorStack {
public:
    virtual ~CursorStack() = default;

    /// Shows the pointing hand until the matching `pop`.
    virtual void pushPointingHand() = 0;

    /// Goes back to the shape from before the last push; without one, does nothing.
    virtual void pop() = 0;
};

} // namespace noctra
