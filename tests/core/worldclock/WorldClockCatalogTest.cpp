#include "core/worldclock/WorldClockCatalog.h"
#include "tests/core/worldclock/SlowCitySearch.h"

#include <gmock/gmock.h>

#include <random>
#include <set>
#include <string>
#include <thread>

namespace FellowCore {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

const WorldClockCatalog& builtIn() {
    static const WorldClockCatalog catalog;
    return catalog;
}

std::vector<std::string> names(const std::vector<const WorldClockCity*>& cities) {
    std::vector<std::string> found;
    for (const WorldClockCity* const city : cities) {
        found.push_back(city->name);
    }
    return found;
}

TEST(CityTable, IsWholeAndReadable) {
    const auto& entries = builtIn().entries();
    const std::string_view table = builtInCityTable();
    EXPECT_EQ(entries.size(), static_cast<std::size_t>(std::ranges::count(table, '\n')));
    EXPECT_GT(entries.size(), 11'000U);
    std::set<std::string_view> zones;
    for (std::size_t index = 0; index < entries.size(); ++index) {
        const auto& entry = entries[index];
        ASSERT_TRUE(index == 0 || entry.population <= entries[index - 1].population) << entry.city.name;
        ASSERT_EQ(builtIn().canonicalIdentifier(entry.city.identifier), entry.city.identifier);
        if (zones.insert(WorldClockCity::zoneOf(entry.city.identifier)).second) {
            ASSERT_TRUE(entry.city.timeZone()) << entry.city.identifier;
        }
    }
    EXPECT_GT(zones.size(), 330U);
}

TEST(WorldClockCatalog, FindsTheCityThatIsMeant) {
    struct Case {
        const char* fault;
        const char* query;
        const char* zone;
        const char* name;
    };
    const Case cases[] = {
        {"diacritics count", "sao paulo", "America/Sao_Paulo", "São Paulo"},
        {"case counts", "SÃO PAULO", "America/Sao_Paulo", "São Paulo"},
        {"combining marks count", "sa\u0303o paulo", "America/Sao_Paulo", "São Paulo"},
        {"word order counts", "paulo sao", "America/Sao_Paulo", "São Paulo"},
        {"an underscore is no space", "sao_paulo", "America/Sao_Paulo", "São Paulo"},
        {"white space at the ends counts", "\u3000 sao paulo\t", "America/Sao_Paulo", "São Paulo"},
        {"airport codes are lost", "SHA", "Asia/Shanghai", "Shanghai"},
        {"foreign names are lost", "cologne", "Europe/Berlin", "Köln"},
        {"native names are lost", "köln", "Europe/Berlin", "Köln"},
        {"other scripts are lost", "москва", "Europe/Moscow", "Moscow"},
        {"East Asian names are lost", "東京", "Asia/Tokyo", "Tokyo"},
        {"letters without decomposition are lost", "adiyaman", "Europe/Istanbul", "Adıyaman"},
        {"the region is no help", "london ontario", "America/Toronto", "London"},
        {"common names are lost", "nyc", "America/New_York", "New York City"},
        {"abbreviations are lost", "pst", "America/Los_Angeles", "Los Angeles"},
        {"a part of the city stands for it", "GMT", "Europe/London", "London"},
        {"ICU's own abbreviation wins", "bst", "Europe/London", "London"},
        {"countries are lost", "norway", "Europe/Oslo", "Oslo"},
        {"former countries are lost", "swaziland", "Africa/Mbabane", "Mbabane"},
        {"zones are lost", "Asia/Kolkata", "Asia/Kolkata", "Kolkata"},
        {"old zones are lost", "asia/calcutta", "Asia/Kolkata", "Kolkata"},
        {"zones without a place are lost", "us/pacific", "America/Los_Angeles", "Los Angeles"},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.fault);
        const auto found = builtIn().search(row.query);
        ASSERT_FALSE(found.empty());
        EXPECT_EQ(found.front()->name, row.name);
        EXPECT_EQ(WorldClockCity::zoneOf(found.front()->identifier), row.zone);
    }
    EXPECT_THAT(names(builtIn().search("IST")), ::testing::Contains("Kolkata"));
}

constexpr std::string_view smallTable = "Santiago\t\tMetro\tChile\tAmerica/Santiago\t5000\tSCL\n"
                                        "Sanaa\t\t\tYemen\tAsia/Aden\t2000\t\n"
                                        "short\trow\n"
                                        "Atlantis\t\t\tSea\tBogus/Zone\t1500\t\n"
                                        "Odd\t\t\tPlace\tEurope/Paris\tmany\t\n"
                                        "Pisan\t\t\tItaly\tEurope/Rome\t900\t\n"
                                        "San\t\tSégou\tMali\tAfrica/Bamako\t70\t\n"
                                        "Old San\t\t\tPeru\tAmerica/Lima\t60\tSAN\n"
                                        "San\t\tSégou\tMali\tAfrica/Bamako\t50\tsecond\n"
                                        "Singapore\t\tSingapore\tSingapore\tAsia/Singapore\t40\t\textra\n"
                                        "Young\t\t\tPeru\tAmerica/Lima\t60\t";

TEST(WorldClockCatalog, RanksExactBeforeBeginningBeforeLarge) {
    const WorldClockCatalog catalog(smallTable);
    EXPECT_THAT(names(catalog.search("san")), ElementsAre("San", "Old San", "Santiago", "Sanaa", "Pisan"));
    EXPECT_THAT(names(catalog.search("peru")), ElementsAre("Old San", "Young")) << "a tie keeps table order";
    const std::vector<std::string> left = {catalog.search("san").front()->identifier};
    EXPECT_EQ(left.front(), "Africa/Bamako|San|Ségou, Mali");
    EXPECT_THAT(names(catalog.search("san", left)), ElementsAre("Old San", "Santiago", "Sanaa", "Pisan"));
    const std::vector<std::string> capital = {"America/Santiago|Santiago|Metro, Chile"};
    EXPECT_THAT(catalog.search("us/nowhere"), IsEmpty());
    EXPECT_THAT(names(catalog.search("america/sant")), ElementsAre("Santiago"));
    EXPECT_THAT(catalog.search("america/sant", capital), IsEmpty());
}

TEST(WorldClockCatalog, SkipsBadRowsAndOnlyThose) {
    const WorldClockCatalog catalog(smallTable);
    EXPECT_THAT(names(catalog.search(" \t\u2028\u00A0")),
                ElementsAre("Santiago", "Sanaa", "Pisan", "San", "Old San", "Singapore", "Young"));
    EXPECT_FALSE(catalog.city("Bogus/Zone|Atlantis|Sea"));
    EXPECT_THAT(catalog.search("atlantis"), IsEmpty());
    EXPECT_EQ(catalog.search("singapore").front()->region, "Singapore");
    const WorldClockCatalog elsewhere(smallTable, {"Asia/Aden"});
    EXPECT_THAT(names(elsewhere.search("")), ElementsAre("Sanaa"));
    EXPECT_FALSE(elsewhere.city("Africa/Bamako"));
    EXPECT_THAT(WorldClockCatalog("").search("a"), IsEmpty());
}

TEST(WorldClockCatalog, ResolvesWhatWasStored) {
    struct Case {
        const char* fault;
        std::string stored;
        std::optional<std::string> identifier;
    };
    const std::string kolkata = "Asia/Kolkata|Kolkata|West Bengal, India";
    const Case cases[] = {
        {"the largest city takes the namesake's zone", "Asia/Kolkata", kolkata},
        {"old zones resolve to nothing", "Asia/Calcutta", kolkata},
        {"old zones in identifiers resolve to nothing", "Asia/Calcutta|Kolkata|West Bengal, India", kolkata},
        {"a renamed region loses the city", "Asia/Kolkata|Kolkata|Bengal, India", kolkata},
        {"a zone without cities resolves to nothing", "Etc/UTC", "Etc/UTC"},
        {"a fixed offset takes a city with summer time", "EST", "EST"},
        {"an unknown city is kept", "Asia/Kolkata|Nowhere|India", std::nullopt},
        {"an unknown zone is kept", "Mars/Olympus", std::nullopt},
        {"a word for a city counts as a zone", "NYC", std::nullopt},
        {"emptiness is a zone", "", std::nullopt},
        {"separators alone are a city", "|||", std::nullopt},
        {"a null byte ends the text", std::string("Asia/Kolkata\0x", 14), std::nullopt},
    };
    for (const Case& row : cases) {
        EXPECT_EQ(builtIn().canonicalIdentifier(row.stored), row.identifier) << row.fault;
    }
    EXPECT_EQ(builtIn().city("Etc/UTC"), (WorldClockCity{"Etc/UTC", "UTC", ""}));
}

TEST(WorldClockCatalog, NamesNoCountryAfterAnothersCity) {
    for (const auto& [alias, zone] : builtIn().aliases()) {
        EXPECT_TRUE(builtIn().city(zone)) << alias;
    }
    EXPECT_EQ(builtIn().aliases().at("Norway"), "Europe/Oslo");
    EXPECT_FALSE(builtIn().aliases().contains("Kosovo")) << "its clocks are called after Belgrade";
}

/// Queries as people and cats type them: pieces of names, words of two places, single letters, noise.
class QueryMaker {
public:
    explicit QueryMaker(unsigned seed) : random_(seed) {}

