#pragma once

#include "app/characters/mira/GroundGlow.h"
#include "app/characters/mira/MiraPoses.h"
#include "app/desktop/SpriteView.h"

#include <functional>
#include <optional>
#include <vector>

namespace DeskSprites {

/// Mira as she is drawn: eyes open while nothing is going on; while a session runs with closed eyes, her body
/// and the light on the ground following the breath.
class MiraSpriteView : public SpriteView {
public:
    static constexpr double glowReach = 15; ///< art pixels that the light needs beside the canvas
    static constexpr double glowDepth = 9;  ///< and below the ground line

    using LoadPoses = std::function<MiraPoses()>;

    /// `load` runs when the pictures are first needed: who never has Mira out pays for none.
    MiraSpriteView(LoadPoses load, std::vector<FellowCore::AlphaRun> stillRuns);

    /// Loads the pictures, before she is first shown.
    void prepare();

    /// One moment of a running session. Paints only what looks different.
    void showBreath(const MiraFrame& frame, MiraMotion motion);
    /// Eyes open, no light.
    void showAwake();
    /// The picture that stands for her where nothing moves.
    const QImage& still() const { return poses().eyesOpen; }
    /// What is shown now; nothing while she is awake.
    const std::optional<MiraFrame>& breath() const { return breath_; }

    void paint(QPainter& painter, QSizeF size) override;

protected:
    std::vector<FellowCore::AlphaRun> opaqueRuns() const override;
    /// She goes through all of them with every breath.
    std::size_t cachedPictures() const override { return MiraFrame::poses + 1; }

private:
    const MiraPoses& poses() const;
    const QImage& body() const;
    QRectF glowRect() const;

    LoadPoses load_;
    std::vector<FellowCore::AlphaRun> stillRuns_; ///< until the pictures are there
    mutable std::optional<MiraPoses> poses_;
    GroundGlow glow_;
    std::optional<MiraFrame> breath_;
    MiraMotion motion_ = MiraMotion::full;
};

} // namespace DeskSprites
