#include "core/worldclock/CityTable.h"

// A megabyte of text as a literal costs each compiler many seconds and has a length limit of its own; the
// assembler takes the file as it is.
__asm__(".pushsection .rodata\n"
        ".global deskfellowCityTableBegin\n"
        ".global deskfellowCityTableEnd\n"
        "deskfellowCityTableBegin:\n"
        ".incbin \"" DESKFELLOW_CITY_TABLE "\"\n"
        "deskfellowCityTableEnd:\n"
        ".byte 0\n"
        ".popsection\n");

extern "C" {
extern const char deskfellowCityTableBegin[];
extern const char deskfellowCityTableEnd[];
}

namespace FellowCore {

std::string_view builtInCityTable() {
    return {deskfellowCityTableBegin, deskfellowCityTableEnd};
}

} // namespace FellowCore