    std::string next() {
        switch (pick(6)) {
        case 0:
            return piece(1 + pick(3));
        case 1:
            return piece(3 + pick(8));
        case 2:
            return piece(1 + pick(5)) + " " + piece(1 + pick(5));
        case 3:
            return std::string(anyKey().substr(0, 1 + pick(10)));
        case 4:
            return std::string(entry().names.back()) + " " + piece(4);
        default:
            return std::string(1, static_cast<char>('a' + pick(26))) + std::string(pick(2), ' ') +
                   std::string(1, static_cast<char>('a' + pick(26)));
        }
    }

private:
    std::size_t pick(std::size_t below) {
        return std::uniform_int_distribution<std::size_t>(0, below - 1)(random_);
    }
    const WorldClockCatalog::Entry& entry() { return builtIn().entries()[pick(builtIn().entries().size())]; }
    std::string_view anyKey() { return entry().key; }
    std::string piece(std::size_t length) {
        const std::string_view key = anyKey();
        return std::string(key.substr(pick(key.size()), length)); // may cut a character in two
    }

    std::mt19937 random_;
};

TEST(WorldClockCatalog, AnswersLikeTheSlowSearch) {
    QueryMaker queries(20261121);
    int answered = 0;
    for (int round = 0; round < 4000; ++round) {
        const std::string query = queries.next();
        const auto expected = slowCitySearch(builtIn(), query);
        if (expected.empty()) {
            continue; // what is looked for in zones then has its own table
        }
        ++answered;
        ASSERT_EQ(builtIn().search(query), expected) << query;
        const std::vector<std::string> left = {expected.front()->identifier, expected.back()->identifier};
        ASSERT_EQ(builtIn().search(query, left), slowCitySearch(builtIn(), query, left)) << query;
    }
    EXPECT_GT(answered, 2000);
}

TEST(WorldClockCatalog, BearsAnyQuery) {
    std::string manyWords;
    for (int number = 0; number < 3000; ++number) {
        manyWords += static_cast<char>('a' + number % 26);
        manyWords += number % 2 == 0 ? " " : "";
    }
    std::string marks = "san";
    for (int number = 0; number < 5000; ++number) {
        marks += "\u0301";
    }
    EXPECT_THAT(builtIn().search(std::string(10'000, 'a')), IsEmpty());
    EXPECT_EQ(builtIn().search(manyWords), slowCitySearch(builtIn(), manyWords));
    EXPECT_EQ(builtIn().search(marks), builtIn().search("san"));
    EXPECT_EQ(builtIn().search(std::string(10'000, ' ')).size(), builtIn().entries().size());
    EXPECT_THAT(builtIn().search("\U0001F1EE\U0001F1F3 \U0001F600"), IsEmpty());
    EXPECT_THAT(builtIn().search("\xFF\xFE\x80"), IsEmpty());
    EXPECT_THAT(builtIn().search(std::string("a\0b", 3)), IsEmpty());
    EXPECT_THAT(builtIn().search("a\nb"), Not(IsEmpty())) << "a line's end separates words";
}

TEST(WorldClockCatalog, MayBeMadeReadyElsewhere) {
    const WorldClockCatalog catalog;
    std::thread other([&] { catalog.prepareSearch(); });
    const auto found = names(catalog.search("reykjavik"));
    other.join();
    EXPECT_THAT(found, ElementsAre("Reykjavík"));
}

} // namespace
} // namespace FellowCore
