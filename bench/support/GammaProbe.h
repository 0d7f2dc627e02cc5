#pragma once

#include <memory>
#include <string>
#include <vector>

#include "bench/support/Tables.h"
#include "bench/support/XConnection.h"

namespace noctra::desktop {

/// What a person with a colorimeter would see: the tables that an X server's CRTCs carry, read over
/// a connection that the program under test knows nothing of. Throws std::runtime_error when the
/// server gives no answer.
class GammaProbe {
public:
    explicit GammaProbe(const std::string& display);

    /// Every CRTC's tables, also those of CRTCs that show nothing.
    [[nodiscard]] TablesByCrtc readAll() const;
    /// The tables of the CRTCs that show something.
    [[nodiscard]] TablesByCrtc readLit() const;
    void write(int crtc, const Tables& tables) const;
    void write(const TablesByCrtc& tables) const;

    [[nodiscard]] bool isAlive() const { return connection_->isAlive(); }

private:
    [[nodiscard]] Tables read(xcb_randr_crtc_t crtc) const;
    [[nodiscard]] bool isLit(xcb_randr_crtc_t crtc) const;

    std::shared_ptr<XConnection> connection_;
    std::vector<xcb_randr_crtc_t> crtcs_;
};

} // namespace noctra::desktop
