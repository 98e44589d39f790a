#pragma once

#include <stdexcept>
#include <string>

namespace FellowCore {

struct ManifestProblem;

/// A character pack that is refused. `what()` is one sentence that names the file and the rule, such as
/// `manifest.json: "id" must use only a-z, 0-9 and "-".`
class ManifestError : public std::runtime_error {
public:
    enum class Kind {
        invalidManifest, ///< the manifest cannot be read or breaks a rule
        invalidAsset,    ///< an image that is missing, damaged or outside the pack
        invalidCanvas,   ///< an image or its art of the wrong size
        emptyArtwork,    ///< nothing to see in any pose
        reservedID,      ///< the identifier of a built-in character
    };

    explicit ManifestError(const ManifestProblem& problem);

    Kind kind() const { return kind_; }
    /// The file inside the pack that is at fault.
    const std::string& file() const { return file_; }
    /// The rule that it breaks: the sentence without the file.
    const std::string& rule() const { return rule_; }

private:
    Kind kind_;
    std::string file_;
    std::string rule_;
};

/// One finding about a pack, before it is decided whether to throw the first or to tell all.
struct ManifestProblem {
    ManifestError::Kind kind = ManifestError::Kind::invalidManifest;
    std::string file;
    std::string rule;

    /// "FILE: RULE", on one line.
    std::string sentence() const;
    friend bool operator==(const ManifestProblem&, const ManifestProblem&) = default;
};

} // namespace FellowCore
