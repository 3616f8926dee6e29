#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Where a client stands in the RFB protocol (RFC 6143); what it may send depends on it.
enum class VncStage { Version, SecurityType, Authentication, Initialisation, Normal };

/// Bytes of the message at the beginning of `bytes`, which need not hold the whole of it; 0 while that cannot be
/// told yet. No value when this server knows no such message, so that the client is to be dropped.
[[nodiscard]] std::optional<std::size_t> vncMessageSize(VncStage stage, std::string_view bytes);

/// Clipboards beyond this many bytes are passed over.
inline constexpr std::size_t kLargestVncMessage = 65536;

/// What of a whole message in the normal stage reaches the protocol library: of the encodings only lossless ones,
/// since the panel is shown exactly as it is; of the buttons only the first. No value when the message makes no sense.
[[nodiscard]] std::optional<std::string> vettedVncMessage(std::string_view message);

}  // namespace host
