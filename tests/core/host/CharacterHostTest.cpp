#include "core/host/CharacterHost.h"
#include "core/host/CharacterLifecycle.h"

#include <gmock/gmock.h>

#include <memory>

namespace FellowCore {
namespace {

/// A host of five characters a to e, of which e is locked, and everything its runtimes were told: "+a" for
/// prepare and activate in that order, "-a" for deactivate.
class CharacterHostTest : public ::testing::Test {
protected:
    CharacterHostTest() {
        for (const std::string id : {"a", "b", "c", "d", "e"}) {
            lifecycles_[id] = std::make_unique<CharacterLifecycle>([this, id] { told_ += " (" + id + ")"; },
                                                                   [this, id] { told_ += "+" + id; },
                                                                   [this, id] { told_ += " -" + id; });
        }
        CharacterHost::Runtimes runtimes;
        for (const auto& [id, lifecycle] : lifecycles_) {
            runtimes[id] = lifecycle.get();
        }
        host_ = std::make_unique<CharacterHost>(runtimes, std::set<std::string>{"a", "b", "c", "d", "ghost"});
    }

    void start(const std::vector<std::string>& ids, const std::string& focused) {
        host_->restore(OnScreenSet(ids), focused);
        told_.clear();
    }

    /// What the runtimes were told since the last look, and how the host stands: "told | on screen | active |
    /// seen".
    std::string state() {
        std::string text = std::exchange(told_, "") + " |";
        for (const std::string& id : host_->onScreen().ids()) {
            text += " " + id;
        }
        return text + " | " + host_->activeID().value_or("nobody") +
               (host_->isVisible() ? " | seen" : " | hidden");
    }

    std::map<std::string, std::unique_ptr<CharacterLifecycle>> lifecycles_;
    std::string told_;
    std::unique_ptr<CharacterHost> host_;
};

TEST_F(CharacterHostTest, StartsEmptyAndStaysHiddenWithNobody) {
    EXPECT_EQ(state(), " | | nobody | hidden");
    host_->setVisible(true);
    EXPECT_EQ(state(), " | | nobody | hidden");
    EXPECT_EQ(host_->available(), (std::set<std::string>{"a", "b", "c", "d"}))
        << "the locked and the unknown are not";
}

TEST_F(CharacterHostTest, RestoresInOrderAndPreparesBeforeShowing) {
    host_->restore(OnScreenSet({"c", "e", "a"}), "c");
    EXPECT_EQ(state(), " (c)+c (a)+a | c a | c | seen");
    host_->restore(OnScreenSet({"b", "d"}), "c");
    EXPECT_EQ(state(), " -c -a (b)+b (d)+d | b d | d | seen")
        << "the old ones leave; a focus that is gone is the last";
    host_->restore(OnScreenSet({"e"}), "e");
    EXPECT_EQ(state(), " -b -d | | nobody | hidden");
}

TEST_F(CharacterHostTest, AddsWhoMayCome) {
    start({"a", "b"}, "a");
    EXPECT_FALSE(host_->add("e")) << "locked";
    EXPECT_FALSE(host_->add("ghost")) << "unlocked, but without a runtime";
    EXPECT_FALSE(host_->add("b")) << "there already";
    EXPECT_EQ(state(), " | a b | a | seen");
    EXPECT_TRUE(host_->add("c"));
    EXPECT_FALSE(host_->add("d")) << "full";
    EXPECT_EQ(state(), " (c)+c | a b c | c | seen");
}

TEST_F(CharacterHostTest, AddsInSilenceWhileHidden) {
    start({"a"}, "a");
    host_->setVisible(false);
    EXPECT_TRUE(host_->add("b"));
    EXPECT_EQ(state(), " -a | a b | b | hidden");
    host_->setVisible(true);
    EXPECT_EQ(state(), " (a)+a (b)+b | a b | b | seen");
    host_->setVisible(true);
    EXPECT_EQ(state(), " | a b | b | seen") << "nothing twice";
}

TEST_F(CharacterHostTest, RemovesAndHandsTheFocusToTheLast) {
    start({"a", "b", "c"}, "a");
    EXPECT_FALSE(host_->remove("d"));
    EXPECT_TRUE(host_->remove("a"));
    EXPECT_EQ(state(), " -a | b c | c | seen");
    EXPECT_TRUE(host_->remove("b"));
    EXPECT_EQ(state(), " -b | c | c | seen") << "the focus stays with who has it";
    EXPECT_TRUE(host_->remove(*host_->activeID())) << "the host's own text as the argument";
    EXPECT_EQ(state(), " -c | | nobody | hidden");
    EXPECT_TRUE(host_->select("b"));
    EXPECT_EQ(state(), " (b)+b | b | b | seen") << "choosing one shows it again";
}

TEST_F(CharacterHostTest, SwapsTheOldOutBeforeTheNewIn) {
    start({"a", "b"}, "b");
    EXPECT_TRUE(host_->swap("a", "c"));
    EXPECT_EQ(state(), " -a (c)+c | c b | c | seen");
    EXPECT_TRUE(host_->swap("b", "b"));
    EXPECT_EQ(state(), " | c b | b | seen") << "itself: only the focus moves";
    EXPECT_FALSE(host_->swap("b", "c")) << "stands elsewhere";
    EXPECT_FALSE(host_->swap("b", "e")) << "locked";
    EXPECT_FALSE(host_->swap("a", "d")) << "not on screen";
    EXPECT_EQ(state(), " | c b | b | seen");
}

TEST_F(CharacterHostTest, SelectsByFocusSwapOrAdd) {
    EXPECT_FALSE(host_->select("e"));
    EXPECT_TRUE(host_->select("a"));
    EXPECT_EQ(state(), " (a)+a | a | a | seen") << "nobody is active: added";
    EXPECT_TRUE(host_->select("b"));
    EXPECT_EQ(state(), " -a (b)+b | b | b | seen") << "takes the active one's place";
    EXPECT_TRUE(host_->add("c"));
    host_->setVisible(false);
    told_.clear();
    EXPECT_TRUE(host_->select("b"));
    EXPECT_EQ(state(), " (b)+b (c)+c | b c | b | seen") << "choosing while hidden shows the whole set";
    host_->setVisible(false);
    told_.clear();
    EXPECT_TRUE(host_->select("d"));
    EXPECT_EQ(state(), " (d)+d (c)+c | d c | d | seen") << "the one that was swapped out was not shown";
}

TEST_F(CharacterHostTest, FocusesOnlyWhoIsThere) {
    start({"a", "b"}, "b");
    EXPECT_TRUE(host_->focus("a"));
    EXPECT_FALSE(host_->focus("c"));
    EXPECT_EQ(state(), " | a b | a | seen");
}

TEST_F(CharacterHostTest, TakesAwayWhatIsLockedAndBringsNothingBack) {
    start({"a", "b", "c"}, "b");
    host_->updateUnlocked({"a", "c"});
    EXPECT_EQ(state(), " -b | a c | c | seen");
    host_->updateUnlocked({"a", "b", "c"});
    EXPECT_EQ(state(), " | a c | c | seen");
    host_->updateUnlocked({});
    EXPECT_EQ(state(), " -a -c | | nobody | hidden");
}

TEST_F(CharacterHostTest, ShutdownHidesOnceAndKeepsTheSet) {
    start({"a", "b"}, "b");
    host_->shutdown();
    host_->shutdown();
    EXPECT_EQ(state(), " -a -b | a b | b | hidden");
}

} // namespace
} // namespace FellowCore
