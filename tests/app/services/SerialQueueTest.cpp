#include "app/services/SerialQueue.h"

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <latch>
#include <memory>
#include <numeric>
#include <thread>
#include <vector>

namespace DeskSprites {
namespace {

TEST(SerialQueueTest, RunsEverythingInOrderOnAThreadOfItsOwn) {
    SerialQueue queue("a name longer than the system takes");
    queue.drain(); // nothing was ever posted
    std::vector<int> order;
    std::thread::id ranOn;
    for (int i = 0; i < 500; ++i) {
        queue.post([&order, &ranOn, i] {
            order.push_back(i);
            ranOn = std::this_thread::get_id();
        });
    }
    queue.drain();
    std::vector<int> expected(500);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(order, expected);
    EXPECT_NE(ranOn, std::this_thread::get_id());
}

TEST(SerialQueueTest, DrainWaitsForWorkThatHasBegunAndForWhatItHolds) {
    SerialQueue queue("test");
    std::latch begun(1);
    std::latch mayEnd(1);
    auto held = std::make_shared<int>(7);
    const std::weak_ptr<int> watched = held;
    queue.post([&begun, &mayEnd, kept = std::move(held)] {
        begun.count_down();
        mayEnd.wait();
    });
    begun.wait(); // the list is empty now, yet the work is not done
    std::atomic<bool> drained = false;
    std::thread waiting([&] {
        queue.drain();
        EXPECT_TRUE(watched.expired()) << "what the work owns must be gone when drain returns";
        drained = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(drained);
    mayEnd.count_down();
    waiting.join();
}

TEST(SerialQueueTest, TakesWorkFromAnyThreadItsOwnTooAndTheEndFinishesIt) {
    int ran = 0; // touched by the queue alone
    {
        SerialQueue queue("test");
        std::vector<std::thread> posters;
        for (int poster = 0; poster < 4; ++poster) {
            posters.emplace_back([&queue, &ran] {
                for (int i = 0; i < 100; ++i) {
                    queue.post([&queue, &ran] {
                        ++ran;
                        queue.post([&ran] { ++ran; });
                    });
                }
                queue.drain();
            });
        }
        for (std::thread& poster : posters) {
            poster.join();
        }
        queue.post([&ran] { ++ran; });
    }
    EXPECT_EQ(ran, 801);
}

} // namespace
} // namespace DeskSprites
