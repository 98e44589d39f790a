#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace FellowCore {

/// The coding agents whose session logs Pump reads.
enum class PumpProvider { claude, codex };

inline constexpr std::array allPumpProviders{PumpProvider::claude, PumpProvider::codex};

/// The name in files: "claude" or "codex".
std::string_view rawValue(PumpProvider provider);
std::optional<PumpProvider> pumpProviderFromRawValue(std::string_view text);
/// The name shown to the user: "Claude" or "Codex".
std::string_view title(PumpProvider provider);
/// Where the agent keeps its session logs, relative to the home folder.
std::string_view logFolder(PumpProvider provider);

} // namespace FellowCore
