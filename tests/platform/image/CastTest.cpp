#include "core/art/BuiltinCharacters.h"
#include "core/art/ManifestCharacter.h"
#include "core/base/Json.h"
#include "platform/image/PngDecoder.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <map>
#include <set>
#include <sstream>

// The pictures that are installed, loaded as the program loads them and held against the rules of the
// drawing.

namespace Platform {
namespace {

using FellowCore::BuiltinCharacters;
using FellowCore::CharacterBuildPolicy;
using FellowCore::CharacterManifest;
using FellowCore::ManifestCharacter;
using FellowCore::PixelImage;
using FellowCore::PixelSize;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Key;

namespace fs = std::filesystem;

using Colour = std::uint32_t; // 0xrrggbb

const fs::path data = DESKFELLOW_DATA;
const fs::path builtinFolder = data / "builtin";

// The cast -----------------------------------------------------------------------------------------------

/// A picture, by the name that a finding gives it.
using Pictures = std::map<std::string, PixelImage>;

/// A character as the program has it, and the pictures that it has beside its poses.
struct Member {
    std::shared_ptr<const ManifestCharacter> character;
    Pictures loose;    ///< whole figures
    Pictures overlays; ///< laid over the idle pose

    const CharacterManifest& manifest() const { return character->manifest(); }
    const PixelImage& idle() const { return *character->images().at("idle"); }
    /// The poses and the loose pictures: all that must stand on its feet.
    Pictures figures() const {
        Pictures all = loose;
        for (const auto& [pose, image] : character->images()) {
            all.emplace(pose, *image);
        }
        return all;
    }
};

std::vector<std::string> lampFiles(const std::string& prefix, const std::vector<std::string>& lamps) {
    std::vector<std::string> files;
    for (const std::string& lamp : lamps) {
        files.push_back(prefix + lamp + ".png");
    }
    return files;
}

/// Files that the program asks for by name, of the character's own size.
Pictures read(const Member& member, const std::vector<std::string>& files) {
    const auto [width, height] = member.manifest().grid;
    Pictures pictures;
    for (const std::string& file : files) {
        pictures.emplace(file, readPng(member.character->directory() / file, PixelSize{width, height}));
    }
    return pictures;
}

std::vector<std::shared_ptr<const ManifestCharacter>> installedPacks(std::vector<std::string>& skipped) {
    return ManifestCharacter::discover(data, CharacterBuildPolicy{}, decodePng,
                                       [&](const std::string& line) { skipped.push_back(line); });
}

std::shared_ptr<const ManifestCharacter> builtin(const CharacterManifest& manifest) {
    return std::make_shared<const ManifestCharacter>(manifest, builtinFolder, decodePng);
}

/// Everybody by identifier.
std::map<std::string, Member> loadCast() {
    std::map<std::string, Member> cast;
    cast["batti"] = {builtin(BuiltinCharacters::batti()), {}, {}};
    cast["mira"] = {builtin(BuiltinCharacters::mira()), {}, {}};
    cast["intern-nimit"] = {builtin(BuiltinCharacters::intern()), {}, {}};
    cast["nori"] = {builtin(BuiltinCharacters::nori()), {}, {}};
    cast["intern"] = {
        std::make_shared<const ManifestCharacter>(data / "characters/intern", decodePng), {}, {}};
    std::vector<std::string> skipped;
    for (const auto& pack : installedPacks(skipped)) {
        cast[pack->manifest().id] = {pack, {}, {}};
    }
    cast["batti"].overlays = read(cast["batti"], lampFiles("batti-lamp-", {"red", "amber", "green"}));
    cast.at("pump").overlays =
        read(cast.at("pump"), lampFiles("lamp-", {"amber", "red", "red-dim", "green"}));
    cast["mira"].loose = read(cast["mira"], {"mira-breathing-eyes-open.png", "mira-breath-0.png",
                                             "mira-breath-1.png", "mira-breath-2.png", "mira-breath-3.png",
                                             "mira-breath-4.png", "mira-breath-5.png"});
    return cast;
}

/// Loaded once: reading it takes longer than any of the tests.
const std::map<std::string, Member>& cast() {
    static const std::map<std::string, Member> everybody = loadCast();
    return everybody;
}

// The ramps ----------------------------------------------------------------------------------------------

/// The colours there are, and those of them that may stand at a figure's rim.
struct Ramps {
    std::set<Colour> all;
    std::set<Colour> rim;
};

/// Lines such as "#4a2420 skin line", written by the program that draws.
Ramps readRamps() {
    Ramps ramps;
    std::istringstream lines(TestSupport::bytesOf(fs::path(DESKFELLOW_FIXTURES) / "art/ramps.txt"));
    for (std::string line; std::getline(lines, line);) {
        const Colour colour = static_cast<Colour>(std::stoul(line.substr(1, 6), nullptr, 16));
        ramps.all.insert(colour);
        if (line.ends_with(" outline") || line.ends_with(" line")) {
            ramps.rim.insert(colour);
        }
    }
    return ramps;
}

// Pixels -------------------------------------------------------------------------------------------------

std::uint8_t channel(const PixelImage& image, int x, int y, std::size_t which) {
    return image.rgba[4 * static_cast<std::size_t>(y * image.width + x) + which];
}

/// Beyond the canvas there is nothing.
bool covered(const PixelImage& image, int x, int y) {
    const bool inside = x >= 0 && y >= 0 && x < image.width && y < image.height;
    return inside && channel(image, x, y, 3) != 0;
}

bool isPale(const PixelImage& image, int x, int y) {
    constexpr int least = 0xc8;
    return covered(image, x, y) && channel(image, x, y, 0) >= least && channel(image, x, y, 1) >= least &&
           channel(image, x, y, 2) >= least;
}

bool atRim(const PixelImage& image, int x, int y) {
    return !covered(image, x - 1, y) || !covered(image, x + 1, y) || !covered(image, x, y - 1) ||
           !covered(image, x, y + 1);
}

Colour colourAt(const PixelImage& image, int x, int y) {
    return Colour{channel(image, x, y, 0)} << 16U | Colour{channel(image, x, y, 1)} << 8U |
           channel(image, x, y, 2);
}

/// Runs `visit(x, y)` for every pixel that is not empty.
template <typename Visit>
void forCovered(const PixelImage& image, const Visit& visit) {
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            if (covered(image, x, y)) {
                visit(x, y);
            }
        }
    }
}

