#include "core/ledger/MunshiStore.h"

#include "core/base/Json.h"
#include "tests/core/ledger/LedgerScript.h"
#include "tests/support/FailingFileOperations.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <sys/stat.h>

#include <limits>

namespace FellowCore {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using TestSupport::bytesOf;
using TestSupport::writeBytes;

// An open task that was carried, a note, a done task, and a day behind them.
LedgerScript someLedger() {
    LedgerScript script;
    script.add("old").add("milk").done("milk").on("2026-03-02").add("- note").add("bread").done("bread");
    return script;
}

// The file of that ledger with some fields changed (or removed, by null).
std::string patchedText(const char* patch) {
    Json json = Json::parse(MunshiStore::encoded(someLedger().ledger));
    json.merge_patch(Json::parse(patch));
    return json.dump();
}

// The same with fields of its first item changed.
std::string patchedItem(const char* patch) {
    Json json = Json::parse(MunshiStore::encoded(someLedger().ledger));
    json["today"][0].merge_patch(Json::parse(patch));
    return json.dump();
}

class MunshiStoreTest : public testing::Test {
protected:
    std::filesystem::path url() const { return folder_ / "munshi" / "ledger.json"; }
    std::set<std::string> names() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(url().parent_path())) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }
    MunshiLedger loaded() { return store_.load(script_.now, script_.calendar); }

    TestSupport::TemporaryFolder folder_;
    TestSupport::FailingFileOperations files_;
    MunshiStore store_{files_, url()};
    LedgerScript script_ = someLedger();
};

TEST_F(MunshiStoreTest, KeepsEveryFieldThroughTheFile) {
    script_.ledger.keepDays.reset();
    store_.save(script_.ledger);
    EXPECT_EQ(loaded(), script_.ledger);
    const std::string text = bytesOf(url());
    EXPECT_THAT(text, HasSubstr(R"(
      "createdAt": "2026-03-02T09:00:00Z",
      "day": "2026-03-02",
      "done": true,
      "doneAt": "2026-03-02T09:00:00Z",
      "id": "00000000-0000-0000-0000-000000000004",
      "kind": "task",
      "text": "bread"
    },)"));
    EXPECT_TRUE(text.starts_with("{\n  \"carryOver\": true,\n  \"currentDay\": \"2026-03-02\",\n"));
    EXPECT_EQ(text.find("keepDays"), std::string::npos);
    EXPECT_THAT(names(), ElementsAre("ledger.json"));
}

TEST_F(MunshiStoreTest, LoadingTurnsTheDayOverAndSavesNothing) {
    store_.save(script_.ledger);
    const std::string before = bytesOf(url());
    const MunshiLedger later = store_.load(at("2026-03-05T00:00:00Z"), script_.calendar);
    EXPECT_EQ(later.currentDay, "2026-03-05");
    EXPECT_EQ(later.lastGapDays, 2);
    EXPECT_EQ(bytesOf(url()), before);
    const OpenedLedger opened = store_.open(at("2026-03-05T00:00:00Z"), script_.calendar);
    EXPECT_EQ(opened.ledger, later);
    EXPECT_EQ(opened.base, script_.ledger);
    EXPECT_FALSE(opened.trouble);
}

TEST_F(MunshiStoreTest, AMissingFileIsAFreshLedgerAndLeavesNoTrace) {
    EXPECT_EQ(loaded(), MunshiLedger(script_.now, script_.calendar));
    EXPECT_TRUE(folder_.names().empty());
}

TEST_F(MunshiStoreTest, MovesACorruptFileAsideAndNeverDeletesIt) {
    writeBytes(url(), "{ half a");
    const OpenedLedger opened = store_.open(script_.now, script_.calendar);
    EXPECT_EQ(opened.ledger, MunshiLedger(script_.now, script_.calendar));
    EXPECT_THAT(opened.trouble.value_or(""), HasSubstr("ledger.json.corrupt"));
    EXPECT_EQ(bytesOf(url().string() + ".corrupt"), "{ half a");
    EXPECT_FALSE(std::filesystem::exists(url()));

    writeBytes(url(), "{ another");
    store_.save(script_.ledger);
    EXPECT_EQ(loaded(), script_.ledger);
    EXPECT_EQ(bytesOf(url().string() + ".corrupt"), "{ half a") << "the first stays what it is";
    int others = 0;
    for (const std::string& name : names()) {
        const std::string_view start = "ledger.json.corrupt.";
        if (name.starts_with(start)) {
            EXPECT_TRUE(Uuid::fromText(std::string_view(name).substr(start.size()))) << name;
            EXPECT_EQ(bytesOf(url().parent_path() / name), "{ another");
            ++others;
        }
    }
    EXPECT_EQ(others, 1);
}

