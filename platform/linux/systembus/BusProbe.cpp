#include "platform/linux/systembus/BusProbe.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace noctra {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto usualAddress = "unix:path=/run/dbus/system_bus_socket";
/// What a client says first, a null byte included: it asks which ways of authentication there are.
constexpr std::string_view question("\0AUTH\r\n", 7);
constexpr auto noAnswer = "it does not answer";

/// A socket that closes itself.
struct Socket {
    explicit Socket(int number) : descriptor(number) {}
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    ~Socket() {
        if (descriptor >= 0)
            ::close(descriptor);
    }
    const int descriptor;
};

/// The path in an address that is the address of one Unix socket.
std::optional<sockaddr_un> socketIn(std::string_view address) {
    constexpr std::string_view start = "unix:path=";
    if (!address.starts_with(start) || address.find_first_of(";%") != std::string_view::npos)
        return std::nullopt;
    address.remove_prefix(start.size());
    address = address.substr(0, address.find(','));
    sockaddr_un socket{};
    socket.sun_family = AF_UNIX;
    if (address.empty() || address.size() >= sizeof socket.sun_path)
        return std::nullopt;
    std::memcpy(static_cast<char*>(socket.sun_path), address.data(), address.size());
    return socket;
}

bool becomesReadable(int descriptor, Clock::time_point deadline) {
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0)
            return false;
        pollfd polled{descriptor, POLLIN, 0};
        if (::poll(&polled, 1, static_cast<int>(left)) > 0)
            return true;
    }
}

} // namespace

std::string systemBusAddress() {
    const char* const address = std::getenv("DBUS_SYSTEM_BUS_ADDRESS");
    return address != nullptr && *address != '\0' ? address : usualAddress;
}

std::string whyBusIsSilent(const std::string& address, std::chrono::milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    const auto where = socketIn(address);
    if (!where)
        return {};
    const Socket socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (socket.descriptor < 0)
        return std::strerror(errno);
    const auto* const name = reinterpret_cast<const sockaddr*>(&*where);
    if (::connect(socket.descriptor, name, sizeof *where) != 0)
        // A Unix socket says this when too many wait to be let in.
        return errno == EAGAIN ? noAnswer : std::strerror(errno);
    if (::send(socket.descriptor, question.data(), question.size(), MSG_NOSIGNAL) < 0)
        return std::strerror(errno);
    if (!becomesReadable(socket.descriptor, deadline))
        return noAnswer;
    std::array<char, 16> answer{};
    const ssize_t count = ::recv(socket.descriptor, answer.data(), answer.size(), 0);
    if (count < 0)
        return std::strerror(errno);
    return count == 0 ? "it hangs up" : "";
}

} // namespace noctra
