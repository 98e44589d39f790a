#include "core/art/ManifestError.h"

#include "core/base/Text.h"

namespace FellowCore {

ManifestError::ManifestError(const ManifestProblem& problem)
    : std::runtime_error(problem.sentence()), kind_(problem.kind), file_(problem.file), rule_(problem.rule) {}

std::string ManifestProblem::sentence() const {
    return singleLine(file + ": " + rule);
}

} // namespace FellowCore
