#pragma once

#include <chrono>
#include <string>

namespace noctra {

/// Where the system bus is: the environment's word, else the usual socket. As D-Bus writes
/// addresses.
[[nodiscard]] std::string systemBusAddress();

/// Whether somebody speaks at the bus's address, found out without QtDBus: that connects for all
/// the connections of a process on one thread of its own, without a time limit, so that one bus
/// that accepts and says nothing stops the calls to every other bus. Ask here first.
///
/// Returns an empty text when the bus speaks, or when its address is not one Unix socket's path,
/// where nothing is asked; else the reason. Takes up to `limit`; any thread.
[[nodiscard]] std::string whyBusIsSilent(const std::string& address,
                                         std::chrono::milliseconds limit);

} // namespace noctra
