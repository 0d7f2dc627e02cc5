// Prints what each lit output's gamma tables begin and end with, as the X server holds them.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <xcb/randr.h>
#include <xcb/xcb.h>

namespace {

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};
template <typename Record>
using Reply = std::unique_ptr<Record, Free>;

void printChannel(const char* name, const std::uint16_t* levels, int count) {
    std::printf("   %-5s %5d %5d ... %5d %5d\n", name, levels[0], levels[count > 1 ? 1 : 0],
                levels[count > 1 ? count - 2 : 0], levels[count - 1]);
}

bool printOutput(xcb_connection_t* connection, xcb_randr_output_t output) {
    const Reply<xcb_randr_get_output_info_reply_t> info(xcb_randr_get_output_info_reply(
        connection, xcb_randr_get_output_info(connection, output, XCB_CURRENT_TIME), nullptr));
    if (!info)
        return false;
    if (info->crtc == XCB_NONE)
        return true;
    const Reply<xcb_randr_get_crtc_gamma_reply_t> gamma(xcb_randr_get_crtc_gamma_reply(
        connection, xcb_randr_get_crtc_gamma(connection, info->crtc), nullptr));
    if (!gamma || gamma->size == 0)
        return false;
    std::printf("%.*s (%d entries)\n", info->name_len,
                reinterpret_cast<const char*>(xcb_randr_get_output_info_name(info.get())),
                gamma->size);
    printChannel("red", xcb_randr_get_crtc_gamma_red(gamma.get()), gamma->size);
    printChannel("green", xcb_randr_get_crtc_gamma_green(gamma.get()), gamma->size);
    printChannel("blue", xcb_randr_get_crtc_gamma_blue(gamma.get()), gamma->size);
    return true;
}

bool printAll(xcb_connection_t* connection) {
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const Reply<xcb_randr_get_screen_resources_current_reply_t> resources(
        xcb_randr_get_screen_resources_current_reply(
            connection, xcb_randr_get_screen_resources_current(connection, root), nullptr));
    if (!resources)
        return false;
    const xcb_randr_output_t* outputs =
        xcb_randr_get_screen_resources_current_outputs(resources.get());
    bool complete = true;
    for (int index = 0; index < resources->num_outputs; ++index)
        complete = printOutput(connection, outputs[index]) && complete;
    return complete;
}

} // namespace

int main() {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const bool printed = xcb_connection_has_error(connection) == 0 && printAll(connection);
    xcb_disconnect(connection);
    if (!printed)
        std::fprintf(stderr, "noctra-print-tables: the X server's tables cannot be read\n");
    return printed ? EXIT_SUCCESS : EXIT_FAILURE;
}
