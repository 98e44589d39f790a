#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace FellowHook {

/// A descriptor that is closed at the end of a block; may hold none (-1).
class OpenFile {
public:
    explicit OpenFile(int file) : file_(file) {}
    ~OpenFile();
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    bool isOpen() const { return file_ >= 0; }
    int get() const { return file_; }

private:
    int file_;
};

/// Reads until the end or until more than `limit` bytes have come; what has come then is one byte more than
/// the limit. An error counts as the end.
std::string readUpTo(int file, std::size_t limit);
/// Reads and forgets the rest, up to a bound, so that whoever writes meets no closed pipe.
void discardRest(int file);
bool writeAll(int file, std::string_view bytes);
/// The bytes of a regular file; nothing when there is none or it is longer than `limit`.
std::optional<std::string> readFile(const std::string& path, std::size_t limit);
/// Makes a folder and those above it, closed to everyone else; whether it stands.
bool makeFolders(const std::string& path);
/// Makes a new file with these bytes that only its owner may read, in place of a leftover of the same name.
bool writeNewFile(const std::string& path, std::string_view bytes);

} // namespace FellowHook
