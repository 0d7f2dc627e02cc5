#pragma once

#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <xcb/randr.h>
#include <xcb/xcb.h>

namespace noctra::desktop {

/// A connection to an X server, of a test's own.
class XConnection {
public:
    /// `display` as in the DISPLAY variable. Throws std::runtime_error where nobody answers.
    explicit XConnection(const std::string& display)
        : connection_(xcb_connect(display.c_str(), nullptr)) {
        if (xcb_connection_has_error(connection_) != 0) {
            xcb_disconnect(connection_);
            throw std::runtime_error("no X server answers on " + display);
        }
    }
    ~XConnection() { xcb_disconnect(connection_); }
    XConnection(const XConnection&) = delete;
    XConnection& operator=(const XConnection&) = delete;

    [[nodiscard]] xcb_connection_t* get() const { return connection_; }
    [[nodiscard]] xcb_window_t root() const {
        return xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    }
    [[nodiscard]] bool isAlive() const {
        std::free(
            xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
        return xcb_connection_has_error(connection_) == 0;
    }

    /// Waits for a request without an answer. Throws std::runtime_error when the server refused it.
    void check(xcb_void_cookie_t cookie, const char* what) const {
        if (const XReply<xcb_generic_error_t> error{xcb_request_check(connection_, cookie)})
            throw std::runtime_error(std::string("the X server refused: ") + what);
    }

    template <typename Record>
    struct Free {
        void operator()(Record* record) const { std::free(record); }
    };
    template <typename Record>
    using XReply = std::unique_ptr<Record, Free<Record>>;

    /// Takes ownership of an answer. Throws std::runtime_error when there was none.
    template <typename Record>
    static XReply<Record> answered(Record* reply, const char* what) {
        if (reply == nullptr)
            throw std::runtime_error(std::string("the X server gave no answer: ") + what);
        return XReply<Record>(reply);
    }

    [[nodiscard]] xcb_atom_t atom(const std::string& name) const {
        const auto length = static_cast<std::uint16_t>(name.size());
        return answered(xcb_intern_atom_reply(connection_,
                                              xcb_intern_atom(connection_, 0, length, name.c_str()),
                                              nullptr),
                        "atom")
            ->atom;
    }

    using Resources = XReply<xcb_randr_get_screen_resources_current_reply_t>;
    [[nodiscard]] Resources resources() const {
        return answered(
            xcb_randr_get_screen_resources_current_reply(
                connection_, xcb_randr_get_screen_resources_current(connection_, root()), nullptr),
            "screen resources");
    }

private:
    xcb_connection_t* connection_;
};

} // namespace noctra::desktop
