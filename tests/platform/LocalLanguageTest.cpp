#include "platform/LocalLanguage.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <string>

namespace {

/// The environment's three variables, put back at the end.
class LocalLanguage : public testing::Test {
protected:
    using Variables = std::map<std::string, std::string>;

    LocalLanguage() {
        for (const char* const name : names) {
            if (const char* const value = std::getenv(name)) {
                former_[name] = value;
            }
        }
    }
    ~LocalLanguage() override { set(former_); }

    static void set(const Variables& variables) {
        for (const char* const name : names) {
            const auto found = variables.find(name);
            found == variables.end() ? unsetenv(name) : setenv(name, found->second.c_str(), 1);
        }
    }

private:
    static constexpr const char* names[] = {"LC_ALL", "LC_TIME", "LANG"};
    Variables former_;
};

TEST_F(LocalLanguage, IsThatOfTimesBeforeThatOfWords) {
    const std::pair<Variables, const char*> cases[] = {
        {{{"LANG", "en_IN.UTF-8"}}, "en_IN"},
        {{{"LANG", "en_US.UTF-8"}, {"LC_TIME", "de_DE@euro"}}, "de_DE"},
        {{{"LANG", "de_DE"}, {"LC_TIME", "en_GB"}, {"LC_ALL", "fr_FR.utf8"}}, "fr_FR"},
        {{{"LANG", "pt_BR.UTF-8"}, {"LC_ALL", ""}}, "pt_BR"},
        {{{"LANG", "C.UTF-8"}}, "en-u-hc-h23"},
        {{{"LANG", "en_US"}, {"LC_ALL", "POSIX"}}, "en-u-hc-h23"},
        {{}, "en-u-hc-h23"},
    };
    for (const auto& [variables, locale] : cases) {
        set(variables);
        EXPECT_EQ(Platform::localTimeLocale(), locale);
    }
}

} // namespace
