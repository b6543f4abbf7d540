#include "cli/platform.hpp"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
// windows.h comes first: the others need its types.
#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <utility>

namespace numcore::cli {

namespace {

std::string toUtf8(const wchar_t* text) {
    const int n = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string out(n > 0 ? static_cast<std::size_t>(n - 1) : 0, '\0');
    if (n > 1) WideCharToMultiByte(CP_UTF8, 0, text, -1, out.data(), n, nullptr, nullptr);
    return out;
}

HANDLE handleOf(std::FILE* stream) {
    return reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
}

}  // namespace

std::vector<std::string> startProcess(int argc, char** argv) {
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
    // The C runtime's arguments are in the system's 8-bit encoding.
    int n = 0;
    wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &n);
    if (wide == nullptr) return {argv, argv + argc};
    std::vector<std::string> out;
    for (int i = 0; i < n; ++i) out.push_back(toUtf8(wide[i]));
    LocalFree(wide);
    return out;
}

std::filesystem::path pathFromUtf8(std::string_view text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

std::FILE* openFile(const std::filesystem::path& path, const char* mode) {
    const std::wstring wide(mode, mode + std::char_traits<char>::length(mode));
    return _wfopen(path.c_str(), wide.c_str());
}

bool isTerminal(std::FILE* stream) {
    DWORD mode = 0;
    return GetConsoleMode(handleOf(stream), &mode) != 0;
}

int terminalWidth(std::FILE* stream) {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    return GetConsoleScreenBufferInfo(handleOf(stream), &info) != 0 ? info.dwSize.X : 0;
}

unsigned long processNumber() {
    return GetCurrentProcessId();
}

FileMapping::FileMapping(const std::filesystem::path& path) {
    HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return;
    LARGE_INTEGER size{};
    if (GetFileSizeEx(file, &size) != 0 && size.QuadPart > 0) {
        HANDLE mapping = CreateFileMappingW(file, nullptr, PAGE_READONLY, 0, 0, nullptr);
        void* data = mapping != nullptr ? MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0) : nullptr;
        if (data != nullptr) {
            data_ = static_cast<const char*>(data);
            size_ = static_cast<std::size_t>(size.QuadPart);
        }
        if (mapping != nullptr) CloseHandle(mapping);
    }
    CloseHandle(file);
}

FileMapping::FileMapping(FileMapping&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)) {}

FileMapping& FileMapping::operator=(FileMapping&& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    return *this;
}

FileMapping::~FileMapping() {
    if (data_ != nullptr) UnmapViewOfFile(data_);
}

}  // namespace numcore::cli
