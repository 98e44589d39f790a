#pragma once

#include "core/base/FileOperations.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <system_error>

namespace TestSupport {

/// The real file operations, some of which fail on purpose. Calls are counted from 1; `close` cannot fail and
/// is not counted.
class FailingFileOperations final : public FellowCore::FileOperations {
public:
    int failAt = 0;   ///< the call that fails; 0 for none
    int failures = 1; ///< how many calls fail from there on
    int code = EIO;   ///< what they fail with
    std::size_t atOnce =
        std::numeric_limits<std::size_t>::max(); ///< bytes that one read or write moves at most
    bool flushes = true; ///< whether flushing reaches the device, which many files make slow
    int calls = 0;       ///< how many were made
    std::string failed;  ///< the last call that failed
    std::function<void(std::string_view call)> onCall = {}; ///< told of every call before it is made
    std::size_t bytesRead = 0;                              ///< by `readAt`

    int openForReading(const std::filesystem::path& path) override {
        count("openForReading");
        return real_.openForReading(path);
    }
    int createExclusively(const std::filesystem::path& path, unsigned mode) override {
        count("createExclusively");
        return real_.createExclusively(path, mode);
    }
    std::size_t read(int file, std::span<std::byte> into) override {
        count("read");
        return real_.read(file, into.first(std::min(into.size(), atOnce)));
    }
    std::size_t readAt(int file, std::uintmax_t offset, std::span<std::byte> into) override {
        count("readAt");
        const std::size_t length = real_.readAt(file, offset, into.first(std::min(into.size(), atOnce)));
        bytesRead += length;
        return length;
    }
    std::size_t write(int file, std::span<const std::byte> from) override {
        count("write");
        return real_.write(file, from.first(std::min(from.size(), atOnce)));
    }
    void flush(int file) override {
        count("flush");
        if (flushes) {
            real_.flush(file);
        }
    }
    void flushFolder(const std::filesystem::path& folder) override {
        count("flushFolder");
        if (flushes) {
            real_.flushFolder(folder);
        }
    }
    void close(int file) noexcept override { real_.close(file); }
    std::uintmax_t size(int file) override {
        count("size");
        return real_.size(file);
    }
    void rename(const std::filesystem::path& from, const std::filesystem::path& to) override {
        count("rename");
        real_.rename(from, to);
    }
    void remove(const std::filesystem::path& path) override {
        count("remove");
        real_.remove(path);
    }
    void makeFolders(const std::filesystem::path& path) override {
        count("makeFolders");
        real_.makeFolders(path);
    }
    std::optional<unsigned> mode(const std::filesystem::path& path) override {
        count("mode");
        return real_.mode(path);
    }
    std::optional<FellowCore::FileStatus> status(const std::filesystem::path& path) override {
        count("status");
        return real_.status(path);
    }
    void list(const std::filesystem::path& folder,
              const std::function<void(std::string_view, const FellowCore::FileStatus&)>& onEntry) override {
        count("list");
        real_.list(folder, onEntry);
    }
    std::filesystem::path resolved(const std::filesystem::path& path) override {
        count("resolved");
        return real_.resolved(path);
    }
    std::optional<int> tryLock(const std::filesystem::path& path) override {
        count("tryLock");
        return real_.tryLock(path);
    }

private:
    void count(const char* call) {
        ++calls;
        if (onCall) {
            onCall(call);
        }
        if (failAt > 0 && calls >= failAt && calls - failAt < failures) {
            failed = call;
            throw std::system_error(code, std::generic_category(), call);
        }
    }

    FellowCore::PosixFileOperations real_;
};

} // namespace TestSupport
