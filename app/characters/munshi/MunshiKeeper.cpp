#include "app/characters/munshi/MunshiKeeper.h"

#include "core/base/Json.h"
#include "core/base/WholeFile.h"

#include <QCoreApplication>

#include <utility>

namespace DeskSprites {

using FellowCore::MunshiStore;
using Kind = MunshiAnswer::Kind;

namespace {

MunshiAnswer opened(FellowCore::FileOperations& files, const MunshiStore& store, FellowCore::Instant now,
                    const FellowCore::Calendar& calendar) {
    try {
        FellowCore::makeFolderOf(files, store.url());
    } catch (const FellowCore::FileError&) {
        // The first save meets the same obstacle, and tells.
    }
    FellowCore::OpenedLedger found = store.open(now, calendar);
    return {Kind::opened, std::move(found.ledger), std::move(found.base), {}, found.trouble.value_or("")};
}

MunshiAnswer looked(const MunshiStore& store, const MunshiWork& work) {
    try {
        auto held = store.held();
        if (!held || *held == work.base) {
            return {};
        }
        FellowCore::MunshiMerge merged =
            FellowCore::mergeLedgers(work.base, work.mine, *held, work.now, work.calendar);
        return {Kind::merged, std::move(merged.ledger), std::move(*held), std::move(merged.choices)};
    } catch (const FellowCore::FileError&) {
    } catch (const FellowCore::JsonError&) {
    }
    // Half written, perhaps, by a program that does not replace files whole. What is wrong for good is dealt
    // with by the next save, which loses neither.
    return {};
}

MunshiAnswer saved(const MunshiStore& store, const MunshiWork& work) {
    try {
        auto result = store.merge(work.mine, work.base, work.now, work.calendar);
        if (!result) {
            return {.kind = Kind::busy};
        }
        std::string sentence;
        if (result->preserved) {
            sentence = "The ledger's file could not be understood and was moved to " +
                       result->preserved->string() + ".";
        }
        return {Kind::saved, result->ledger, result->ledger, std::move(result->choices), std::move(sentence)};
    } catch (const FellowCore::FileError& error) {
        return {.kind = Kind::failed, .sentence = error.what()};
    }
}

} // namespace

MunshiKeeper::MunshiKeeper(FellowCore::FileOperations& files, std::filesystem::path url)
    : files_(files), store_(files, std::move(url)), queue_("munshi-ledger") {}

MunshiKeeper::~MunshiKeeper() = default;

void MunshiKeeper::open(FellowCore::Instant now, const FellowCore::Calendar& calendar) {
    start([this, now, calendar] { return opened(files_, store_, now, calendar); });
}

void MunshiKeeper::look(MunshiWork work) {
    start([this, work = std::move(work)] { return looked(store_, work); });
}

void MunshiKeeper::save(MunshiWork work) {
    start([this, work = std::move(work)] { return saved(store_, work); });
}

void MunshiKeeper::start(std::function<MunshiAnswer()> work) {
    working_ = true;
    queue_.post([this, work = std::move(work)] {
        MunshiAnswer answer;
        try {
            answer = work();
        } catch (const std::exception& error) {
            answer = {.kind = Kind::failed, .sentence = error.what()};
        }
        {
            const std::lock_guard lock(mutex_);
            answer_ = std::move(answer);
        }
        QMetaObject::invokeMethod(
            &context_, [this] { deliver(); }, Qt::QueuedConnection);
    });
}

void MunshiKeeper::deliver() {
    std::optional<MunshiAnswer> answer;
    {
        const std::lock_guard lock(mutex_);
        answer = std::exchange(answer_, std::nullopt);
    }
    if (answer) {
        working_ = false;
        onAnswer(std::move(*answer));
    }
}

void MunshiKeeper::finish() {
    queue_.drain();
    deliver();
}

} // namespace DeskSprites
