#include "app/characters/munshi/MunshiBook.h"

#include "core/ledger/MunshiLine.h"

#include <QThread>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace DeskSprites {

using FellowCore::MunshiLedger;
using Kind = MunshiAnswer::Kind;

MunshiBook::MunshiBook(DesktopServices& services, LocalCalendar calendar, Patience patience)
    : services_(services), localCalendar_(std::move(calendar)), patience_(patience),
      calendar_(localCalendar_()), ledger_(services.system.clock().wall(), calendar_), base_(ledger_),
      keeper_(services.files, services.folders.ledgerFile()) {
    keeper_.onAnswer = [this](MunshiAnswer answer) { answered(std::move(answer)); };
    midnight_.setSingleShot(true);
    midnight_.setTimerType(Qt::PreciseTimer);
    connect(&midnight_, &QTimer::timeout, this, &MunshiBook::timeChanged);
    again_.setSingleShot(true);
    connect(&again_, &QTimer::timeout, this, &MunshiBook::work);
}

MunshiBook::~MunshiBook() {
    finishSaving();
    if (!isSaved()) {
        qWarning("Munshi could not save the last lines: %s", qUtf8Printable(trouble_));
    }
}

FellowCore::Instant MunshiBook::now() const {
    return services_.system.clock().wall();
}

void MunshiBook::open() {
    if (opened_) {
        return;
    }
    opened_ = true;
    timeChanges_ = std::make_unique<Platform::TimeChanges>([this] { timeChanged(); });
    armMidnight();
    work();
}

std::optional<FellowCore::Uuid> MunshiBook::add(const QString& text) {
    const bool turned = turnOver();
    const auto added = ledger_.add(text.toStdString(), now(), calendar_, FellowCore::randomUuid);
    if (added || turned) {
        edited(added ? Undo::forget : Undo::keep);
    }
    return added ? std::optional(added->id) : std::nullopt;
}

MunshiBook::Added MunshiBook::addLines(const QString& text) {
    const auto lines = FellowCore::munshiLines(text.toStdString(), mostLinesAtOnce + 1);
    Added added{.more = lines.size() > mostLinesAtOnce};
    for (const std::string& line : lines) {
        if (added.lines < mostLinesAtOnce && ledger_.add(line, now(), calendar_, FellowCore::randomUuid)) {
            ++added.lines;
        }
    }
    if (added.lines > 0) {
        edited();
    }
    return added;
}

void MunshiBook::setDone(const FellowCore::Uuid& id, bool done) {
    turnOver();
    ledger_.setDone(id, done, now());
    edited();
}

void MunshiBook::edit(const FellowCore::Uuid& id, const QString& text) {
    turnOver();
    if (!ledger_.edit(id, text.toStdString()) &&
        ledger_.add(text.toStdString(), now(), calendar_, FellowCore::randomUuid)) {
        Q_EMIT told(
            tr("The line you were writing is no longer in today's list; your words stand in a new one."));
    }
    edited();
}

void MunshiBook::remove(const FellowCore::Uuid& id) {
    turnOver();
    if (auto removed = ledger_.deleteItem(id)) {
        deleted_ = std::move(removed);
        edited(Undo::keep);
    }
}

void MunshiBook::undo() {
    if (deleted_) {
        ledger_.restore(deleted_->item, static_cast<std::int64_t>(deleted_->index));
        edited();
    }
}

void MunshiBook::move(const FellowCore::Uuid& id, std::int64_t by) {
    turnOver();
    if (ledger_.move(id, by)) {
        edited();
    }
}

void MunshiBook::setCarryOver(bool carryOver) {
    turnOver(); // the day that has passed went by the rule that held then
    ledger_.carryOver = carryOver;
    edited();
}

void MunshiBook::setKeepDays(std::optional<std::int64_t> days) {
    turnOver();
    ledger_.keepDays = days;
    edited();
}

void MunshiBook::eraseEverything() {
    ledger_.eraseEverything();
    edited();
}

void MunshiBook::edited(Undo undo) {
    ++revision_;
    if (undo == Undo::forget) {
        deleted_.reset();
    }
    Q_EMIT changed();
    work();
}

bool MunshiBook::turnOver() {
    const bool turned = ledger_.rollIfNeeded(now(), calendar_);
    revision_ += turned ? 1 : 0;
    return turned;
}

void MunshiBook::timeChanged() {
    calendar_ = localCalendar_();
    if (turnOver()) {
        Q_EMIT changed();
        work();
    }
    armMidnight();
}

void MunshiBook::armMidnight() {
    const auto next = opened_ ? calendar_.startOfNextDay(now()) : std::nullopt;
    if (!next) {
        midnight_.stop();
        return;
    }
    // A clock that stands just before midnight is given a little longer rather than asked again and again.
    const double wait = std::clamp(std::ceil((*next - now()) * 1000), 0.0, 26.0 * 60 * 60 * 1000);
    midnight_.start(static_cast<int>(wait) + 5);
}

