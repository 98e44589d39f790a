#pragma once

#include "core/pump/PumpUsageJSON.h"
#include "core/pump/PumpUsagePath.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace FellowCore::PumpUsageJSON {

/// A recogniser for one line of JSON whose root is an object (RFC 8259, nested at most 64 deep). Every byte
/// is judged, but only the values of `Field` are kept, so that a line of any length needs the same bounded
/// memory. Bytes above 0x7F pass inside strings whatever they are; a kept value that is not UTF-8 is dropped.
///
/// The line may come in pieces of any size; how it is cut makes no difference. One stream serves one line
/// after another with `reset` between them. A plain value; copies are independent.
class Stream {
public:
    static constexpr std::size_t maximumDepth = 64;
    static constexpr std::size_t keyLimit = 128;    ///< bytes kept of a key, quotes included
    static constexpr std::size_t stringLimit = 256; ///< bytes kept of a string, quotes included
    static constexpr std::size_t numberLimit = 64;  ///< bytes kept of a number

    /// Whether no byte of this line has come yet. The caller clears it; nothing here reads it.
    bool isEmpty = true;

    /// Takes the next byte of the line. Line feeds are not part of it. A fault makes the stream invalid, and
    /// nothing that comes after is looked at.
    void accept(std::uint8_t byte);
    /// The same as accepting the bytes one by one, at the speed of memory.
    void accept(std::string_view bytes);
    /// Closes a number that the line ended in; an unfinished one makes the line invalid.
    void finishNumber();

    /// Whether the line was refused; it stays so until `reset`.
    bool invalid() const { return invalid_; }
    /// Whether the bytes so far, with `finishNumber` after them, are a whole line.
    bool isComplete() const;
    /// What the line has held so far; the last value where a key is repeated. Means something only once the
    /// line is complete.
    const Values& values() const { return values_; }
    /// Back to a fresh stream, which keeps its memory.
    void reset();

    /// Whether both will answer everything that follows in the same way. Invalid streams are all equal but
    /// for `isEmpty`.
    friend bool operator==(const Stream& left, const Stream& right);

private:
    enum class State : std::uint8_t {
        firstKey,
        key,
        colon,
        value,
        objectComma,
        firstElement,
        element,
        arrayComma,
    };
    enum class NumberState : std::uint8_t {
        none,
        minus,
        zero,
        integer,
        dot,
        fraction,
        exponent,
        exponentSign,
        exponentDigits,
    };
    enum class Literal : std::uint8_t { none, isTrue, isFalse, isNull };

    /// One open container. `path` is none where nothing below can be kept; `key` is where the latest key
    /// leads.
    struct Frame {
        State state = State::firstKey;
        Path path = Path::none;
        Path key = Path::none;

        friend bool operator==(const Frame&, const Frame&) = default;
    };

    static std::string_view textOf(Literal literal);
    static Literal literalOf(char firstByte);
    static NumberState firstNumberState(char byte);
    static NumberState nextNumberState(NumberState state, char byte);
    static bool isWhole(NumberState state);

    Frame& top() { return stack_[depth_ - 1]; }
    void fail() { invalid_ = true; }
    void push(State state, Path path) {
        if (depth_ >= maximumDepth) {
            return fail();
        }
        stack_[depth_++] = {state, path, Path::none};
    }
    void pop() { --depth_; }

    void acceptInString(char byte);
    void acceptStructure(char byte);
    void acceptLiteral(char byte);
    /// The part of `acceptStructure` for where a value may begin.
    void beginValue(char byte);
    void openContainer(char byte, Path path) {
        const bool isList = byte == '[';
        push(isList ? State::firstElement : State::firstKey,
             !isList && isContainer(path) ? path : Path::none);
    }
    /// Moves the frame past the value that begins in it and says where that value stands.
    static Path beginsValue(Frame& frame) {
        const bool inObject = frame.state == State::value;
        frame.state = inObject ? State::objectComma : State::arrayComma;
        return inObject ? frame.key : Path::none;
    }

    void beginToken(Path path, std::size_t limit);
    void beginKey();
    void beginString(Path path);
    void beginNumber(Path path, NumberState state);
    void retain(std::string_view bytes);
    void endToken();
    void finishString(std::string_view token);
    void finishKey(std::string_view token);
    void finishStringValue(std::string_view token);

    // The bulk half: a piece of the line and the places in it that matter.
    struct Piece;
    void acceptPiece(std::string_view bytes);
    void walk(Piece& piece);
    void walkEvent(Piece& piece, const char* at);
    void walkKey(Piece& piece, const char* at);
    void skipString(Piece& piece);
    void walkString(Piece& piece, const char* at);
    void walkValue(Piece& piece, const char* at);
    void walkNumber(const Piece& piece, const char* at, Path path);
    void walkLiteral(const Piece& piece, const char* at);
    void closeString(const char* begin, const char* end);

    std::array<Frame, maximumDepth> stack_{};
    std::array<char, stringLimit> token_{};
    std::size_t depth_ = 0;
    std::size_t tokenLength_ = 0;
    std::size_t tokenLimit_ = 0; ///< 0 while nothing of the token is kept
    int unicodeDigits_ = 0;      ///< hexadecimal digits still owed after \u
    std::size_t literalIndex_ = 0;
    bool started_ = false;
    bool invalid_ = false;
    bool inString_ = false;
    bool stringIsKey_ = false;
    bool escaped_ = false;
    bool tokenOverflow_ = false;
    NumberState numberState_ = NumberState::none;
    Literal literal_ = Literal::none;
    Path field_ = Path::none; ///< where the current scalar belongs
    Values values_;
};

} // namespace FellowCore::PumpUsageJSON
