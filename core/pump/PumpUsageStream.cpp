#include "core/pump/PumpUsageStream.h"

#include "core/base/Json.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>
#include <string>

namespace FellowCore::PumpUsageJSON {

namespace {

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

bool isHexDigit(char byte) {
    return isDigit(byte) || (byte >= 'a' && byte <= 'f') || (byte >= 'A' && byte <= 'F');
}

bool isControl(char byte) {
    return static_cast<unsigned char>(byte) <= 0x1F;
}

/// Text that stands for itself between its quotes.
bool isPlain(std::string_view inner) {
    return std::all_of(inner.begin(), inner.end(),
                       [](char byte) { return static_cast<unsigned char>(byte) < 0x80 && byte != '\\'; });
}

/// The text of a string token with its quotes; nothing when it is not UTF-8 or names half a character.
std::optional<std::string> decoded(std::string_view token) {
    const Json value = Json::parse(token, nullptr, /*allow_exceptions=*/false);
    return value.is_string() ? std::optional(value.get<std::string>()) : std::nullopt;
}

std::string_view withoutQuotes(std::string_view token) {
    return token.substr(1, token.size() - 2);
}

} // namespace

std::string_view Stream::textOf(Literal literal) {
    switch (literal) {
    case Literal::isTrue:
        return "true";
    case Literal::isFalse:
        return "false";
    case Literal::isNull:
        return "null";
    case Literal::none:
        break;
    }
    return {};
}

Stream::Literal Stream::literalOf(char byte) {
    return byte == 't' ? Literal::isTrue : byte == 'f' ? Literal::isFalse : Literal::isNull;
}

Stream::NumberState Stream::firstNumberState(char byte) {
    if (byte == '-') {
        return NumberState::minus;
    }
    return byte == '0' ? NumberState::zero : NumberState::integer;
}

/// None when the byte does not belong to the number any more.
Stream::NumberState Stream::nextNumberState(NumberState state, char byte) {
    const bool power = byte == 'e' || byte == 'E';
    switch (state) {
    case NumberState::minus:
        return isDigit(byte) ? firstNumberState(byte) : NumberState::none;
    case NumberState::zero:
        return byte == '.' ? NumberState::dot : power ? NumberState::exponent : NumberState::none;
    case NumberState::integer:
        return isDigit(byte) ? NumberState::integer
               : byte == '.' ? NumberState::dot
               : power       ? NumberState::exponent
                             : NumberState::none;
    case NumberState::dot:
        return isDigit(byte) ? NumberState::fraction : NumberState::none;
    case NumberState::fraction:
        return isDigit(byte) ? NumberState::fraction : power ? NumberState::exponent : NumberState::none;
    case NumberState::exponent:
        if (byte == '+' || byte == '-') {
            return NumberState::exponentSign;
        }
        [[fallthrough]];
    case NumberState::exponentSign:
    case NumberState::exponentDigits:
        return isDigit(byte) ? NumberState::exponentDigits : NumberState::none;
    case NumberState::none:
        break;
    }
    return NumberState::none;
}

bool Stream::isWhole(NumberState state) {
    return state == NumberState::zero || state == NumberState::integer || state == NumberState::fraction ||
           state == NumberState::exponentDigits;
}

void Stream::accept(std::uint8_t unit) {
    const char byte = static_cast<char>(unit);
    if (invalid_) {
        return;
    }
    if (inString_) {
        acceptInString(byte);
        return;
    }
    if (numberState_ != NumberState::none) {
        const NumberState next = nextNumberState(numberState_, byte);
        if (next != NumberState::none) {
            numberState_ = next;
            retain({&byte, 1});
            return;
        }
        finishNumber();
        if (invalid_) {
            return;
        }
    }
    if (literal_ != Literal::none) {
        acceptLiteral(byte);
    } else if (byte != ' ' && byte != '\t' && byte != '\r') {
        acceptStructure(byte);
    }
}

void Stream::acceptInString(char byte) {
    retain({&byte, 1});
    if (unicodeDigits_ > 0) {
        --unicodeDigits_;
        invalid_ = !isHexDigit(byte);
    } else if (escaped_) {
        escaped_ = false;
        unicodeDigits_ = byte == 'u' ? 4 : 0;
        constexpr std::string_view escapes = "\"\\/bfnrtu";
        invalid_ = escapes.find(byte) == std::string_view::npos;
    } else if (byte == '"') {
        finishString({token_.data(), tokenLength_});
    } else if (byte == '\\') {
        escaped_ = true;
    } else {
        invalid_ = isControl(byte);
    }
}

void Stream::acceptLiteral(char byte) {
    const std::string_view text = textOf(literal_);
    if (byte != text[literalIndex_]) {
        fail();
    } else if (++literalIndex_ == text.size()) {
        literal_ = Literal::none;
        literalIndex_ = 0;
    }
}

void Stream::acceptStructure(char byte) {
    if (!started_) {
        if (byte != '{') {
            return fail();
        }
        started_ = true;
        return push(State::firstKey, Path::root);
    }
    if (depth_ == 0) {
        return fail();
    }
    Frame& frame = top();
    switch (frame.state) {
    case State::firstKey:
    case State::key:
        if (byte == '"') {
            beginKey();
            retain("\"");
        } else if (byte == '}' && frame.state == State::firstKey) {
            pop();
        } else {
            fail();
        }
        return;
    case State::colon:
        byte == ':' ? void(frame.state = State::value) : fail();
        return;
    case State::objectComma:
        byte == ',' ? void(frame.state = State::key) : byte == '}' ? pop() : fail();
        return;
    case State::arrayComma:
        byte == ',' ? void(frame.state = State::element) : byte == ']' ? pop() : fail();
        return;
    case State::firstElement:
        if (byte == ']') {
            return pop();
        }
        [[fallthrough]];
    case State::value:
    case State::element:
        beginValue(byte);
    }
}

void Stream::beginValue(char byte) {
    const Path path = beginsValue(top());
    switch (byte) {
    case '{':
    case '[':
        return openContainer(byte, path);
    case '"':
        beginString(path);
        return retain("\"");
    case 't':
    case 'f':
    case 'n':
        literal_ = literalOf(byte);
        literalIndex_ = 1;
        return;
    default:
        if (byte != '-' && !isDigit(byte)) {
            return fail();
        }
        beginNumber(path, firstNumberState(byte));
        retain({&byte, 1});
    }
}

void Stream::beginToken(Path path, std::size_t limit) {
    field_ = path;
    tokenLimit_ = limit;
}

void Stream::beginKey() {
    // The colon is what comes next; until the key has ended no other byte is read as structure.
    top().state = State::colon;
    inString_ = true;
    if (top().path != Path::none) {
        beginToken(top().path, keyLimit);
        stringIsKey_ = true;
    }
}

void Stream::beginString(Path path) {
    inString_ = true;
    if (fieldOf(path)) {
        beginToken(path, stringLimit);
    }
}

void Stream::beginNumber(Path path, NumberState state) {
    numberState_ = state;
    if (fieldOf(path)) {
        beginToken(path, numberLimit);
    }
}

void Stream::retain(std::string_view bytes) {
    if (tokenLimit_ == 0 || tokenOverflow_) {
        return;
    }
    if (bytes.size() > tokenLimit_ - tokenLength_) {
        // Dropped whole: a value that was cut short would be a false one.
        tokenOverflow_ = true;
        tokenLength_ = 0;
        return;
    }
    std::copy(bytes.begin(), bytes.end(), token_.begin() + static_cast<std::ptrdiff_t>(tokenLength_));
    tokenLength_ += bytes.size();
}

void Stream::endToken() {
    field_ = Path::none;
    tokenLimit_ = 0;
    tokenLength_ = 0;
    tokenOverflow_ = false;
    stringIsKey_ = false;
}

void Stream::finishString(std::string_view token) {
    inString_ = false;
    if (tokenLimit_ > 0) {
        stringIsKey_ ? finishKey(token) : finishStringValue(token);
        endToken();
    }
}

void Stream::finishKey(std::string_view token) {
    Frame& frame = top();
    frame.key = Path::none;
    if (tokenOverflow_) {
        return;
    }
    const std::string_view inner = withoutQuotes(token);
    frame.key = pathBelow(frame.path, inner);
    // Every name of interest is plain, so a key that is no name as it stands can only become one if it has
    // escapes.
    if (frame.key == Path::none && inner.find('\\') != std::string_view::npos) {
        const auto text = decoded(token);
        frame.key = text ? pathBelow(frame.path, *text) : Path::none;
    }
}

void Stream::finishStringValue(std::string_view token) {
    const auto field = fieldOf(field_);
    if (tokenOverflow_ || !field) {
        return;
    }
    const std::string_view inner = withoutQuotes(token);
    if (isPlain(inner)) {
        values_.set(*field, Value::Kind::string, inner);
    } else if (const auto text = decoded(token)) {
        values_.set(*field, Value::Kind::string, *text);
    }
}

void Stream::finishNumber() {
    const NumberState state = numberState_;
    numberState_ = NumberState::none;
    if (state == NumberState::none || invalid_) {
        return;
    }
    if (!isWhole(state)) {
        return fail();
    }
    if (tokenLimit_ == 0) {
        return;
    }
    if (const auto field = fieldOf(field_); field && !tokenOverflow_) {
        values_.set(*field, Value::Kind::number, {token_.data(), tokenLength_});
    }
    endToken();
}

bool Stream::isComplete() const {
    return !invalid_ && started_ && depth_ == 0 && !inString_ && numberState_ == NumberState::none &&
           literal_ == Literal::none;
}

void Stream::reset() {
    depth_ = 0;
    endToken();
    unicodeDigits_ = 0;
    literalIndex_ = 0;
    isEmpty = true;
    started_ = invalid_ = inString_ = escaped_ = false;
    numberState_ = NumberState::none;
    literal_ = Literal::none;
    values_.clear();
}

bool operator==(const Stream& left, const Stream& right) {
    if (left.isEmpty != right.isEmpty || left.invalid_ != right.invalid_) {
        return false;
    }
    if (left.invalid_) {
        return true;
    }
    const auto flags = [](const Stream& one) {
        return std::tuple(one.depth_, one.tokenLength_, one.tokenLimit_, one.unicodeDigits_,
                          one.literalIndex_, one.started_, one.inString_, one.stringIsKey_, one.escaped_,
                          one.tokenOverflow_, one.numberState_, one.literal_, one.field_);
    };
    return flags(left) == flags(right) && left.values_ == right.values_ &&
           std::equal(left.stack_.begin(), left.stack_.begin() + static_cast<std::ptrdiff_t>(left.depth_),
                      right.stack_.begin()) &&
           std::equal(left.token_.begin(),
                      left.token_.begin() + static_cast<std::ptrdiff_t>(left.tokenLength_),
                      right.token_.begin());
}

} // namespace FellowCore::PumpUsageJSON
