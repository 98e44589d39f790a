#pragma once

#include "app/desktop/CharacterPanel.h"

#include <QString>

#include <memory>
#include <vector>

namespace DeskSprites {

class ThumkaTitleBubble;

/// What Thumka says when a piece begins: its title, beside her, until it is taken away or clicked.
class ThumkaTitle {
public:
    ThumkaTitle(DesktopCharacter& character, CharacterSite& site);
    ~ThumkaTitle();

    /// Shows a title in place of the one before; nothing when there is no room.
    void show(const QString& title);
    void dismiss();
    bool isPresented() const;
    /// What is shown, as it was given; empty while nothing is.
    QString title() const;
    std::vector<FellowCore::Rect> frames() const;
    void anchor();

private:
    DesktopCharacter& character_;
    CharacterSite& site_;
    std::unique_ptr<CharacterPanel> panel_; ///< made when first wanted
    ThumkaTitleBubble* bubble_ = nullptr;
};

} // namespace DeskSprites
