#include "app/desktop/QuickActions.h"

#include "core/art/CharacterActionsLayout.h"
#include "platform/ScreenSpace.h"

#include <QApplication>

#include <algorithm>
#include <cmath>

namespace DeskSprites {

namespace {

QString text(const char* source) {
    return QCoreApplication::translate("QuickActions", source);
}

QuickAction footerAction(const char* id, const QString& title, PixelIcon icon) {
    QuickAction action;
    action.id = QString::fromLatin1(id);
    action.title = title;
    action.emphasis = Emphasis::quiet;
    action.icon = icon;
    return action;
}

} // namespace

QuickActions::QuickActions(CharacterStage& stage, CharacterMenus& menus, DesktopCommands& commands,
                           DesktopServices& services)
    : stage_(stage), menus_(menus), commands_(commands), services_(services) {}

QuickActions::~QuickActions() = default;

QuickActionsPanel& QuickActions::panel() {
    if (!panel_) {
        panel_ = std::make_unique<QuickActionsPanel>();
        panel_->onDismissed = [this] {
            character_ = nullptr;
            services_.system.presses().setOnPress({});
            commands_.finishSizeEdit();
            if (onClosed) {
                onClosed();
            }
        };
        panel_->onPreferredSizeChanged = [this] { anchor(); };
        panel_->isOwnPlace = [this](const QPoint& position) {
            return character_ && character_->geometry().artwork.contains(Platform::fromQt(QPointF(position)));
        };
    }
    return *panel_;
}

void QuickActions::present(DesktopCharacter& character) {
    if (character_ && character_ != &character) {
        dismiss();
    }
    const bool wasOpen = character_ == &character;
    character_ = &character;
    QuickActionsPanel& shown = panel();
    shown.setTranslucent(services_.system.hasCompositor());
    shown.setAccent(character.companion().manifest.accent);
    shown.setContent(content(character));
    const FellowCore::BubblePlacement place = placement();
    if (!place.canPresent) {
        character_ = nullptr;
        shown.dismiss();
        const FellowCore::Rect art = character.geometry().artwork;
        if (std::unique_ptr<QMenu> menu = menus_.characterMenu(character)) {
            menu->setAttribute(Qt::WA_DeleteOnClose);
            menu.release()->popup(Platform::toQt(FellowCore::Point{art.midX(), art.midY()}));
        }
        return;
    }
    shown.present(place, services_.system.motion().isReduced() ? BubbleMotion::reduced : BubbleMotion::full);
    watchPresses();
    if (!wasOpen && onOpened) {
        onOpened();
    }
}

void QuickActions::watchPresses() {
    // The panel has no keyboard that it could lose, so a click into another program is noticed only this way.
    // Presses in our own panels and menus are theirs.
    services_.system.presses().setOnPress([this](FellowCore::Point press) {
        const QPoint place = Platform::toQt(press);
        const QWidgetList windows = QApplication::topLevelWidgets();
        const bool isOurs = std::ranges::any_of(windows, [place](const QWidget* window) {
            return window->isVisible() && window->frameGeometry().contains(place);
        });
        if (!isOurs && panel_) {
            panel_->pressedOutside(place);
        }
    });
}

void QuickActions::toggle(DesktopCharacter& character) {
    if (character_ == &character) {
        dismiss();
    } else {
        present(character);
    }
}

void QuickActions::dismiss() {
    if (character_) {
        panel_->dismiss();
    }
}

void QuickActions::takeKeyboard() {
    if (character_) {
        panel_->takeKeyboard();
    }
}

void QuickActions::update(DesktopCharacter& character) {
    if (character_ == &character) {
        panel_->setContent(content(character));
    }
}

void QuickActions::anchor() {
    if (!character_) {
        return;
    }
    const FellowCore::BubblePlacement place = placement();
    if (place.canPresent) {
        panel_->place(place);
    } else {
        dismiss();
    }
}

std::vector<FellowCore::Rect> QuickActions::obstacles() const {
    return character_ ? std::vector{panel_->placedFrame()} : std::vector<FellowCore::Rect>{};
}

FellowCore::BubblePlacement QuickActions::placement() const {
    const CharacterGeometry stands = character_->geometry();
    const auto screen = character_->screen();
    std::vector<FellowCore::Rect> avoiding = stage_.attachmentObstacles(*character_);
    const std::vector<FellowCore::Rect> own = character_->attachments();
    avoiding.insert(avoiding.end(), own.begin(), own.end());
    return FellowCore::CharacterActionsLayout::resolve(stands.artwork, stands.faceY,
                                                       screen ? screen->visibleFrame : stands.artwork,
                                                       panel_->preferredSize(), avoiding);
}

QuickActionsContent QuickActions::content(DesktopCharacter& character) const {
    CharacterPresentation shown = character.presentation();
    QuickActionsContent content;
    content.name = character.name();
    content.role = QString::fromStdString(character.companion().manifest.role);
    content.status = shown.status;
    content.badge = shown.badge;
    content.badgeSpoken = shown.spoken;
    content.progress = shown.progress;
    content.lamp = shown.lamp;
    content.actions = std::move(shown.actions);
    content.footer = footer(character);
    content.size = sizeRow(character);
    return content;
}

std::vector<QuickAction> QuickActions::footer(DesktopCharacter& character) const {
    const std::string id = character.identifier();
    QuickAction hide = footerAction("hide", text("Hide"), PixelIcon::hide);
    hide.onPress = [this, id] {
        commands_.focus(id);
        commands_.hideCharacter();
    };
    QuickAction swap = footerAction("swap", text("Swap"), PixelIcon::swap);
    swap.menu = [this, &character] { return menus_.swapMenu(character); };
    QuickAction bring = footerAction("bring", text("Bring"), PixelIcon::bringAnother);
    bring.menu = [this] { return menus_.bringMenu(); };
    QuickAction settings = footerAction("settings", text("Settings"), PixelIcon::settings);
    settings.onPress = [this, id] { commands_.openLibrary(id); };
    return {hide, swap, bring, settings};
}

SizeRow QuickActions::sizeRow(DesktopCharacter& character) const {
    SizeRow row;
    row.height = static_cast<int>(std::lround(character.visibleHeight()));
    row.onBegin = [this, &character] { commands_.beginSizeEdit(character); };
    row.onRequest = [this](int height) { commands_.requestSize(height); };
    row.onEnd = [this] { commands_.finishSizeEdit(); };
    row.onSmaller = [this, &character] { commands_.stepSize(character, -1); };
    row.onLarger = [this, &character] { commands_.stepSize(character, 1); };
    return row;
}

} // namespace DeskSprites