std::string place(int x, int y) {
    return "(" + std::to_string(x) + ", " + std::to_string(y) + ")";
}

/// The first few places at which a rule is broken; one wrong part must not print a thousand lines.
class Findings {
public:
    void add(const std::string& finding) {
        constexpr std::size_t told = 5;
        if (first_.size() < told) {
            first_.push_back(finding);
        }
    }
    const std::vector<std::string>& first() const { return first_; }

private:
    std::vector<std::string> first_;
};

// Tests --------------------------------------------------------------------------------------------------

TEST(Cast, EveryPackLoadsAndStandsInItsPlaceOfTheRoster) {
    std::vector<std::string> skipped;
    std::vector<std::string> roster;
    for (const auto& pack : installedPacks(skipped)) {
        roster.push_back(pack->manifest().id + " " + std::to_string(pack->manifest().order.value_or(0)));
    }
    EXPECT_THAT(skipped, IsEmpty());
    EXPECT_THAT(roster, ElementsAre("munshi 3", "snake 4", "pump 5", "devwatch 6", "thumka 9", "clock 10"));
    EXPECT_EQ(cast().at("intern").manifest().order, 7);
}

TEST(Cast, HasEveryPoseThatIsAskedFor) {
    const std::map<std::string, std::vector<std::string>> asked{
        {"batti", {"idle"}},
        {"mira", {"idle"}},
        {"nori", {"idle", "blink"}},
        {"intern-nimit",
         {"idle", "blink", "listen", "talk", "think", "wave", "eat-almonds", "eat-spinach", "brainy",
          "strong"}},
        {"intern", {"idle", "blink", "listen", "think", "talk"}},
        {"munshi", {"idle", "blink", "writing", "all-done"}},
        {"snake", {"idle", "blink", "playing"}},
        {"pump", {"idle", "blink"}},
        {"devwatch", {"idle", "blink", "busy", "hog", "idle-server", "idle-server-tap"}},
        {"thumka",
         {"idle", "idle-breathe", "dance-1", "dance-2", "dance-3", "dance-4", "dance-5", "dance-6", "dance-7",
          "doze"}},
        {"clock", {"idle", "blink", "ring"}},
    };
    EXPECT_EQ(cast().size(), asked.size());
    for (const auto& [id, poses] : asked) {
        for (const std::string& pose : poses) {
            EXPECT_THAT(cast().at(id).character->images(), Contains(Key(pose))) << id;
        }
    }
}

