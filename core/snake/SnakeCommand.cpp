#include "core/snake/SnakeCommand.h"

namespace FellowCore {

namespace {

using Kind = SnakeCommand::Kind;

SnakeCommand turnTo(SnakeDirection direction) {
    return {Kind::turn, direction};
}

SnakeCommand plain(Kind kind) {
    return {kind, std::nullopt};
}

SnakeCommand meaning(SnakeKey key) {
    switch (key) {
    case SnakeKey::up:
    case SnakeKey::w:
        return turnTo(SnakeDirection::up);
    case SnakeKey::down:
    case SnakeKey::s:
        return turnTo(SnakeDirection::down);
    case SnakeKey::left:
    case SnakeKey::a:
        return turnTo(SnakeDirection::left);
    case SnakeKey::right:
    case SnakeKey::d:
        return turnTo(SnakeDirection::right);
    case SnakeKey::plus:
        return plain(Kind::faster);
    case SnakeKey::minus:
        return plain(Kind::slower);
    case SnakeKey::space:
        return plain(Kind::togglePause);
    case SnakeKey::enter:
        return plain(Kind::restart);
    case SnakeKey::escape:
        break;
    }
    return plain(Kind::leave);
}

bool isUseful(Kind kind, SnakeStatus status) {
    switch (kind) {
    case Kind::turn:
        return status == SnakeStatus::running;
    case Kind::togglePause:
        return !isFinished(status);
    case Kind::restart:
        return isFinished(status);
    case Kind::faster:
    case Kind::slower:
    case Kind::leave:
        break;
    }
    return true;
}

} // namespace

std::optional<SnakeCommand> snakeCommand(const SnakeKeyPress& press, SnakeStatus status) {
    const SnakeCommand command = meaning(press.key);
    const bool mayRepeat = command.kind == Kind::faster || command.kind == Kind::slower;
    if (press.modified || (press.repeats && !mayRepeat) || !isUseful(command.kind, status)) {
        return std::nullopt;
    }
    return command;
}

} // namespace FellowCore
