#pragma once

#include "core/host/CharacterRuntime.h"

#include <functional>

namespace FellowCore {

/// A runtime made of three closures; one that is empty does nothing.
class CharacterLifecycle final : public CharacterRuntime {
public:
    CharacterLifecycle(std::function<void()> prepare, std::function<void()> show, std::function<void()> hide);

    void prepareForActivation() override;
    void activate() override;
    void deactivate() override;

private:
    std::function<void()> prepare_;
    std::function<void()> show_;
    std::function<void()> hide_;
};

} // namespace FellowCore
