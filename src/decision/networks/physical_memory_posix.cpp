#include <unistd.h>

#include <limits>

#include "decision/networks/junction_tree.hpp"

namespace numcore::networks {

double physicalMemory() {
    const long nPages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGE_SIZE);
    if (nPages <= 0 || pageSize <= 0) return std::numeric_limits<double>::infinity();
    return static_cast<double>(nPages) * static_cast<double>(pageSize);
}

}  // namespace numcore::networks
