#include "core/base/Uuid.h"

#include <gtest/gtest.h>

#include <set>

namespace FellowCore {
namespace {

TEST(Uuid, ReadsWhatItWritesAndNothingElse) {
    const std::string text = "E621E1F8-C36C-495A-93FC-0C247A3E6E5F";
    const auto uuid = Uuid::fromText(text);
    ASSERT_TRUE(uuid);
    EXPECT_EQ(uuid->bytes[0], 0xE6);
    EXPECT_EQ(uuid->bytes[15], 0x5F);
    EXPECT_EQ(uuid->text(), text);
    EXPECT_EQ(Uuid::fromText("e621e1f8-c36c-495a-93fc-0c247a3e6e5f"), uuid) << "small letters";

    for (const char* bad :
         {"", "E621E1F8-C36C-495A-93FC-0C247A3E6E5", "E621E1F8-C36C-495A-93FC-0C247A3E6E5F0",
          "E621E1F8C-36C-495A-93FC-0C247A3E6E5F", "G621E1F8-C36C-495A-93FC-0C247A3E6E5F",
          "{621E1F8-C36C-495A-93FC-0C247A3E6E5}", "E621E1F8-C36C-495A-93FC-0C247A3E6E5\xFF"}) {
        EXPECT_FALSE(Uuid::fromText(bad)) << bad;
    }
}

TEST(Uuid, FreshOnesDifferAndSayWhatTheyAre) {
    std::set<Uuid> seen;
    for (int count = 0; count < 1000; ++count) {
        const Uuid uuid = randomUuid();
        EXPECT_TRUE(seen.insert(uuid).second);
        EXPECT_EQ(uuid.text()[14], '4');
        EXPECT_NE(std::string("89AB").find(uuid.text()[19]), std::string::npos);
    }
}

} // namespace
} // namespace FellowCore
