#pragma once

namespace FellowCore {

/// A character as the host sees it. Coming on the desktop is `prepareForActivation` and then `activate`;
/// leaving it, or being hidden with the others, is `deactivate`.
class CharacterRuntime {
public:
    CharacterRuntime() = default;
    CharacterRuntime(const CharacterRuntime&) = delete;
    CharacterRuntime& operator=(const CharacterRuntime&) = delete;
    virtual ~CharacterRuntime() = default;

    virtual void prepareForActivation() = 0;
    virtual void activate() = 0;
    virtual void deactivate() = 0;
};

} // namespace FellowCore
