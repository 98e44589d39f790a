#pragma once

#include "app/desktop/SpriteView.h"
#include "core/art/ManifestCharacter.h"

#include <QImage>

#include <memory>

namespace DeskSprites {

/// A character at rest: its still picture, which can be clicked and nothing else.
class RestingArtView final : public SpriteView {
public:
    RestingArtView(std::shared_ptr<const FellowCore::ManifestCharacter> character, QImage still)
        : character_(std::move(character)), still_(std::move(still)) {}

    void paint(QPainter& painter, QSizeF) override { drawCanvas(painter, still_); }
    /// No drag: the character would not follow its picture.
    void pointerMoved(const Platform::PointerEvent&) override {}

protected:
    std::vector<FellowCore::AlphaRun> opaqueRuns() const override { return character_->alphaRuns("idle"); }

private:
    std::shared_ptr<const FellowCore::ManifestCharacter> character_;
    QImage still_;
};

} // namespace DeskSprites
