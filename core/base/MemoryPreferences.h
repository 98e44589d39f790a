#pragma once

#include "core/base/Preferences.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <variant>

namespace FellowCore {

/// Preferences in memory, and the base of those that reach a file. Values from a file whose type is none of
/// ours are kept as they are and read as absent, so that another version's settings survive a save by this
/// one.
class MemoryPreferences : public Preferences {
public:
    /// Runs after each change that really changed something.
    std::function<void()> onChange;

    MemoryPreferences();
    ~MemoryPreferences() override;

    std::optional<std::string> string(std::string_view key) const override;
    std::optional<bool> boolean(std::string_view key) const override;
    std::optional<std::int64_t> integer(std::string_view key) const override;
    std::optional<double> number(std::string_view key) const override;
    std::optional<std::vector<std::string>> strings(std::string_view key) const override;
    bool contains(std::string_view key) const override;
    void setString(std::string_view key, std::string_view value) override;
    void setBoolean(std::string_view key, bool value) override;
    void setInteger(std::string_view key, std::int64_t value) override;
    void setNumber(std::string_view key, double value) override;
    void setStrings(std::string_view key, const std::vector<std::string>& value) override;
    void remove(std::string_view key) override;

    /// All values as one JSON object, pretty and sorted: what the file holds.
    std::string document() const;
    /// Takes over all values of a JSON object without running `onChange`. Throws `JsonError` and keeps the
    /// old ones.
    void load(std::string_view document);

private:
    struct Foreign {
        std::string json;
        friend bool operator==(const Foreign&, const Foreign&) = default;
    };
    using Value = std::variant<bool, std::int64_t, double, std::string, std::vector<std::string>, Foreign>;

    void set(std::string_view key, Value value);

    std::map<std::string, Value, std::less<>> values_;
};

} // namespace FellowCore
