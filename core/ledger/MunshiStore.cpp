#include "core/ledger/MunshiStore.h"

#include "core/base/Json.h"
#include "core/base/WholeFile.h"

#include <system_error>
#include <utility>

namespace FellowCore {

namespace {

/// Holds a lock to the end of a block.
class HeldLock {
public:
    HeldLock(FileOperations& files, int lock) : files_(files), lock_(lock) {}
    ~HeldLock() { files_.close(lock_); }
    HeldLock(const HeldLock&) = delete;
    HeldLock& operator=(const HeldLock&) = delete;

private:
    FileOperations& files_;
    int lock_;
};

/// Throws the typed error for a call that failed beside the file itself.
template <typename Call>
auto forWriting(const std::filesystem::path& path, Call call) {
    try {
        return call();
    } catch (const std::system_error& error) {
        throw FileError(FileError::Kind::notWritable, path, error.code().message());
    }
}

std::filesystem::path withSuffix(std::filesystem::path path, std::string_view suffix) {
    path += suffix;
    return path;
}

} // namespace

MunshiStore::MunshiStore(FileOperations& files, std::filesystem::path url)
    : files_(files), url_(std::move(url)) {}

MunshiLedger MunshiStore::load(Instant now, const Calendar& calendar) const {
    return open(now, calendar).ledger;
}

OpenedLedger MunshiStore::open(Instant now, const Calendar& calendar) const {
    OpenedLedger opened{MunshiLedger(now, calendar), MunshiLedger(now, calendar)};
    try {
        if (auto ledger = held()) {
            opened.base = std::move(*ledger);
            opened.ledger = opened.base;
            opened.ledger.rollIfNeeded(now, calendar);
        }
        return opened;
    } catch (const FileError& error) {
        if (error.kind() != FileError::Kind::tooLarge) {
            opened.trouble = std::string("The ledger cannot be read: ") + error.what();
            return opened;
        }
        opened.trouble = std::string("The ledger is too large");
    } catch (const JsonError& error) {
        opened.trouble = "The ledger could not be understood (" + std::string(error.what()) + ")";
    }
    try {
        *opened.trouble += " and was moved to " + preserveCorruptFile().string() + ".";
    } catch (const FileError& error) {
        // Saving will try again, and refuse where that fails; until then the file is where it was.
        *opened.trouble += " and could not be moved aside: " + std::string(error.what());
    }
    return opened;
}

std::optional<std::string> MunshiStore::text() const {
    try {
        return readWholeFile(files_, url_, sizeLimit);
    } catch (const FileError& error) {
        if (error.kind() == FileError::Kind::notFound) {
            return std::nullopt;
        }
        throw;
    }
}

std::optional<MunshiLedger> MunshiStore::held() const {
    const auto stored = text();
    return stored ? std::optional(decoded(*stored)) : std::nullopt;
}

void MunshiStore::makeFolder() const {
    forWriting(url_.parent_path(), [this] { files_.makeFolders(url_.parent_path()); });
}

std::filesystem::path MunshiStore::preserveCorruptFile() const {
    const std::filesystem::path plain = withSuffix(url_, ".corrupt");
    std::filesystem::path aside = plain;
    while (!moveToFreeName(files_, url_, aside)) {
        aside = withSuffix(plain, "." + randomUuid().text());
    }
    return aside;
}
