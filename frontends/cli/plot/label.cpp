#include "cli/plot/label.hpp"

#include <cstddef>

#include "cli/output/writers.hpp"

namespace numcore::cli::plot {

std::string shortLabel(const std::string& name, int longest) {
    if (displayWidth(name) <= longest) return name;
    std::string cut;
    // Whole characters: a UTF-8 character begins at a byte that continues none.
    for (std::size_t at = 0; at < name.size();) {
        std::size_t next = at + 1;
        while (next < name.size() && (static_cast<unsigned char>(name[next]) & 0xC0U) == 0x80U) ++next;
        if (displayWidth(cut) + 2 > longest) break;
        cut += name.substr(at, next - at);
        at = next;
    }
    return cut + "…";
}

}  // namespace numcore::cli::plot
