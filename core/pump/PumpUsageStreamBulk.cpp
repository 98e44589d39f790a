#include "core/pump/PumpUsageScan.h"
#include "core/pump/PumpUsageStream.h"

#include <algorithm>
#include <bit>

namespace FellowCore::PumpUsageJSON {

namespace {

constexpr std::size_t pieceBlocks = 64;
constexpr std::size_t pieceSize = pieceBlocks * scanBlockSize; // stays in the nearest cache

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

/// Whether a byte after a number or a literal belongs to something else that is judged by itself.
bool endsScalar(char byte) {
    switch (byte) {
    case ' ':
    case '\t':
    case '\r':
    case ',':
    case ':':
    case '}':
    case ']':
    case '{':
    case '[':
    case '"':
        return true;
    default:
        return false;
    }
}

} // namespace

/// A piece of the line without faults inside its strings, and the places in it that the scan found, which are
/// taken in order.
struct Stream::Piece {
    const char* begin = nullptr;
    const char* end = nullptr;
    const char* block = nullptr; ///< where the events left begin to count
    std::uint64_t left = 0;
    const char* token = nullptr; ///< where the open string's bytes in this piece begin
    std::array<std::uint64_t, pieceBlocks> events;

    const char* take() {
        const char* const at = block + std::countr_zero(left);
        left &= left - 1;
        return at;
    }
};

void Stream::accept(std::string_view bytes) {
    while (!bytes.empty() && !invalid_) {
        if (numberState_ != NumberState::none || literal_ != Literal::none || !started_) {
            accept(static_cast<std::uint8_t>(bytes.front()));
            bytes.remove_prefix(1);
            continue;
        }
        const std::string_view piece = bytes.substr(0, pieceSize);
        acceptPiece(piece);
        bytes.remove_prefix(piece.size());
    }
}

void Stream::acceptPiece(std::string_view bytes) {
    Piece piece;
    ScanState state{.inString = inString_,
                    .escaped = escaped_,
                    .inScalar = false,
                    .hexDigits = static_cast<unsigned>(unicodeDigits_)};
    const std::size_t clean = fastestScan()(bytes.data(), bytes.size(), state, piece.events.data());
    piece.begin = piece.token = bytes.data();
    piece.end = bytes.data() + clean;
    walk(piece);
    if (invalid_) {
        return;
    }
    inString_ = state.inString;
    escaped_ = state.escaped;
    unicodeDigits_ = static_cast<int>(state.hexDigits);
    if (inString_) {
        retain({piece.token, piece.end});
    }
    for (const char byte : bytes.substr(clean)) {
        accept(static_cast<std::uint8_t>(byte));
        if (invalid_) {
            return;
        }
    }
}

void Stream::walk(Piece& piece) {
    const std::uint64_t* events = piece.events.data();
    for (piece.block = piece.begin; piece.block < piece.end; piece.block += scanBlockSize) {
        piece.left = *events++;
        if (inString_ && piece.left != 0) {
            closeString(piece.token, piece.take() + 1);
        }
        while (piece.left != 0) {
            walkEvent(piece, piece.take());
            if (invalid_) {
                return;
            }
        }
    }
}

/// Takes one event, and those that usually follow it as far as they lie in the same block.
inline void Stream::walkEvent(Piece& piece, const char* at) {
    if (depth_ == 0) {
        return fail();
    }
    Frame& frame = top();
    switch (frame.state) {
    case State::objectComma:
        if (*at != ',') {
            return acceptStructure(*at);
        }
        frame.state = State::key;
        if (piece.left == 0) {
            return;
        }
        at = piece.take();
        [[fallthrough]];
    case State::firstKey:
    case State::key:
        if (*at != '"') {
            return acceptStructure(*at);
        }
        walkKey(piece, at);
        if (piece.left == 0) {
            return;
        }
        at = piece.take();
        [[fallthrough]];
    case State::colon:
        if (*at != ':') {
            return fail();
        }
        frame.state = State::value;
        if (piece.left == 0) {
            return;
        }
        at = piece.take();
        return walkValue(piece, at);
    case State::arrayComma:
        return acceptStructure(*at);
    case State::firstElement:
        if (*at == ']') {
            return pop();
        }
        [[fallthrough]];
    case State::value:
    case State::element:
        return walkValue(piece, at);
    }
}

inline void Stream::walkKey(Piece& piece, const char* at) {
    if (top().path != Path::none) {
        beginKey();
        return walkString(piece, at);
    }
    top().state = State::colon;
    skipString(piece);
}

/// Passes over a string of which nothing is kept.
inline void Stream::skipString(Piece& piece) {
    if (piece.left != 0) {
        piece.left &= piece.left - 1;
    } else {
        inString_ = true;
    }
}

void Stream::walkString(Piece& piece, const char* at) {
    piece.token = at;
    if (piece.left != 0) {
        closeString(at, piece.take() + 1);
    }
}

void Stream::closeString(const char* begin, const char* end) {
    const std::string_view bytes(begin, end);
    if (tokenLength_ == 0 && !tokenOverflow_ && bytes.size() <= tokenLimit_) {
        return finishString(bytes); // it lies here as a whole
    }
    retain(bytes);
    finishString({token_.data(), tokenLength_});
}

inline void Stream::walkValue(Piece& piece, const char* at) {
    const Path path = beginsValue(top());
    switch (*at) {
    case '"':
        if (!fieldOf(path)) {
            return skipString(piece);
        }
        beginString(path);
        return walkString(piece, at);
    case '{':
    case '[':
        return openContainer(*at, path);
    case 't':
    case 'f':
    case 'n':
        return walkLiteral(piece, at);
    default:
        return *at == '-' || isDigit(*at) ? walkNumber(piece, at, path) : fail();
    }
}

void Stream::walkNumber(const Piece& piece, const char* at, Path path) {
    NumberState state = firstNumberState(*at);
    const char* end = at + 1;
    for (; end != piece.end; ++end) {
        if (state == NumberState::integer && isDigit(*end)) {
            continue; // most are whole
        }
        const NumberState next = nextNumberState(state, *end);
        if (next == NumberState::none) {
            break;
        }
        state = next;
    }
    beginNumber(path, state);
    retain({at, end});
    if (end == piece.end) {
        return; // it may go on
    }
    finishNumber();
    if (!endsScalar(*end)) {
        fail();
    }
}

void Stream::walkLiteral(const Piece& piece, const char* at) {
    const Literal literal = literalOf(*at);
    const std::string_view text = textOf(literal);
    const std::string_view here(at, std::min(text.size(), static_cast<std::size_t>(piece.end - at)));
    const char* const end = at + here.size();
    if (!text.starts_with(here) || (end != piece.end && !endsScalar(*end))) {
        return fail();
    }
    if (here.size() < text.size()) { // it may go on
        literal_ = literal;
        literalIndex_ = here.size();
    }
}

} // namespace FellowCore::PumpUsageJSON
