#pragma once

#include "app/characters/munshi/MunshiKeeper.h"
#include "app/desktop/DesktopServices.h"
#include "core/ledger/MunshiLedger.h"
#include "platform/FolderWatch.h"
#include "platform/TimeChanges.h"

#include <QTimer>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace DeskSprites {

/// The ledger while the program runs. Edits take effect at once and are saved in the background; what other
/// programs write into the file is merged in; the day turns over at midnight, wherever midnight is. What
/// cannot be saved stays here and is tried again until it can.
///
/// Nothing is read, watched or waited for until `open`; edits made before that, or before the file was read,
/// are merged with it.
class MunshiBook : public QObject {
    Q_OBJECT

public:
    using LocalCalendar = std::function<FellowCore::Calendar()>;
    /// Lines that one dropped text adds at most.
    static constexpr std::size_t mostLinesAtOnce = 50;
    /// How long to wait before saving is tried again.
    struct Patience {
        std::chrono::milliseconds busy{60};        ///< while another program is saving
        std::chrono::milliseconds first{5'000};    ///< after the first failure; twice as long after each more
        std::chrono::milliseconds longest{60'000}; ///< at most
    };

    MunshiBook(DesktopServices& services, LocalCalendar calendar)
        : MunshiBook(services, std::move(calendar), {}) {}
    MunshiBook(DesktopServices& services, LocalCalendar calendar, Patience patience);
    /// Saves what is not saved yet, as far as that is possible.
    ~MunshiBook() override;

    /// Begins to keep the book; further calls change nothing.
    void open();
    /// The file has been read.
    bool isRead() const { return read_; }
    const FellowCore::MunshiLedger& ledger() const { return ledger_; }
    FellowCore::Instant now() const;
    /// Why the last edits are not in the file yet, as a sentence; empty when they are, or soon will be.
    const QString& trouble() const { return trouble_; }
    /// The item that was deleted last, until the next edit.
    const std::optional<FellowCore::DeletedMunshiItem>& deleted() const { return deleted_; }

    /// Adds a task, or a note when the text begins with "-"; nothing when there is no text.
    std::optional<FellowCore::Uuid> add(const QString& text);
    struct Added {
        std::size_t lines = 0;
        bool more = false; ///< the text had more lines than are taken at once
    };
    /// Adds each line of a text.
    Added addLines(const QString& text);
    void setDone(const FellowCore::Uuid& id, bool done);
    /// Rewrites a line. One that is no longer today's is written down as a new line, and the user told.
    void edit(const FellowCore::Uuid& id, const QString& text);
    void remove(const FellowCore::Uuid& id);
    /// Puts the item deleted last back.
    void undo();
    void move(const FellowCore::Uuid& id, std::int64_t by);
    void setCarryOver(bool carryOver);
    /// History older than that goes with the next midnight; absent keeps it for ever.
    void setKeepDays(std::optional<std::int64_t> days);
    void eraseEverything();

    /// The clock, the calendar or the machine's sleep may have passed midnight: looks.
    void timeChanged();
    /// Saves at once and waits for it, as before sleep or the end. Gives up when it fails.
    void finishSaving();

Q_SIGNALS:
    /// The ledger, the trouble or what can be undone has become another.
    void changed();
    /// Something the user should know.
    void told(const QString& sentence);

private:
    enum class Undo { keep, forget };
    void edited(Undo undo = Undo::forget);
    bool turnOver();
    void armMidnight();
    void work();
    MunshiWork present();
    void answered(MunshiAnswer answer);
    void readFirst(MunshiAnswer answer);
    void adopt(MunshiAnswer answer);
    void failed(const std::string& reason);
    void tellChoices(const std::vector<FellowCore::MunshiMergeChoice>& choices);
    void watchFolder();
    bool isSaved() const { return revision_ == savedRevision_; }

    DesktopServices& services_;
    LocalCalendar localCalendar_;
    Patience patience_;
    FellowCore::Calendar calendar_;
    FellowCore::MunshiLedger ledger_;
    FellowCore::MunshiLedger base_; ///< what the file held when it was last looked at
    FellowCore::MunshiLedger sent_; ///< the ledger as it was given to the keeper
    std::uint64_t revision_ = 0;    ///< rises with each edit
    std::uint64_t sentRevision_ = 0;
    std::uint64_t savedRevision_ = 0;
    bool opened_ = false;
    bool read_ = false;
    bool lookWanted_ = false;
    int failures_ = 0; ///< in a row
    QString trouble_;
    std::optional<FellowCore::DeletedMunshiItem> deleted_;
    QTimer midnight_;
    QTimer again_; ///< runs only while something waits to be saved
    std::unique_ptr<Platform::FolderWatch> watch_;
    std::unique_ptr<Platform::TimeChanges> timeChanges_;
    MunshiKeeper keeper_;
};

} // namespace DeskSprites
