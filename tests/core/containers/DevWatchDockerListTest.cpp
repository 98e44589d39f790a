#include "core/base/Json.h"
#include "core/containers/DevWatchDockerClient.h"
#include "core/containers/DevWatchDockerFailure.h"
#include "tests/core/containers/ScriptedServer.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace {

using namespace FellowCore;
using Kind = DevWatchDockerFailure::Kind;
using Ports = std::vector<std::uint16_t>;

const std::string id(64, 'a');

/// A list of one running container with these members changed; null texts remove a member.
std::string listWith(const std::string& changes) {
    Json entry = {{"Id", id},           {"Names", {"/shop"}},     {"Image", "shop:2"},
                  {"State", "running"}, {"Ports", Json::array()}, {"Labels", Json::object()},
                  {"Unknown", 1}};
    entry.update(parseJson(changes));
    return Json::array({entry}).dump();
}

std::string listWithout(const std::string& key) {
    Json list = parseJson(listWith("{}"));
    list[0].erase(key);
    return list.dump();
}

TEST(DevWatchDockerListTest, keepsWhatIsShown) {
    struct Case {
        const char* fault;
        std::string changes;
        DevWatchDockerContainer expected = {id, "shop", "shop:2", {}, std::nullopt};
    };
    const std::string label = R"("com.docker.compose.project.working_dir")";
    const Case cases[] = {
        {"a plain container is lost", "{}"},
        {"a link's name replaces its own", R"({"Names":["/shop","/till/shop"]})"},
        {"a nameless container has no row", R"({"Names":[]})", {id, "aaaaaaaaaaaa", "shop:2", {}, {}}},
        {"an empty name has no row", R"({"Names":["/\u0007"]})", {id, "aaaaaaaaaaaa", "shop:2", {}, {}}},
        {"empty parts written as null are refused",
         R"({"Names":null,"Ports":null,"Labels":null})",
         {id, "aaaaaaaaaaaa", "shop:2", {}, {}}},
        {"control characters reach a label",
         R"({"Names":["/s\u0000h\no\u009Bp"],"Image":"shop\r\n\u2028:2"})"},
        {"a name turns its line around", R"({"Names":["/\u202Esh\u200Fo\u2066p\u061C"]})"},
        {"a joiner that scripts need is lost",
         R"({"Names":["/\u0915\u094D\u200D\u0937"]})",
         {id, "\u0915\u094D\u200D\u0937", "shop:2", {}, {}}},
        {"ports are doubled, unsorted, unpublished or of another protocol",
         R"({"Ports":[{"PublicPort":8080,"Type":"tcp"},{"PrivatePort":9,"Type":"tcp"},
            {"PublicPort":0,"Type":"tcp"},{"PublicPort":53,"Type":"udp"},{"PublicPort":443,"Type":"tcp"},
            {"IP":"::","PublicPort":8080,"Type":"tcp"},{"PublicPort":65535,"Type":"tcp"}]})",
         {id, "shop", "shop:2", {443, 8080, 65535}, {}}},
        {"a project is lost",
         R"({"Labels":{)" + label + R"(:"/srv/sh\u202Eop"}})",
         {id, "shop", "shop:2", {}, "/srv/shop"}},
        {"a relative project is shown", R"({"Labels":{)" + label + R"(:"srv"}})"},
    };
    for (const auto& testCase : cases) {
        SCOPED_TRACE(testCase.fault);
        EXPECT_THAT(DevWatchDockerClient::decodeContainers(listWith(testCase.changes)),
                    testing::ElementsAre(testCase.expected));
    }
}

TEST(DevWatchDockerListTest, cutsTextsBetweenCharacters) {
    std::string longName;
    for (int scalar = 0; scalar < 5000; ++scalar) {
        longName += "\U0001F433";
    }
    const auto list =
        DevWatchDockerClient::decodeContainers(listWith(R"({"Names":["/)" + longName + R"("]})"));
    EXPECT_EQ(list.at(0).name, longName.substr(0, std::size_t{4096} * 4));
}

