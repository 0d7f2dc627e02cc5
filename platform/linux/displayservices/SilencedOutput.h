#pragma once

namespace noctra::display_services {

/// While it lives, what the process writes to its standard output goes nowhere; nothing else is
/// redirected. For the few milliseconds in which a library is loaded that prints.
class SilencedOutput {
public:
    SilencedOutput();
    SilencedOutput(const SilencedOutput&) = delete;
    SilencedOutput& operator=(const SilencedOutput&) = delete;
    ~SilencedOutput();

private:
    int kept_ = -1; // the standard output, under another number; -1: there was none
};

} // namespace noctra::display_services
