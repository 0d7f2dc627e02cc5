#include "tests/platform/linux/calibration/DummyXServer.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include "tests/platform/linux/calibration/ScratchFolder.h"

namespace noctra::test {

namespace {

constexpr const char* program = "/usr/bin/Xorg";

constexpr const char* configuration = R"(
Section "Device"
    Identifier "card"
    Driver "dummy"
    VideoRam 256000
EndSection
Section "Screen"
    Identifier "screen"
    Device "card"
    SubSection "Display"
        Virtual 1920 1080
    EndSubSection
EndSection
)";

template <typename Type>
auto owned(Type* reply) {
    return std::unique_ptr<Type, decltype(&std::free)>(reply, &std::free);
}

} // namespace

bool DummyXServer::isInstalled() {
    return std::filesystem::exists(program);
}

DummyXServer::DummyXServer() {
    const std::string config = scratchFolder() / "xorg.conf";
    std::ofstream(config) << configuration;
    int ends[2]{};
    EXPECT_EQ(::pipe2(ends, 0), 0);
    server_.emplace(std::vector<std::string>{
        program, "-displayfd", std::to_string(ends[1]), "-config", config, "-logfile",
        scratchFolder() / "xorg.log", "-noreset", "-novtswitch", "-sharevts", "-nolisten", "tcp"});
    ::close(ends[1]);

    std::string display = ":";
    pollfd readable{ends[0], POLLIN, 0};
    for (char letter = 0;
         ::poll(&readable, 1, 20'000) > 0 && ::read(ends[0], &letter, 1) == 1 && letter != '\n';)
        display += letter;
    ::close(ends[0]);
    connection_ = xcb_connect(display.c_str(), nullptr);
    const int error = xcb_connection_has_error(connection_);
    EXPECT_EQ(error, 0) << "the X server does not come up";
    if (error == 0)
        switchOutputsOn();
}

DummyXServer::~DummyXServer() {
    xcb_disconnect(connection_);
}

void DummyXServer::switchOutputsOn() {
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    const auto resources = owned(xcb_randr_get_screen_resources_current_reply(
        connection_, xcb_randr_get_screen_resources_current(connection_, root_), nullptr));
    const xcb_timestamp_t time = resources->config_timestamp;
    const auto* const crtcs = xcb_randr_get_screen_resources_current_crtcs(resources.get());
    const auto* const modes = xcb_randr_get_screen_resources_current_modes(resources.get());
    const auto* const outputs = xcb_randr_get_screen_resources_current_outputs(resources.get());
    for (int i = 0; i < 2; ++i) {
        outputs_[i] = outputs[i];
        xcb_randr_add_output_mode(connection_, outputs[i], modes[0].id);
        const auto answer = owned(xcb_randr_set_crtc_config_reply(
            connection_,
            xcb_randr_set_crtc_config(connection_, crtcs[i], XCB_CURRENT_TIME, time, 0, 0,
                                      modes[0].id, XCB_RANDR_ROTATION_ROTATE_0, 1, &outputs[i]),
            nullptr));
        EXPECT_TRUE(answer && answer->status == XCB_RANDR_SET_CONFIG_SUCCESS) << "output " << i;
    }
    makePrimary(outputs_[0]);
}

xcb_atom_t DummyXServer::atom(const std::string& name) const {
    return owned(xcb_intern_atom_reply(connection_,
                                       xcb_intern_atom(connection_, 0,
                                                       static_cast<std::uint16_t>(name.size()),
                                                       name.c_str()),
                                       nullptr))
        ->atom;
}

void DummyXServer::makePrimary(xcb_randr_output_t output) const {
    xcb_randr_set_output_primary(connection_, root_, output);
}

} // namespace noctra::test
