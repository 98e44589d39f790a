#pragma once

#include "core/base/Preferences.h"
#include "core/snake/SnakeSpeed.h"

#include <functional>
#include <string_view>

namespace FellowCore {

/// The game's settings and best score in the user's preferences. What lies outside its bounds there is forced
/// into them where it is read. The running game and the settings form may each have a store of their own over
/// the same preferences.
class SnakeStore {
public:
    static constexpr std::string_view bestKey = "snake.bestScore.v1";
    static constexpr std::string_view soundsKey = "snake.sounds.v1";
    static constexpr std::string_view speedKey = "snake.speed.v1";
    static constexpr std::string_view rampKey = "snake.rampAsEating.v1";
    static constexpr std::string_view dimKey = "snake.backdropDim.v1";
    /// What `post` is told after each change of what a store would read.
    static constexpr std::string_view preferencesChanged = "Deskfellow.SnakePreferencesChanged";

    static constexpr int highestScore = 4194304;
    static constexpr double defaultDim = 0.15;
    static constexpr double darkestDim = 0.8;

    using Post = std::function<void(std::string_view notification)>;

    /// The preferences must outlive the store. `post` carries `preferencesChanged` to whoever observes it; it
    /// may be empty.
    explicit SnakeStore(Preferences& preferences, Post post = {});

    int bestScore() const; ///< 0...highestScore
    bool sounds() const;   ///< whether the game makes sounds
    SnakeSpeed speed() const;
    bool rampAsEating() const;  ///< whether the snake gets faster as it eats
    double backdropDim() const; ///< how much the desktop is darkened, 0...darkestDim

    void setSounds(bool on);
    void setSpeed(SnakeSpeed speed);
    void setRampAsEating(bool on);
    /// What is not a number changes nothing.
    void setBackdropDim(double dim);

    /// Keeps the score if it is above the best one, and says whether it was.
    bool record(int score);
    /// There is no best score any more.
    void forgetBest();

private:
    void postIf(bool changed) const;

    Preferences& preferences_;
    Post post_;
};

} // namespace FellowCore