TEST_F(MunshiStoreTest, TellsAFileThatIsNoLedger) {
    using Kind = JsonError::Kind;
    const struct {
        const char* fault;
        std::string text;
        Kind kind;
        const char* field;
    } cases[] = {
        {"an empty file", "", Kind::notJson, ""},
        {"a list", "[]", Kind::wrongType, ""},
        {"a field missing", patchedText(R"({"carryOver": null})"), Kind::missing, "carryOver"},
        {"no list of items", patchedText(R"({"history": {}})"), Kind::wrongType, "history"},
        {"an item that is none", patchedText(R"({"history": [7]})"), Kind::wrongType, "history[0]"},
        {"half a day", patchedText(R"({"keepDays": 0.5})"), Kind::wrongType, "keepDays"},
        {"not a number", patchedText(R"({"lastGapDays": "NaN"})"), Kind::wrongType, "lastGapDays"},
        {"a kind nobody knows", patchedItem(R"({"kind": "Task"})"), Kind::outOfRange, "today[0].kind"},
        {"an identity that is none", patchedItem(R"({"id": "7"})"), Kind::outOfRange, "today[0].id"},
        {"a day that does not exist", patchedItem(R"({"createdAt": "2026-02-30T00:00:00Z"})"),
         Kind::wrongType, "today[0].createdAt"},
        {"a date with five digits", patchedItem(R"({"createdAt": "12026-02-01T00:00:00Z"})"), Kind::wrongType,
         "today[0].createdAt"},
        {"a date as a number", patchedItem(R"({"doneAt": 800000000})"), Kind::wrongType, "today[0].doneAt"},
        {"a text that is none", patchedItem(R"({"text": ["a"]})"), Kind::wrongType, "today[0].text"},
    };
    for (const auto& row : cases) {
        try {
            MunshiStore::decoded(row.text);
            ADD_FAILURE() << row.fault << ": was accepted";
        } catch (const JsonError& error) {
            EXPECT_EQ(error.kind(), row.kind) << row.fault << ": " << error.what();
            EXPECT_EQ(error.field(), row.field) << row.fault;
        }
    }
    const std::string whole = MunshiStore::encoded(someLedger().ledger);
    for (std::size_t length = 0; length + 2 < whole.size(); ++length) {
        EXPECT_THROW(MunshiStore::decoded(std::string_view(whole).substr(0, length)), JsonError) << length;
    }
}

TEST_F(MunshiStoreTest, PutsRightWhatAFileMayHold) {
    const auto first = [](const char* patch) { return MunshiStore::decoded(patchedItem(patch)).today.at(0); };
    EXPECT_EQ(first(R"({"text": "a\nb"})").text, "a b");
    EXPECT_EQ(first((R"({"text": ")" + std::string(8'000'000, 'x') + R"("})").c_str()).text.size(), 500);
    const MunshiItem note = first(R"({"kind": "note", "done": true, "doneAt": "2026-03-02T10:00:00Z"})");
    EXPECT_FALSE(note.done || note.doneAt) << "a note that is done";
    EXPECT_FALSE(first(R"({"done": false, "doneAt": "2026-03-02T10:00:00Z"})").doneAt);
    EXPECT_EQ(first(R"({"done": true, "doneAt": null})").doneAt, at("2026-03-01T09:00:00Z"));
    EXPECT_EQ(first(R"({"createdAt": "2026-03-01T10:30:00.75+05:30"})").createdAt,
              at("2026-03-01T05:00:00Z"));
    EXPECT_EQ(MunshiStore::decoded(patchedText(R"({"keepDays": 1e30})")).keepDays, INT64_MAX);
    EXPECT_EQ(MunshiStore::decoded(patchedText(R"({"lastGapDays": -1e30})")).lastGapDays, INT64_MIN);

    MunshiLedger doubled = script_.ledger;
    doubled.history.insert(doubled.history.end(), 2000, doubled.today.at(0));
    const MunshiLedger separate = MunshiStore::decoded(MunshiStore::encoded(doubled));
    std::set<Uuid> ids;
    for (const auto* const list : {&separate.today, &separate.history}) {
        for (const MunshiItem& item : *list) {
            EXPECT_TRUE(ids.insert(item.id).second);
        }
    }
    EXPECT_EQ(separate.today, script_.ledger.today) << "the first keeps its identity";
    EXPECT_EQ(MunshiStore::decoded(MunshiStore::encoded(doubled)), separate) << "the same every time";
}

TEST_F(MunshiStoreTest, NeverWritesWhatItCouldNotRead) {
    MunshiLedger odd = script_.ledger;
    constexpr double infinite = std::numeric_limits<double>::infinity();
    for (const double seconds : {infinite, -infinite, std::numeric_limits<double>::quiet_NaN(), 1e15, 0.75}) {
        odd.today.at(0).createdAt = Instant{seconds};
        odd.today.at(1).doneAt = Instant{seconds};
        const MunshiLedger read = MunshiStore::decoded(MunshiStore::encoded(odd));
        EXPECT_EQ(read.today.at(0).createdAt, MunshiStore::asStored(odd).today.at(0).createdAt) << seconds;
        EXPECT_EQ(read, MunshiStore::asStored(MunshiStore::asStored(read))) << seconds;
    }
    odd.history.at(0).text.assign(MunshiStore::sizeLimit, 'x');
    store_.save(script_.ledger);
    EXPECT_THROW(store_.save(odd), FileError) << "larger than it would read";
    EXPECT_EQ(loaded(), script_.ledger);
}

