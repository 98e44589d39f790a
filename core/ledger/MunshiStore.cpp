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

constexpr std::string_view lockSuffix = ".lock";

std::filesystem::path withSuffix(std::filesystem::path path, std::string_view suffix) {
    path += suffix;
    return path;
}

} // namespace

/// A file as it was found.
struct MunshiStore::Found {
    std::optional<std::string> text = std::nullopt;
    std::optional<MunshiLedger> ledger = std::nullopt;
    std::optional<std::filesystem::path> preserved = std::nullopt; ///< where it went, being corrupt
};

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
    *opened.trouble += preserveUnderLock();
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

MunshiStore::Found MunshiStore::findOrPreserve() const {
    Found found;
    try {
        found.text = text();
        if (found.text) {
            found.ledger = decoded(*found.text);
        }
        return found;
    } catch (const FileError& error) {
        if (error.kind() != FileError::Kind::tooLarge) {
            throw;
        }
    } catch (const JsonError&) {
        // What is wrong with it matters less than that it is kept; `open` tells.
    }
    return {.preserved = preserveCorruptFile()};
}

std::optional<int> MunshiStore::takeLock() const {
    return forWriting(url_, [this] { return files_.tryLock(withSuffix(url_, lockSuffix)); });
}

/// The end of a sentence about a file that could not be understood. Without the lock another program may be
/// about to replace that file with a good one, which must not be moved away.
std::string MunshiStore::preserveUnderLock() const {
    try {
        if (const auto lock = takeLock()) {
            const HeldLock held(files_, *lock);
            if (const auto preserved = findOrPreserve().preserved) {
                return " and was moved to " + preserved->string() + ".";
            }
        }
        return "; another program is dealing with it.";
    } catch (const FileError& error) {
        // Saving will try again, and refuse where that fails; until then the file is where it was.
        return std::string(" and could not be moved aside: ") + error.what();
    }
}

bool MunshiStore::stillHolds(const std::optional<std::string>& expected) const {
    try {
        return text() == expected;
    } catch (const FileError& error) {
        if (error.kind() != FileError::Kind::tooLarge) {
            throw;
        }
        return false;
    }
}

void MunshiStore::write(const std::string& text) const {
    if (text.size() > sizeLimit) {
        throw FileError(FileError::Kind::tooLarge, url_, "the ledger has grown too large to be saved");
    }
    writeWholeFile(files_, url_, text, FileMode::keep);
}

void MunshiStore::save(const MunshiLedger& ledger) const {
    makeFolder();
    findOrPreserve();
    write(encoded(ledger));
}

std::optional<SavedLedger> MunshiStore::update(const Change& change) const {
    constexpr int attempts = 5;
    makeFolder();
    const auto lock = takeLock();
    if (!lock) {
        return std::nullopt;
    }
    const HeldLock held(files_, *lock);
    std::optional<std::filesystem::path> preserved;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const Found found = findOrPreserve();
        preserved = found.preserved ? found.preserved : preserved;
        MunshiLedger next = asStored(change(found.ledger));
        if (found.ledger == next) {
            return SavedLedger{std::move(next), {}, preserved};
        }
        const std::string text = encoded(next);
        // A program that takes no lock, an editor perhaps, may have written meanwhile.
        if (stillHolds(found.text)) {
            write(text);
            return SavedLedger{std::move(next), {}, preserved};
        }
    }
    return std::nullopt;
}

std::optional<SavedLedger> MunshiStore::merge(const MunshiLedger& mine, const MunshiLedger& base, Instant now,
                                              const Calendar& calendar) const {
    std::vector<MunshiMergeChoice> choices;
    auto saved = update([&](const std::optional<MunshiLedger>& held) {
        choices.clear();
        if (!held || *held == base) {
            return mine;
        }
        MunshiMerge merged = mergeLedgers(base, asStored(mine), *held, now, calendar);
        choices = std::move(merged.choices);
        return std::move(merged.ledger);
    });
    if (saved) {
        saved->choices = std::move(choices);
    }
    return saved;
}

} // namespace FellowCore