TEST(DevWatchDockerListTest, leavesOutWhatDoesNotCount) {
    for (const char* const changes :
         {R"({"State":"exited"})", R"({"State":"Running"})", R"({"Id":"abc"})",
          R"({"Id":"gggggggggggggggggggggggggggggggggggggggggggggggggggggggggggggggg"})",
          R"({"Id":"../../aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa"})"}) {
        EXPECT_THAT(DevWatchDockerClient::decodeContainers(listWith(changes)), testing::IsEmpty()) << changes;
    }
    EXPECT_THAT(DevWatchDockerClient::decodeContainers(" [] "), testing::IsEmpty());
}

TEST(DevWatchDockerListTest, sortsByNameThenIdAndKeepsOneOfEach) {
    Json list = Json::array();
    for (const auto& [name, digit] : {std::pair("/b", '1'), {"/a", '3'}, {"/a", '2'}, {"/c", '3'}}) {
        list.push_back(parseJson(listWith("{}"))[0]);
        list.back()["Names"] = {name};
        list.back()["Id"] = std::string(64, digit);
    }
    std::string order;
    for (const auto& container : DevWatchDockerClient::decodeContainers(list.dump())) {
        order += container.name + container.id.front();
    }
    EXPECT_EQ(order, "a2a3b1");
}

TEST(DevWatchDockerListTest, refusesWhatNoEngineSends) {
    std::string many = "[";
    for (std::size_t entry = 0; entry < 10'000; ++entry) {
        many += R"({"Id":"","Names":[],"Image":"","State":"","Ports":[],"Labels":{}},)";
    }
    const auto manyOf = [&](std::size_t count) {
        return many.substr(0, 1 + count * ((many.size() - 1) / 10'000) - 1) + "]";
    };
    const std::string padding(DevWatchDockerClient::listByteLimit - 1, ' ');
    struct Case {
        const char* fault;
        std::string body;
    };
    const Case cases[] = {
        {"nothing is a list", ""},
        {"a message is a list", R"({"message":"no"})"},
        {"text is a list", "<html>"},
        {"a list that is cut", listWith("{}").substr(0, 100)},
        {"entries that are no objects", "[1]"},
        {"10,000 containers", manyOf(10'000)},
        {"2001 containers", manyOf(2001)},
        {"a list beyond its size", padding + "[]"},
        {"brackets without end", std::string(100'000, '[')},
        {"an id that is a number", listWith(R"({"Id":1})")},
        {"an image that is null", listWith(R"({"Image":null})")},
        {"names that are a text", listWith(R"({"Names":"shop"})")},
        {"a second name that is no text", listWith(R"({"Names":["/shop",1]})")},
        {"a name that is no text", listWith(R"({"Names":[null]})")},
        {"a label that is a number", listWith(R"({"Labels":{"a":1}})")},
        {"labels that are a list", listWith(R"({"Labels":[]})")},
        {"a port that is a number", listWith(R"({"Ports":[80]})")},
        {"a port without a type", listWith(R"({"Ports":[{"PublicPort":80}]})")},
        {"a port beyond 16 bits", listWith(R"({"Ports":[{"PublicPort":65616,"Type":"tcp"}]})")},
        {"a port below nothing", listWith(R"({"Ports":[{"PublicPort":-1,"Type":"udp"}]})")},
        {"half a port", listWith(R"({"Ports":[{"PublicPort":80.5,"Type":"tcp"}]})")},
        {"half a character", listWith("{}").replace(3, 2, "\\ud800")},
        {"a stopped entry need not be right", listWith(R"({"State":"exited","Ports":7})")},
    };
    for (const auto& testCase : cases) {
        SCOPED_TRACE(testCase.fault);
        TestSupport::expectFailure<DevWatchDockerFailure>(
            Kind::invalidResponse, [&] { DevWatchDockerClient::decodeContainers(testCase.body); });
    }
    for (const char* const key : {"Id", "Names", "Image", "State", "Ports", "Labels"}) {
        SCOPED_TRACE(key);
        TestSupport::expectFailure<DevWatchDockerFailure>(
            Kind::invalidResponse, [&] { DevWatchDockerClient::decodeContainers(listWithout(key)); });
    }
    EXPECT_THAT(DevWatchDockerClient::decodeContainers(manyOf(2000)), testing::IsEmpty());
    EXPECT_THAT(DevWatchDockerClient::decodeContainers(padding.substr(1) + "[]"), testing::IsEmpty());
}

} // namespace
