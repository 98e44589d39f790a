#pragma once

#include "core/base/Calendar.h"
#include "core/base/FileOperations.h"
#include "core/ledger/MunshiLedger.h"
#include "core/ledger/MunshiMerge.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// What a program finds when it opens the ledger.
struct OpenedLedger {
    /// What to work on: turned over to today, fresh when the file gave none.
    MunshiLedger ledger;
    /// What the file holds, for `MunshiStore::merge` to compare with; an empty ledger when it gave none.
    MunshiLedger base;
    /// One sentence when a file stands there that could not be used.
    std::optional<std::string> trouble = std::nullopt;
};

/// What was written beside others.
struct SavedLedger {
    MunshiLedger ledger; ///< what the file holds now, which is the next `base`
    std::vector<MunshiMergeChoice> choices = {};
    /// Where a file that could not be understood went.
    std::optional<std::filesystem::path> preserved = std::nullopt;
};

/// Keeps the ledger in a file: one JSON object, pretty-printed with sorted keys, dates in ISO 8601 to the
/// second.
///
/// Everything but the static functions blocks. A file that cannot be understood is moved aside and never
/// overwritten; one that cannot be read is left alone and nothing is saved over it.
class MunshiStore {
public:
    static constexpr std::size_t sizeLimit = 64'000'000; ///< bytes; a larger file cannot be understood

    /// `url` is the file, `SupportFolders::ledgerFile()` usually. `files` must outlive the store.
    MunshiStore(FileOperations& files, std::filesystem::path url);

    /// Makes what the file shall hold of what it holds; nothing is held where no file stands.
    using Change = std::function<MunshiLedger(const std::optional<MunshiLedger>& held)>;

    const std::filesystem::path& url() const { return url_; }

    /// The saved ledger turned over to today (which is not saved by this), or a fresh one. Never fails.
    MunshiLedger load(Instant now, const Calendar& calendar) const;
    /// The same, with what else a program wants to know that goes on working beside others. Never fails.
    OpenedLedger open(Instant now, const Calendar& calendar) const;
    /// Replaces the file whole, whatever another program has written meanwhile; makes the folder when it is
    /// missing. Throws `FileError`; the file that stood there stands then, or was moved aside as corrupt.
    void save(const MunshiLedger& ledger) const;
    /// Saves `mine` beside other programs: under a lock that they take too, and merged with what the file
    /// holds when that is no longer `base`, looked at once more just before it is replaced. Nothing is
    /// written, and nothing returned, while another program is saving: try again a moment later. Throws
    /// `FileError`.
    std::optional<SavedLedger> merge(const MunshiLedger& mine, const MunshiLedger& base, Instant now,
                                     const Calendar& calendar) const;
    /// Saves what `change` makes of the file, on the same terms. It may be asked more than once, and what it
    /// throws passes through with nothing written.
    std::optional<SavedLedger> update(const Change& change) const;
    /// What the file holds, as it stands; nothing when there is none. Changes nothing. Throws `FileError` and
    /// `JsonError`.
    std::optional<MunshiLedger> held() const;

    /// Moves the file to its name with ".corrupt" behind it, and a fresh UUID behind that when the name is
    /// taken. Returns where it went. Throws `FileError`.
    std::filesystem::path preserveCorruptFile() const;

    /// The file's text for a ledger. Pure; an instant that no date can express is drawn into the years 0 to
    /// 9999.
    static std::string encoded(const MunshiLedger& ledger);
    /// The ledger a text holds. Lines that are too long or not one line are bounded, check marks that
    /// contradict themselves are put right, and items that share an identity get one of their own. Throws
    /// `JsonError`.
    static MunshiLedger decoded(std::string_view text);
    /// What `decoded` makes of what `encoded` makes of a ledger: its dates cut to whole seconds.
    static MunshiLedger asStored(MunshiLedger ledger);

private:
    struct Found;

    std::optional<std::string> text() const;
    Found findOrPreserve() const;
    bool stillHolds(const std::optional<std::string>& text) const;
    std::optional<int> takeLock() const;
    std::string preserveUnderLock() const;
    void makeFolder() const;
    void write(const std::string& text) const;

    FileOperations& files_;
    std::filesystem::path url_;
};

} // namespace FellowCore
