#include "bench/support/Options.h"

#include <stdexcept>
#include <string_view>

namespace Bench {

Options::Options(int count, char** values) {
    const auto build = std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path();
    program = build / "bin" / "deskfellow";
    for (int i = 1; i < count; ++i) {
        const std::string_view argument = values[i];
        if (argument == "--quick") {
            quick = true;
        } else if (argument == "--program" && i + 1 < count) {
            program = std::filesystem::absolute(values[++i]);
        } else {
            throw std::runtime_error("usage: [--quick] [--program PATH]");
        }
    }
    if (!std::filesystem::is_regular_file(program)) {
        throw std::runtime_error(program.string() + " is not there; build it first");
    }
    resources = program.parent_path().parent_path() / "share" / "deskfellow";
}

} // namespace Bench
