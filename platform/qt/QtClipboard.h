#pragma once

#include "platform/Clipboard.h"

namespace noctra {

/// The clipboard of the desktop that the QGuiApplication is connected to. What is put there lasts
/// as long as the program, unless a clipboard manager of the desktop takes it over.
class QtClipboard : public Clipboard {
public:
    void clearContents() override;
    void setString(const std::string& text) override;
};

} // namespace noctra
