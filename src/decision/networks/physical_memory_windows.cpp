#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <limits>

#include "decision/networks/junction_tree.hpp"

namespace numcore::networks {

double physicalMemory() {
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof status;
    if (GlobalMemoryStatusEx(&status) == 0) return std::numeric_limits<double>::infinity();
    return static_cast<double>(status.ullTotalPhys);
}

}  // namespace numcore::networks
