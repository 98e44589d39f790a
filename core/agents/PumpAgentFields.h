#pragma once

#include <cstddef>
#include <string_view>

namespace FellowCore {

/// The fields of one line of the agents' event file, which the hook helper writes and Pump reads: their keys,
/// and the rules that both sides hold them to.
namespace PumpAgentFields {

inline constexpr std::string_view agentKey = "agent";
inline constexpr std::string_view eventKey = "event";
inline constexpr std::string_view sessionKey = "session_id";
inline constexpr std::string_view timestampKey = "ts"; ///< seconds since 1970, with a fraction
inline constexpr std::string_view applicationKey = "terminal_bundle_id";
inline constexpr std::string_view cwdKey = "cwd"; ///< only with the user's consent
inline constexpr std::string_view ttyKey = "tty"; ///< only with the user's consent

inline constexpr std::size_t maximumLineBytes = 2048;
inline constexpr std::size_t maximumLines = 200;
/// A longer file is not read back whole.
inline constexpr std::size_t maximumFileBytes = 409600;

/// 1 to 128 ASCII letters, digits and "-", "_", ".", ":".
bool isSessionID(std::string_view text);
/// A bundle identifier, or on Linux a desktop-file id with its ending: at most 160 ASCII letters, digits and
/// "-", "_", ".", with at least one full stop among them.
bool isApplicationID(std::string_view text);
/// Whether the text holds a control character: U+0000 to U+001F or U+007F to U+009F.
bool holdsControlCharacter(std::string_view text);

} // namespace PumpAgentFields

} // namespace FellowCore
