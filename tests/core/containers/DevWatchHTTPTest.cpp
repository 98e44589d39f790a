#include "core/containers/DevWatchHTTP.h"

#include "core/containers/DevWatchHTTPFailure.h"
#include "tests/core/containers/ScriptedServer.h"

namespace {

using namespace FellowCore;
using Kind = DevWatchHTTPFailure::Kind;

constexpr std::size_t limit = 64;
const std::string okay = "HTTP/1.1 200 OK\r\n";
const std::string chunked = okay + "Transfer-Encoding: chunked\r\n\r\n";

/// A head of so many bytes before its blank line.
std::string headOf(std::size_t bytes) {
    return okay + "X: " + std::string(bytes - okay.size() - 3, 'x') + "\r\n\r\n";
}

TEST(DevWatchHTTPTest, readsBodiesHoweverTheyAreFramed) {
    struct Case {
        const char* fault;
        std::string bytes;
        std::string body;
    };
    const Case cases[] = {
        {"a body without a length is lost", okay + "\r\nall\r\n\r\nof it", "all\r\n\r\nof it"},
        {"a head without headers needs one", okay + "\r\n", ""},
        {"bytes behind the length are kept", okay + "content-LENGTH:\t 3 \r\n\r\nabcdef", "abc"},
        {"a body as large as allowed is refused", okay + "\r\n" + std::string(limit, 'x'),
         std::string(limit, 'x')},
        {"a header's colon ends its value", okay + "Date: 10:29:44\r\nContent-Length: 1\r\n\r\na", "a"},
        {"the coding's case matters", okay + "Transfer-Encoding: Chunked\r\n\r\n0\r\n\r\n", ""},
        {"chunks are not joined", chunked + "3\r\nabc\r\nA\r\n\r\n34567890\r\n0\r\n\r\n", "abc\r\n34567890"},
        {"an extension is a digit", chunked + "1;a=\"b;c\"\r\nx\r\n0;last\r\n\r\n", "x"},
        {"a trailer is a chunk", chunked + "1\r\nx\r\n0\r\nA: b\r\nC: d\r\n\r\n", "x"},
        {"leading zeros overflow", chunked + std::string(40, '0') + "1\r\nx\r\n0\r\n\r\n", "x"},
        {"chunks as large as allowed are refused",
         chunked + "40\r\n" + std::string(limit, 'x') + "\r\n0\r\n\r\n", std::string(limit, 'x')},
        {"a head as long as allowed is refused", headOf(DevWatchHTTP::headLimit) + "x", "x"},
    };
    for (const auto& testCase : cases) {
        SCOPED_TRACE(testCase.fault);
        EXPECT_EQ(DevWatchHTTP::parse(testCase.bytes, limit).body, testCase.body);
    }
    const auto response = DevWatchHTTP::parse("HTTP/1.0  599\r\nServer: \t a b \r\nEMPTY:\r\n\r\n", limit);
    EXPECT_EQ(response.status, 599);
    EXPECT_EQ(response.headers, (DevWatchHTTPResponse::Headers{{"server", "a b"}, {"empty", ""}}));
}

TEST(DevWatchHTTPTest, refusesWhatIsNotOneAnswer) {
    const std::string longLine(DevWatchHTTP::headLimit + 1, 'x');
    struct Case {
        const char* fault;
        std::string bytes;
        Kind kind = Kind::malformed;
    };
    const Case cases[] = {
        {"nothing is an answer", ""},
        {"a head need not end", okay + "A: b\r\n"},
        {"a head may be of any length", headOf(DevWatchHTTP::headLimit + 1)},
        {"another protocol is read", "HTTP/2 200\r\n\r\n"},
        {"a status is not looked for", "HTTP/1.1\r\n\r\n"},
        {"a status of 99", "HTTP/1.1 99 Low\r\n\r\n"},
        {"a status of 600", "HTTP/1.1 600 High\r\n\r\n"},
        {"a status that overflows", "HTTP/1.1 18446744073709551816 OK\r\n\r\n"},
        {"a status with a sign", "HTTP/1.1 +200 OK\r\n\r\n"},
        {"a status with a tail", "HTTP/1.1 200x OK\r\n\r\n"},
        {"bytes that are no text", okay + "Server: \xC3\x28\r\n\r\n"},
        {"a line without a colon", okay + "Server\r\n\r\n"},
        {"a line without a name", okay + ": 5\r\n\r\n"},
        {"a folded line", okay + "A: b\r\n C: d\r\n\r\n"},
        {"a name that ends in a blank hides a length", okay + "Content-Length : 1\r\n\r\nabc"},
        {"the second of two lengths wins", okay + "Content-Length: 1\r\ncontent-length: 1\r\n\r\nabc"},
        {"another coding is handed on", okay + "Transfer-Encoding: gzip\r\n\r\n"},
        {"a second coding is dropped", okay + "Transfer-Encoding: gzip, chunked\r\n\r\n0\r\n\r\n"},
        {"a length beside chunks", okay + "Transfer-Encoding: chunked\r\nContent-Length: 5\r\n\r\n0\r\n\r\n"},
        {"more is claimed than came", okay + "Content-Length: 4\r\n\r\nabc"},
        {"a length that overflows to 3", okay + "Content-Length: 18446744073709551619\r\n\r\nabc"},
        {"a length below nothing", okay + "Content-Length: -1\r\n\r\nabc"},
        {"an empty length", okay + "Content-Length:\r\n\r\nabc"},
        {"a length in hexadecimal", okay + "Content-Length: 0x3\r\n\r\nabc"},
        {"no chunk at all", chunked},
        {"no last chunk", chunked + "1\r\nx\r\n"},
        {"a size that does not end", chunked + "1"},
        {"a size with a sign", chunked + "-1\r\nx\r\n0\r\n\r\n"},
        {"an empty size", chunked + ";a\r\nx\r\n0\r\n\r\n"},
        {"a size that overflows and is no number", chunked + "FFFFFFFFFFFFFFFFFFFFFFFFG\r\nx"},
        {"a chunk that ends early", chunked + "5\r\nabc"},
        {"a chunk that ends late", chunked + "2\r\nabc\r\n0\r\n\r\n"},
        {"an extension of any length", chunked + "1;" + longLine + "\r\nx\r\n0\r\n\r\n"},
        {"a last chunk without its line", chunked + "1\r\nx\r\n0\r\n"},
        {"a trailer that does not end", chunked + "0\r\nA: b\r\n"},
        {"a trailer of any length", chunked + "0\r\nA: " + longLine + "\r\n\r\n"},
        {"a body of any size", okay + "\r\n" + std::string(limit + 1, 'x'), Kind::tooLarge},
        {"a claimed body of any size", okay + "Content-Length: 65\r\n\r\n" + std::string(65, 'x'),
         Kind::tooLarge},
        {"a size that overflows", chunked + "10000000000000001\r\nx\r\n0\r\n\r\n", Kind::tooLarge},
        {"a sum that overflows", chunked + "1\r\nx\r\nFFFFFFFFFFFFFFFF\r\nx", Kind::tooLarge},
        {"small chunks without end", chunked + "40\r\n" + std::string(limit, 'x') + "\r\n1\r\nx\r\n0\r\n\r\n",
         Kind::tooLarge},
    };
    for (const auto& testCase : cases) {
        SCOPED_TRACE(testCase.fault);
        TestSupport::expectFailure<DevWatchHTTPFailure>(testCase.kind,
                                                        [&] { DevWatchHTTP::parse(testCase.bytes, limit); });
    }
}

} // namespace