TEST_F(MunshiStoreTest, LeavesWhatCannotBeReadOrMovedWhereItIs) {
    std::filesystem::create_directories(url() / "a folder where the file should be");
    const OpenedLedger opened = store_.open(script_.now, script_.calendar);
    EXPECT_THAT(opened.trouble.value_or(""), HasSubstr("cannot be read"));
    EXPECT_THROW(store_.save(script_.ledger), FileError);
    EXPECT_THROW(store_.merge(script_.ledger, {}, script_.now, script_.calendar), FileError);
    EXPECT_TRUE(std::filesystem::is_directory(url()));
}

TEST_F(MunshiStoreTest, ALockHeldElsewhereIsWaitedFor) {
    writeBytes(url(), "{ half a");
    const auto lock = PosixFileOperations().tryLock(url().string() + ".lock");
    ASSERT_TRUE(lock);
    EXPECT_FALSE(store_.merge(script_.ledger, {}, script_.now, script_.calendar));
    EXPECT_THAT(store_.open(script_.now, script_.calendar).trouble.value_or(""),
                HasSubstr("another program"));
    EXPECT_EQ(bytesOf(url()), "{ half a");
    PosixFileOperations().close(*lock);
    const auto saved = store_.merge(script_.ledger, {}, script_.now, script_.calendar);
    ASSERT_TRUE(saved);
    EXPECT_EQ(saved->preserved, url().string() + ".corrupt");
    EXPECT_EQ(loaded(), saved->ledger);
}

TEST_F(MunshiStoreTest, AnEditorThatSavesInTheLastMomentIsMergedToo) {
    store_.save(script_.ledger);
    LedgerScript theirs = script_;
    theirs.lastId = 100;
    theirs.add("from the editor");
    int asked = 0;
    const auto saved = store_.update([&](const std::optional<MunshiLedger>& held) {
        if (++asked == 1) {
            writeBytes(url(), MunshiStore::encoded(theirs.ledger));
        }
        MunshiLedger next = held.value();
        next.add("mine", script_.now, script_.calendar, randomUuid);
        return next;
    });
    ASSERT_TRUE(saved);
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(loaded(), saved->ledger);
    EXPECT_EQ(shown(loaded().openTasks()), "[ ] old <2026-03-01; [ ] from the editor; [ ] mine");

    const auto never = store_.update([&](const std::optional<MunshiLedger>& held) {
        theirs.add("more");
        writeBytes(url(), MunshiStore::encoded(theirs.ledger));
        MunshiLedger next = held.value();
        next.eraseEverything();
        return next;
    });
    EXPECT_FALSE(never) << "a file that never rests is not overwritten";
    EXPECT_EQ(loaded(), theirs.ledger);
}

TEST_F(MunshiStoreTest, WritesNothingWhereNothingChanged) {
    const std::string byHand = patchedText("{}");
    writeBytes(url(), byHand);
    const MunshiLedger held = store_.held().value();
    EXPECT_EQ(store_.merge(held, held, script_.now, script_.calendar)->ledger, held);
    EXPECT_EQ(bytesOf(url()), byHand) << "and leaves a file as its author laid it out";
}

TEST_F(MunshiStoreTest, EveryFailureLeavesTheOldFileOrTheNew) {
    const MunshiLedger before = script_.ledger;
    script_.add("new");
    for (const bool corrupt : {false, true}) {
        const std::string oldText = corrupt ? "{ half a" : MunshiStore::encoded(before);
        const std::string newText = MunshiStore::encoded(script_.ledger);
        int failed = 0;
        for (int call = 1;; ++call) {
            std::filesystem::remove_all(url().parent_path());
            writeBytes(url(), oldText);
            files_.calls = 0;
            files_.failAt = call;
            files_.failed.clear();
            bool told = false;
            try {
                ASSERT_TRUE(store_.merge(script_.ledger, before, script_.now, script_.calendar));
            } catch (const FileError&) {
                told = true;
                ++failed;
            }
            if (files_.failed.empty()) {
                break; // every call has failed once
            }
            const std::string aside = url().string() + ".corrupt";
            const bool moved = corrupt && std::filesystem::exists(aside) && bytesOf(aside) == oldText;
            const bool stands = std::filesystem::exists(url());
            EXPECT_TRUE(moved || (stands && (bytesOf(url()) == oldText || !corrupt))) << files_.failed;
            EXPECT_EQ(!told, stands && bytesOf(url()) == newText) << files_.failed << " " << call;
        }
        EXPECT_GT(failed, 5);
        files_.failAt = 0;
    }
}

} // namespace
} // namespace FellowCore
