#include "core/art/ManifestReading.h"

#include "core/base/Json.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <climits>
#include <utility>

namespace FellowCore {

namespace {

using Behaviour = CharacterManifest::Behaviour;

constexpr std::array<std::pair<std::string_view, Behaviour>, 4> behaviourNames{{
    {"none", Behaviour::none},
    {"idle", Behaviour::idle},
    {"blink", Behaviour::blink},
    {"timer", Behaviour::timer},
}};

Behaviour behaviourNamed(std::string_view name, const std::string& field) {
    for (const auto& [known, behaviour] : behaviourNames) {
        if (name == known) {
            return behaviour;
        }
    }
    throw JsonError(JsonError::Kind::outOfRange, field, R"(must be "none", "idle", "blink" or "timer")");
}

int smallInteger(const JsonFields& fields, std::string_view key) {
    const std::int64_t value = fields.integer(key);
    if (value < INT_MIN || value > INT_MAX) {
        throw JsonError(JsonError::Kind::outOfRange, fields.pathOf(key), "is out of range");
    }
    return static_cast<int>(value);
}

CharacterManifest::Point point(const JsonFields& fields) {
    return {fields.number("x"), fields.number("y")};
}

std::map<std::string, std::string> poses(const JsonFields& fields) {
    const JsonFields entries = fields.object("poses");
    std::map<std::string, std::string> read;
    for (const auto& entry : fields.value("poses").items()) {
        read.emplace(entry.key(), entries.string(entry.key()));
    }
    return read;
}

std::vector<Behaviour> behaviours(const JsonFields& fields) {
    std::vector<Behaviour> read;
    for (const std::string& name : fields.strings("behaviours")) {
        read.push_back(behaviourNamed(name, "behaviours[" + std::to_string(read.size()) + "]"));
    }
    return read;
}

/// One top-level field: how it gets from the document into the manifest.
struct Field {
    std::string_view key;
    void (*read)(const JsonFields&, CharacterManifest&);
};

constexpr std::array<Field, 11> fieldTable{{
    {"id", [](const JsonFields& from, CharacterManifest& into) { into.id = from.string("id"); }},
    {"name", [](const JsonFields& from, CharacterManifest& into) { into.name = from.string("name"); }},
    {"role", [](const JsonFields& from, CharacterManifest& into) { into.role = from.string("role"); }},
    {"poses", [](const JsonFields& from, CharacterManifest& into) { into.poses = poses(from); }},
    {"face", [](const JsonFields& from, CharacterManifest& into) { into.face = point(from.object("face")); }},
    {"ground",
     [](const JsonFields& from, CharacterManifest& into) { into.ground = point(from.object("ground")); }},
    {"grid",
     [](const JsonFields& from, CharacterManifest& into) {
         const JsonFields grid = from.object("grid");
         into.grid = {smallInteger(grid, "width"), smallInteger(grid, "height")};
     }},
    {"accent",
     [](const JsonFields& from, CharacterManifest& into) {
         const JsonFields accent = from.object("accent");
         into.accent = {accent.number("red"), accent.number("green"), accent.number("blue")};
     }},
    {"behaviours",
     [](const JsonFields& from, CharacterManifest& into) { into.behaviours = behaviours(from); }},
    {"order",
     [](const JsonFields& from, CharacterManifest& into) {
         if (from.has("order")) {
             into.order = smallInteger(from, "order");
         }
     }},
    {"scaleReferenceHeight",
     [](const JsonFields& from, CharacterManifest& into) {
         if (from.has("scaleReferenceHeight")) {
             into.scaleReferenceHeight = from.number("scaleReferenceHeight");
         }
     }},
}};

/// The error as a rule in words; its own text leads with where it was.
ManifestProblem problemOf(const JsonError& error) {
    const std::string text = error.what();
    const std::size_t place = text.find(": ", error.field().size());
    const std::string subject = error.kind() == JsonError::Kind::notJson ? "the document cannot be read: "
                                : error.field().empty()                  ? "the document "
                                                                         : '"' + error.field() + "\" ";
    return {ManifestError::Kind::invalidManifest, CharacterManifest::fileName,
            subject + text.substr(place + 2) + "."};
}

} // namespace

ManifestReading::ManifestReading(std::string_view text) {
    Json document;
    try {
        document = parseJson(text);
        const JsonFields fields(document);
    } catch (const JsonError& error) {
        problems.push_back(problemOf(error));
        for (const Field& field : fieldTable) {
            unreadable.emplace(field.key);
        }
        return;
    }
    const JsonFields fields(document);
    for (const Field& field : fieldTable) {
        try {
            field.read(fields, manifest);
        } catch (const JsonError& error) {
            problems.push_back(problemOf(error));
            unreadable.emplace(field.key);
        }
    }
    for (const auto& entry : document.items()) {
        if (std::ranges::find(fieldTable, entry.key(), &Field::key) == fieldTable.end()) {
            unknownKeys.push_back(entry.key());
        }
    }
}

} // namespace FellowCore
