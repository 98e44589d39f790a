#pragma once

#include "app/characters/munshi/MunshiAbility.h"
#include "app/characters/munshi/MunshiPanel.h"
#include "app/desktop/ShortcutBoard.h"
#include "core/ledger/MunshiStore.h"
#include "platform/image/PngDecoder.h"
#include "tests/app/AppHarness.h"
#include "tests/app/QuietCommands.h"

namespace MunshiHarness {

using namespace AppHarness;
using FellowCore::Calendar;
using FellowCore::MunshiItem;
using FellowCore::MunshiLedger;
using FellowCore::MunshiStore;

/// The clock of the tests begins on this day, so many seconds before its end in UTC.
inline constexpr const char* firstDay = "2026-05-09";
inline constexpr const char* secondDay = "2026-05-10";
inline constexpr double untilMidnight = 64000;

/// Lines as "[ ] a|[x] b|- c".
inline std::string lines(const std::vector<MunshiItem>& items) {
    std::string all;
    for (const MunshiItem& item : items) {
        all += (all.empty() ? "" : "|") +
               std::string(item.kind == MunshiItem::Kind::note ? "- "
                           : item.done                         ? "[x] "
                                                               : "[ ] ") +
               item.text;
    }
    return all;
}

/// The ledger's file as another program sees it.
class OtherProgram {
public:
    explicit OtherProgram(Desk& desk) : desk_(desk), store_(files_, desk.folders.ledgerFile()) {}

    std::string lines() const {
        const auto held = store_.held();
        return held ? MunshiHarness::lines(held->today) : "no file";
    }
    MunshiLedger held() const { return store_.held().value_or(MunshiLedger(now(), Calendar::utc())); }
    void change(const std::function<void(MunshiLedger&)>& change) {
        const auto changed = [&](const std::optional<MunshiLedger>& held) {
            MunshiLedger ledger = held.value_or(MunshiLedger(now(), Calendar::utc()));
            change(ledger);
            return ledger;
        };
        // The program under test holds the lock for as long as one save takes.
        EXPECT_TRUE(waitUntil([&] { return store_.update(changed).has_value(); }));
    }
    void add(const char* text) {
        change(
            [&](MunshiLedger& ledger) { ledger.add(text, now(), Calendar::utc(), FellowCore::randomUuid); });
    }
    FellowCore::Instant now() const { return desk_.system.time.wall(); }
    const std::filesystem::path& url() const { return store_.url(); }

private:
    Desk& desk_;
    FellowCore::PosixFileOperations files_;
    MunshiStore store_;
};

/// A book on a desktop of its own, and what it told.
struct BookDesk {
    Desk desk;
    OtherProgram other{desk};
    Calendar calendar = Calendar::utc();
    Log told;
    std::unique_ptr<MunshiBook> book;

    BookDesk() { make(); }
    void make() {
        using std::chrono::milliseconds;
        book = std::make_unique<MunshiBook>(
            desk.services, [this] { return calendar; },
            MunshiBook::Patience{
                .busy = milliseconds(10), .first = milliseconds(50), .longest = milliseconds(100)});
        QObject::connect(book.get(), &MunshiBook::told,
                         [this](const QString& sentence) { told.push_back(sentence.toStdString()); });
    }
    bool opened() {
        book->open();
        return waitUntil([this] { return book->isRead(); });
    }
    std::string today() const { return lines(book->ledger().today); }
    const MunshiItem& item(const char* text) const {
        const auto& all = book->ledger().today;
        const auto found = std::ranges::find(all, text, &MunshiItem::text);
        return found == all.end() ? throw std::runtime_error(std::string("no line ") + text) : *found;
    }
    bool filed(const std::string& wanted) {
        waitUntil([&] { return other.lines() == wanted; });
        EXPECT_EQ(other.lines(), wanted);
        return other.lines() == wanted;
    }
    void diskIsFull(bool full) {
        desk.files.code = ENOSPC;
        desk.files.failures = std::numeric_limits<int>::max() / 2;
        desk.files.failAt = full ? 1 : 0;
    }
};

/// Munshi on a desktop, with what he asked of the program in `log`.
class MunshiDesk {
public:
    Desk desk;
    OtherProgram other{desk};
    Log log;
    std::unique_ptr<ManifestCharacterController> munshi;
    MunshiAbility* ability = nullptr;

    MunshiDesk() {
        site.tell = [this](const QString& sentence) { log.push_back(sentence.toStdString()); };
        site.obstacles = [](const DesktopCharacter&) { return std::vector<FellowCore::Rect>{}; };
        site.dismissActions = [] {};
        commands.onBringOut = [this] { munshi->activate(); };
        const auto folder = std::filesystem::path(DESKFELLOW_DATA) / "characters" / "munshi";
        const auto manifest =
            FellowCore::CharacterManifest::fromJson(TestSupport::bytesOf(folder / "manifest.json"));
        munshi = std::make_unique<ManifestCharacterController>(
            Companion{manifest, std::make_shared<const FellowCore::ManifestCharacter>(manifest, folder,
                                                                                      Platform::decodePng)},
            desk.services);
        auto made = std::make_unique<MunshiAbility>(*munshi, site, [] { return Calendar::utc(); });
        ability = made.get();
        munshi->setAbility(std::move(made));
    }
    ~MunshiDesk() { munshi.reset(); }

    MunshiBook& book() { return ability->book(); }
    std::string today() { return lines(book().ledger().today); }
    /// Munshi stands, and has read the ledger.
    bool standing() {
        munshi->prepareForActivation();
        munshi->activate();
        return waitUntil([this] { return book().isRead(); });
    }
    /// Presses one of his quick actions.
    void press(const char* id) {
        for (const QuickAction& action : munshi->presentation().actions) {
            if (action.id == QString::fromUtf8(id)) {
                action.onPress();
                return;
            }
        }
        ADD_FAILURE() << "no action " << id;
    }

    QuietCommands commands;
    ShortcutBoard shortcuts{desk.preferences, desk.system.shortcuts()};
    CharacterSite site{desk.services, commands, shortcuts, DESKFELLOW_DATA, {}, {}, {}, {}, {}, {}};
};

} // namespace MunshiHarness