TEST(Cast, IsDrawnFromTheSharedRampsWithHardEdges) {
    constexpr std::size_t mostColours = 48;
    const Ramps ramps = readRamps();
    ASSERT_GT(ramps.rim.size(), 1U);
    for (const auto& [id, member] : cast()) {
        Findings findings;
        std::set<Colour> used;
        Pictures pictures = member.figures();
        pictures.insert(member.overlays.begin(), member.overlays.end());
        for (const auto& [name, image] : pictures) {
            forCovered(image, [&, &name = name, &image = image](int x, int y) {
                used.insert(colourAt(image, x, y));
                if (channel(image, x, y, 3) != 255) {
                    findings.add(name + " is half transparent at " + place(x, y));
                }
                if (!ramps.all.contains(colourAt(image, x, y))) {
                    findings.add(name + " has a colour of its own at " + place(x, y));
                }
            });
        }
        EXPECT_THAT(findings.first(), IsEmpty()) << id;
        EXPECT_LE(used.size(), mostColours) << id;
    }
}

TEST(Cast, IsOutlinedAllAround) {
    const Ramps ramps = readRamps();
    for (const auto& [id, member] : cast()) {
        Findings findings;
        for (const auto& [name, image] : member.figures()) {
            forCovered(image, [&, &name = name, &image = image](int x, int y) {
                if (atRim(image, x, y) && !ramps.rim.contains(colourAt(image, x, y))) {
                    findings.add(name + " has no outline at " + place(x, y));
                }
            });
        }
        EXPECT_THAT(findings.first(), IsEmpty()) << id;
    }
}

TEST(Cast, StandsOnTheGroundLineInEveryPose) {
    for (const auto& [id, member] : cast()) {
        for (const auto& [name, image] : member.figures()) {
            int lowest = -1;
            forCovered(image, [&](int /*x*/, int y) { lowest = y; });
            EXPECT_EQ(lowest, static_cast<int>(member.manifest().ground.y) - 1) << id << ' ' << name;
        }
    }
}

TEST(Cast, HasItsFaceWhereBubblesPoint) {
    for (const auto& [id, member] : cast()) {
        const auto& [x, y] = member.manifest().face;
        for (const auto& [pose, image] : member.character->images()) {
            EXPECT_TRUE(covered(*image, static_cast<int>(x), static_cast<int>(y))) << id << ' ' << pose;
        }
    }
}

TEST(Cast, LaysItsLampsOnTheFigure) {
    for (const auto& [id, member] : cast()) {
        for (const auto& [name, image] : member.overlays) {
            int lit = 0;
            Findings findings;
            forCovered(image, [&, &member = member](int x, int y) {
                ++lit;
                if (!covered(member.idle(), x, y)) {
                    findings.add("hangs in the air at " + place(x, y));
                }
            });
            EXPECT_THAT(findings.first(), IsEmpty()) << id << ' ' << name;
            EXPECT_GT(lit, 0) << id << ' ' << name;
        }
    }
}

TEST(Cast, KeepsThePlacesToDrawOverOnThePump) {
    const Member& pump = cast().at("pump");
    const FellowCore::Json document =
        FellowCore::parseJson(TestSupport::bytesOf(pump.character->directory() / "places.json"));
    const FellowCore::JsonFields places(document);
    for (const char* name : {"tank", "digits", "lamp"}) {
        SCOPED_TRACE(name);
        const FellowCore::JsonFields box = places.object(name);
        const std::int64_t left = box.integer("left");
        const std::int64_t top = box.integer("top");
        const std::int64_t right = box.integer("right");
        const std::int64_t bottom = box.integer("bottom");
        EXPECT_TRUE(0 <= left && left < right && right <= pump.manifest().grid.width);
        EXPECT_TRUE(0 <= top && top < bottom && bottom <= pump.manifest().grid.height);
        EXPECT_TRUE(
            covered(pump.idle(), static_cast<int>((left + right) / 2), static_cast<int>((top + bottom) / 2)));
    }
}

TEST(Cast, KeepsTheTowersDialsFreeForTheirHands) {
    const Member& tower = cast().at("clock");
    const FellowCore::Json document =
        FellowCore::parseJson(TestSupport::bytesOf(tower.character->directory() / "places.json"));
    const FellowCore::JsonFields places(document);
    for (const char* name : {"largeDial", "leftDial", "rightDial"}) {
        SCOPED_TRACE(name);
        const FellowCore::JsonFields dial = places.object(name);
        const auto column = static_cast<int>(dial.integer("column"));
        const auto row = static_cast<int>(dial.integer("row"));
        const auto radius = static_cast<int>(dial.integer("radius"));
        ASSERT_GT(radius, 4);
        for (const auto& [pose, picture] : tower.character->images()) {
            for (int y = -radius; y <= radius; ++y) {
                for (int x = -radius; x <= radius; ++x) {
                    // A hand ends a pixel inside of the ticks.
                    if (x * x + y * y <= (radius - 1) * (radius - 1)) {
                        EXPECT_TRUE(isPale(*picture, column + x, row + y)) << pose << ' ' << x << ' ' << y;
                    }
                }
            }
        }
    }
}

} // namespace
} // namespace Platform
