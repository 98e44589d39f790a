#pragma once

#include <string>
#include <vector>

namespace FellowCore {

/// Settings as people have them, each with something that careless editing would lose.
inline std::vector<std::string> settingsTexts() {
    return {
        "",
        "{}",
        "  {\r\n}\r\n\r\n",
        R"({"z":1,"a":{"y":[1,2,{"b":null}],"x":true},"m":"/slash/es"})",
        "{\n\t\"model\": \"opus\",\n\t\"cost\": 1.50, \"tiny\": 1e-7, \"big\": 18446744073709551615}",
        R"j({"hooks":{},"permissions":{"allow":["Bash(ls:*)"]}})j",
        R"({"hooks":{"Stop":[],"Custom":[{"matcher":"x"}]}})",
        R"({"hooks":{"Stop":[{"hooks":[{"type":"command","command":"say done"}]},{"hooks":[]}],)"
        R"("PreToolUse":[{"matcher":"Bash","hooks":[{"type":"command","command":"check","timeout":60}]}]}})",
        R"({"text":"\u0000\u001f\"\\\/ \ud83d\ude00 é","":""})",
        "{\"deep\":" + std::string(60, '[') + std::string(60, ']') + "}",
        R"({"large":")" + std::string(100000, 'x') + R"("})",
    };
}

/// What is no settings, or could not be written again as it is.
inline std::vector<std::string> refusedSettingsTexts() {
    return {
        " ",
        "[]",
        "null",
        "{",
        "{} {}",
        "{'a':1}",
        "// mine\n{}",
        "{\"a\":1 /* mine */}",
        "{\"a\":[1,2,],}",
        "\xEF\xBB\xBF{}",
        "\xFF\xFE{}",
        std::string("{}\0", 3),
        "{\"a\":\"\xC3\"}",
        R"({"a":"\ud800"})",
        R"({"a":1,"a":2})",
        R"({"b":[{"a":1,"\u0061":2}]})",
        R"({"n":12345678901234567890123})",
        "{\"deep\":" + std::string(100000, '[') + std::string(100000, ']') + "}",
        R"({"hooks":null})",
        R"({"hooks":[]})",
        R"({"hooks":{"Stop":{}}})",
        R"({"hooks":{"Stop":["x"]}})",
        R"({"hooks":{"Stop":[{"hooks":{}}]}})",
        R"({"hooks":{"Stop":[{"hooks":["x"]}]}})",
    };
}

} // namespace FellowCore
