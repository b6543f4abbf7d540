#include "cli/plot/label.hpp"

#include "cli/output/writers.hpp"

namespace numcore::cli::plot {

std::string shortLabel(const std::string& name, std::size_t longest) {
    if (static_cast<std::size_t>(displayWidth(name)) <= longest) return name;
    std::string cut;
    // Whole characters: a UTF-8 character begins at a byte that continues none.
    for (std::size_t at = 0; at < name.size();) {
        std::size_t next = at + 1;
        while (next < name.size() && (static_cast<unsigned char>(name[next]) & 0xC0U) == 0x80U) ++next;
        if (static_cast<std::size_t>(displayWidth(cut)) + 2 > longest) break;
        cut += name.substr(at, next - at);
        at = next;
    }
    return cut + "…";
}

}  // namespace numcore::cli::plot