MunshiWork MunshiBook::present() {
    sent_ = ledger_;
    sentRevision_ = revision_;
    return {ledger_, base_, now(), calendar_};
}

void MunshiBook::work() {
    if (!opened_ || keeper_.isWorking()) {
        return;
    }
    again_.stop();
    if (!read_) {
        keeper_.open(now(), calendar_);
    } else if (!isSaved()) {
        lookWanted_ = false; // saving looks too
        keeper_.save(present());
    } else if (std::exchange(lookWanted_, false)) {
        keeper_.look(present());
    }
}

void MunshiBook::answered(MunshiAnswer answer) {
    const Kind kind = answer.kind;
    switch (kind) {
    case Kind::opened:
        readFirst(std::move(answer));
        break;
    case Kind::merged:
    case Kind::saved:
        adopt(std::move(answer));
        break;
    case Kind::failed:
        failed(answer.sentence);
        break;
    case Kind::busy:
        again_.start(patience_.busy);
        break;
    case Kind::same:
        break;
    }
    if (kind != Kind::failed && kind != Kind::busy) {
        work();
    }
}

void MunshiBook::readFirst(MunshiAnswer answer) {
    read_ = true;
    const bool untouched = revision_ == 0;
    MunshiLedger fresh = base_;
    if (untouched) {
        ledger_ = std::move(answer.ledger);
    } else {
        ledger_ = FellowCore::mergeLedgers(std::move(fresh), ledger_, answer.ledger, now(), calendar_).ledger;
    }
    base_ = std::move(answer.base);
    if (ledger_ == base_) {
        savedRevision_ = revision_;
    } else {
        ++revision_; // the day was turned over, or something was written meanwhile
    }
    watchFolder();
    Q_EMIT changed();
    if (!answer.sentence.empty()) {
        Q_EMIT told(QString::fromStdString(answer.sentence));
    }
}

void MunshiBook::adopt(MunshiAnswer answer) {
    auto choices = std::move(answer.choices);
    const bool wasMerged = answer.kind == Kind::merged;
    if (revision_ == sentRevision_) {
        ledger_ = std::move(answer.ledger);
    } else {
        // Edited while the keeper was at work: from what it was given, both have gone on.
        FellowCore::MunshiMerge merged =
            FellowCore::mergeLedgers(sent_, ledger_, answer.ledger, now(), calendar_);
        ledger_ = std::move(merged.ledger);
        choices.insert(choices.end(), merged.choices.begin(), merged.choices.end());
    }
    tellChoices(choices);
    base_ = std::move(answer.base);
    if (wasMerged) {
        revision_ += ledger_ == base_ ? 0 : 1;
        savedRevision_ = ledger_ == base_ ? revision_ : savedRevision_;
    } else {
        savedRevision_ = sentRevision_;
        failures_ = 0;
        trouble_.clear();
    }
    if (!watch_ || !watch_->isWatching()) {
        watchFolder();
    }
    Q_EMIT changed();
    if (!answer.sentence.empty()) {
        Q_EMIT told(QString::fromStdString(answer.sentence));
    }
}

void MunshiBook::failed(const std::string& reason) {
    ++failures_;
    // The place is in the log for who looks after it; here it would hide the reason.
    qWarning("Munshi could not save the ledger: %s", reason.c_str());
    const QString cause = QString::fromStdString(reason).section(QStringLiteral(": "), -1);
    trouble_ = tr("Not saved yet; Munshi keeps trying. (%1)").arg(cause);
    constexpr int mostDoublings = 10;
    again_.start(
        std::min(patience_.longest, patience_.first * (1 << std::min(failures_ - 1, mostDoublings))));
    Q_EMIT changed();
}

void MunshiBook::tellChoices(const std::vector<FellowCore::MunshiMergeChoice>& choices) {
    constexpr std::size_t mostTold = 3;
    QString sentences;
    for (std::size_t index = 0; index < std::min(mostTold, choices.size()); ++index) {
        sentences +=
            (index > 0 ? QStringLiteral(" ") : QString()) + QString::fromStdString(choices[index].sentence());
    }
    if (choices.size() > mostTold) {
        sentences += tr(" The same was so with %1 more.").arg(choices.size() - mostTold);
    }
    if (!choices.empty()) {
        Q_EMIT told(sentences);
    }
}

void MunshiBook::watchFolder() {
    const std::filesystem::path& file = keeper_.url();
    watch_ = std::make_unique<Platform::FolderWatch>(
        file.parent_path(), [this, name = file.filename().string()](const std::string& changed) {
            if (changed == name || changed.empty()) {
                lookWanted_ = true;
                work();
            }
        });
}

void MunshiBook::finishSaving() {
    constexpr int attempts = 40;
    for (int attempt = 0; attempt < attempts && opened_; ++attempt) {
        work();
        if (!keeper_.isWorking()) {
            return;
        }
        const int before = failures_;
        keeper_.finish();
        if (failures_ > before) {
            return;
        }
        if (again_.isActive()) {
            QThread::msleep(static_cast<unsigned long>(patience_.busy.count()));
        }
    }
}

} // namespace DeskSprites
