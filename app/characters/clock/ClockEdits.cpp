#include "app/characters/clock/ClockEdits.h"

#include "app/characters/clock/ClockCharacter.h"
#include "app/desktop/PanelMessage.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>

#include <algorithm>
#include <utility>

namespace DeskSprites {

using FellowCore::WorldClockPinResult;
using FellowCore::WorldClockState;

namespace {

QString words(const char* source) {
    return QCoreApplication::translate("Clock", source);
}

} // namespace

ClockEdits::ClockEdits(ClockCharacter& clock, PanelMessage& message) : clock_(clock), message_(message) {}

void ClockEdits::take(const std::string& identifier, ClockWish wish) {
    switch (wish) {
    case ClockWish::toggleFace:
        return toggleFace(identifier);
    case ClockWish::makeHome:
        return makeHome(identifier);
    case ClockWish::followSystem:
        return followSystem();
    case ClockWish::moveUp:
        return move(identifier, -1);
    case ClockWish::moveDown:
        return move(identifier, 1);
    case ClockWish::copy:
        return copy(identifier);
    case ClockWish::remove:
        return remove(identifier);
    }
}

void ClockEdits::forget() {
    removed_.reset();
    message_.setNoButton();
    message_.say({});
}

void ClockEdits::say(const QString& sentence) {
    forget();
    message_.say(sentence);
}

QString ClockEdits::nameOf(const std::string& identifier) const {
    const auto city = clock_.catalog().city(identifier);
    return QString::fromStdString(city ? city->name : identifier);
}

void ClockEdits::toggleFace(const std::string& identifier) {
    forget();
    const bool wanted = !clock_.state().isPinned(identifier);
    auto result = WorldClockPinResult::unchanged;
    clock_.change([&](WorldClockState& state) {
        result = state.setPinned(identifier, wanted, clock_.catalog(), clock_.systemTimeZone());
        return result == WorldClockPinResult::pinned || result == WorldClockPinResult::unpinned;
    });
    if (result == WorldClockPinResult::limitReached) {
        offerReplacement(identifier);
    } else if (result == WorldClockPinResult::homeCity) {
        say(words("Home has the large face already."));
    }
}

void ClockEdits::offerReplacement(const std::string& identifier) {
    const std::string oldest = clock_.state().pinnedTimeZoneIdentifiers.front();
    message_.setButton(words("Replace"), [this, identifier] {
        forget();
        clock_.change([&](WorldClockState& state) {
            return state.replaceFace(identifier, clock_.catalog(), clock_.systemTimeZone()) ==
                   WorldClockPinResult::pinned;
        });
        onTurnTo(identifier);
    });
    message_.say(
        words("Both small faces are taken. Show %1 instead of %2?").arg(nameOf(identifier), nameOf(oldest)));
}

void ClockEdits::makeHome(const std::string& identifier) {
    forget();
    clock_.change([&](WorldClockState& state) {
        return state.setHome(identifier, clock_.catalog(), clock_.systemTimeZone());
    });
}

void ClockEdits::followSystem() {
    forget();
    clock_.change([&](WorldClockState& state) {
        const WorldClockState before = state;
        state.resetHome(clock_.catalog(), clock_.systemTimeZone());
        return state != before;
    });
}

void ClockEdits::move(const std::string& identifier, int by) {
    forget();
    clock_.change([&](WorldClockState& state) {
        const auto& cities = state.cityIdentifiers;
        const auto from = std::ranges::find(cities, identifier) - cities.begin();
        return state.moveCity(identifier, static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, from + by)));
    });
}

void ClockEdits::add(const std::string& identifier) {
    forget();
    const bool isFull = clock_.state().cityIdentifiers.size() >= WorldClockState::mostCities;
    const bool isAdded = clock_.change([&](WorldClockState& state) {
        return state.addCity(identifier, clock_.catalog(), clock_.systemTimeZone());
    });
    if (!isAdded && isFull) {
        say(words("The list holds %1 cities. Remove one to make room.").arg(WorldClockState::mostCities));
    }
}

void ClockEdits::remove(const std::string& identifier) {
    const auto& cities = clock_.state().cityIdentifiers;
    const auto found = std::ranges::find(cities, identifier);
    if (found == cities.end()) {
        return; // home, which there always is
    }
    const Removed removed{identifier, static_cast<std::size_t>(found - cities.begin()),
                          clock_.state().isPinned(identifier)};
    forget();
    message_.setButton(words("Undo"), [this] { undo(); });
    message_.say(words("%1 is removed.").arg(nameOf(removed.identifier)));
    removed_ = removed;
    clock_.change([&](WorldClockState& state) { return state.removeCity(removed.identifier); });
}

void ClockEdits::undo() {
    const auto removed = std::exchange(removed_, std::nullopt);
    if (!removed) {
        return;
    }
    forget();
    clock_.change([&](WorldClockState& state) {
        if (!state.addCity(removed->identifier, clock_.catalog(), clock_.systemTimeZone())) {
            return false;
        }
        state.moveCity(removed->identifier, removed->place);
        if (removed->wasPinned) {
            state.setPinned(removed->identifier, true, clock_.catalog(), clock_.systemTimeZone());
        }
        return true;
    });
    onTurnTo(removed->identifier);
}

void ClockEdits::copy(const std::string& identifier) {
    const auto rows = clock_.rows();
    const auto row = std::ranges::find(rows, identifier, &FellowCore::WorldClockRow::identifier);
    if (row != rows.end()) {
        const auto text = FellowCore::WorldClockPresentation::text(*row);
        QGuiApplication::clipboard()->setText(QString::fromStdString(text));
        say(words("The time in %1 is copied.").arg(nameOf(identifier)));
    }
}

} // namespace DeskSprites
