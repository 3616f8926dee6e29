#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// This machine's name as others nearby find it without a name server (multicast DNS).
[[nodiscard]] std::string localName();

/// The addresses at which browsers reach a server that listens on this numeric address, each "http://HOST:PORT/" and
/// then `query`. Where it listens on every address of the machine, those of its network interfaces and its name.
[[nodiscard]] std::vector<std::string> pageAddresses(const std::string& listen, int port, std::string_view query);

/// The text as a QR code for a terminal, which a phone's camera reads.
[[nodiscard]] std::string qrCode(const std::string& text);

}  // namespace host
