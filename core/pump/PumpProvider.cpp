#include "core/pump/PumpProvider.h"

namespace FellowCore {

std::string_view rawValue(PumpProvider provider) {
    return provider == PumpProvider::claude ? "claude" : "codex";
}

std::optional<PumpProvider> pumpProviderFromRawValue(std::string_view text) {
    for (const PumpProvider provider : allPumpProviders) {
        if (rawValue(provider) == text) {
            return provider;
        }
    }
    return std::nullopt;
}

std::string_view title(PumpProvider provider) {
    return provider == PumpProvider::claude ? "Claude" : "Codex";
}

std::string_view logFolder(PumpProvider provider) {
    return provider == PumpProvider::claude ? ".claude/projects" : ".codex/sessions";
}

} // namespace FellowCore
