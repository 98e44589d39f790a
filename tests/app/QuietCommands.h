#pragma once

#include "app/desktop/DesktopCommands.h"

#include <functional>

namespace AppHarness {

/// A desktop on which nothing is done but what a test gives it to do.
class QuietCommands final : public DeskSprites::DesktopCommands {
public:
    std::function<void()> onBringOut = [] {};
    std::function<void(const std::string& pane)> onOpenLibrary = [](const std::string&) {};

    void bringOut(const std::string&) override { onBringOut(); }
    void openLibrary(const std::optional<std::string>& pane) override { onOpenLibrary(pane.value_or("")); }
    bool isVisible() const override { return true; }
    void select(const std::string&) override {}
    void hideCharacter() override {}
    void toggleVisible() override {}
    void swapBack() override {}
    void focus(const std::string&) override {}
    void arrange(FellowCore::ArrangeLayout::Edge, DeskSprites::CompactChange) override {}
    void stepSize(DeskSprites::DesktopCharacter&, int) override {}
    void beginSizeEdit(DeskSprites::DesktopCharacter&) override {}
    void requestSize(double) override {}
    void finishSizeEdit() override {}
    void quit() override {}
    std::vector<DeskSprites::DesktopCharacter*> candidates() const override { return {}; }
    DeskSprites::DesktopCharacter* previousCharacter(const DeskSprites::DesktopCharacter&) const override {
        return nullptr;
    }
    bool isSetFull() const override { return false; }
    bool isCompact() const override { return false; }
    FellowCore::ArrangeLayout::Edge arrangeEdge() const override { return {}; }
};

} // namespace AppHarness
