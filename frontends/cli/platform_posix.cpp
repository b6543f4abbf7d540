#include "cli/platform.hpp"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <utility>

namespace numcore::cli {

namespace {

// Another program cut the file short while it was mapped.
void onBusError(int) {
    static constexpr char kText[] = "numcore: the input file became shorter while it was read\n";
    [[maybe_unused]] const auto n = write(STDERR_FILENO, kText, sizeof kText - 1);
    _exit(2);
}

// A closed standard stream would give its number to the next file that is opened. The stand-in is open for the
// other direction, so that using it fails as a closed one does.
void openStandardDescriptors() {
    for (int descriptor = 0; descriptor < 3; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) != -1) continue;
        [[maybe_unused]] const int got = open("/dev/null", descriptor == 0 ? O_WRONLY : O_RDONLY);
    }
}

}  // namespace

std::vector<std::string> startProcess(int argc, char** argv) {
    openStandardDescriptors();
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGBUS, onBusError);
    return {argv, argv + argc};
}

std::filesystem::path pathFromUtf8(std::string_view text) {
    return {text};
}

std::FILE* openFile(const std::filesystem::path& path, const char* mode) {
    return std::fopen(path.c_str(), mode);
}

bool isTerminal(std::FILE* stream) {
    return isatty(fileno(stream)) == 1;
}

int terminalWidth(std::FILE* stream) {
    winsize size{};
    return isTerminal(stream) && ioctl(fileno(stream), TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

unsigned long processNumber() {
    return static_cast<unsigned long>(getpid());
}

FileMapping::FileMapping(const std::filesystem::path& path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return;
    struct stat status {};
    if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0) {
        const auto size = static_cast<std::size_t>(status.st_size);
        void* data = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
        if (data != MAP_FAILED) {
            data_ = static_cast<const char*>(data);
            size_ = size;
            madvise(data, size, MADV_SEQUENTIAL);
        }
    }
    close(descriptor);
}

FileMapping::FileMapping(FileMapping&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)) {}

FileMapping& FileMapping::operator=(FileMapping&& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    return *this;
}

FileMapping::~FileMapping() {
    if (data_ != nullptr) munmap(const_cast<char*>(data_), size_);
}

}  // namespace numcore::cli
