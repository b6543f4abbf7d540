#include "suite/hostcore.hpp"

#include <algorithm>
#include <mutex>

namespace numcore::hostcore {
namespace {

struct Source {
    StringSource read = nullptr;
    void* context = nullptr;
};

// The pair changes as one; a lock needs no library beside the compiler's, as an atomic of 16 bytes would.
std::mutex sourceMutex;
Source currentSource;

Source readSource() {
    const std::lock_guard lock(sourceMutex);
    return currentSource;
}

}  // namespace

void setStringSource(StringSource source, void* context) {
    const std::lock_guard lock(sourceMutex);
    currentSource = {source, context};
}

std::vector<std::u16string> Cpp_GetRessourceStrings(std::int32_t group, std::int32_t count) {
    const std::int32_t nRows = std::clamp(count, 0, kMaxStrings);
    std::vector<std::u16string> strings(static_cast<std::size_t>(nRows));
    const Source source = readSource();
    if (source.read == nullptr) return strings;
    for (std::int32_t row = 1; row <= nRows; ++row) {
        const char16_t* text = source.read(source.context, group, row);
        if (text != nullptr) strings[static_cast<std::size_t>(row - 1)] = text;
    }
    return strings;
}

}  // namespace numcore::hostcore
