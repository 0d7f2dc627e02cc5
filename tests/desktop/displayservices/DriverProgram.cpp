// Opens the display-services library as the program does and calls what it is told to. Usage:
//   driver SOCKET LIBRARY
// Reads commands from the descriptor SOCKET, one in a packet, and answers each with the function's
// result and the time that the call took, in nanoseconds.

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <iostream>
#include <sstream>
#include <string>

#include <QtCore/QCoreApplication>
#include <dlfcn.h>
#include <sys/socket.h>

#include "platform/DisplayServices.h"
#include "platform/linux/displayservices/HostFunctions.h"

namespace noctra::desktop {

namespace {

std::string exactly(float value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.9g", static_cast<double>(value));
    return text.data();
}

class Library {
public:
    explicit Library(const char* path) : handle_(::dlopen(path, RTLD_LAZY)) {}

    [[nodiscard]] bool isOpen() const { return handle_ != nullptr; }

    /// Result and duration of the call that `command` asks for.
    std::string perform(const std::string& command) {
        using namespace display_services;
        std::istringstream words(command);
        std::string name;
        DisplayId display = 0;
        float brightness = 0;
        bool enable = false;
        words >> name >> display;
        if (name == "get")
            return timed([&, get = find<GetBrightness>(getBrightnessSymbol)] {
                const std::int32_t status = get(display, &brightness);
                return status == 0 ? exactly(brightness) : std::string("failed");
            });
        if (name == "set" || name == "smooth") {
            auto* const set = find<SetBrightness>(name == "set" ? setBrightnessSymbol
                                                                : setBrightnessSmoothSymbol);
            std::string value;
            words >> value;
            brightness = std::strtof(value.c_str(), nullptr);
            return timed([&] { return set(display, brightness) == 0 ? "ok" : "failed"; });
        }
        if (name == "can")
            return timed([&, can = find<CanChangeBrightness>(canChangeBrightnessSymbol)] {
                return can(display) ? "true" : "false";
            });
        if (name == "alc") {
            auto* const alc = find<EnableAmbientLightCompensation>(enableALCSymbol);
            words >> enable;
            return timed([&] { return alc(display, enable) == 0 ? "ok" : "failed"; });
        }
        if (name == "finish")
            return timed([&, finish = find<Finish>(finishSymbol)] {
                // From two threads at once, as on the way out.
                const int limit = static_cast<int>(display);
                auto other = std::async(std::launch::async, finish, limit);
                return std::to_string(std::min(finish(limit), other.get()));
            });
        if (name == "news")
            return timed(
                [&, take = find<TakeNews>(takeNewsSymbol)] { return std::to_string(take()); });
        return "unknown 0";
    }

private:
    template <typename Function>
    [[nodiscard]] Function* find(const char* name) const {
        return reinterpret_cast<Function*>(::dlsym(handle_, name));
    }
    template <typename Call>
    static std::string timed(Call call) {
        const auto begin = std::chrono::steady_clock::now();
        const std::string result = call();
        const std::chrono::nanoseconds took = std::chrono::steady_clock::now() - begin;
        return result + " " + std::to_string(took.count());
    }

    void* const handle_;
};

int run(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    constexpr int expectedArguments = 3;
    if (argc != expectedArguments)
        return 2;
    const int socket = std::atoi(argv[1]);
    Library library(argv[2]);
    if (!library.isOpen()) {
        std::cerr << ::dlerror() << '\n';
        return 2;
    }
    std::string command(256, '\0');
    for (;;) {
        const ssize_t length = ::recv(socket, command.data(), command.size(), 0);
        if (length <= 0)
            return 0;
        const std::string answer =
            library.perform(command.substr(0, static_cast<std::size_t>(length)));
        ::send(socket, answer.data(), answer.size(), MSG_NOSIGNAL);
    }
}

} // namespace

} // namespace noctra::desktop

int main(int argc, char** argv) {
    return noctra::desktop::run(argc, argv);
}
