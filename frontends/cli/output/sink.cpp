#include "cli/output/sink.hpp"

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "cli/errors.hpp"
#include "cli/platform.hpp"

namespace numcore::cli {

namespace {

namespace fs = std::filesystem;

/// Writes and flushes; 0 or the error number.
int writeAll(std::FILE* stream, std::string_view text) {
    errno = 0;
    const bool whole = std::fwrite(text.data(), 1, text.size(), stream) == text.size();
    if (std::fflush(stream) == 0 && whole) return 0;
    return errno != 0 ? errno : EIO;
}

DataError cannotWrite(const std::string& path, int error) {
    return DataError(fmt::format("{}: cannot write: {}", printable(path), std::strerror(error)));
}

void writeAndClose(const std::string& shownPath, const fs::path& path, std::string_view text) {
    std::FILE* stream = openFile(path, "wb");
    if (stream == nullptr) throw cannotWrite(shownPath, errno);
    int error = writeAll(stream, text);
    if (std::fclose(stream) != 0 && error == 0) error = errno;
    if (error != 0) throw cannotWrite(shownPath, error);
}

}  // namespace

void writeStandardOutput(std::string_view text) {
    const int error = writeAll(stdout, text);
    if (error == EPIPE) throw OutputClosed();
    if (error != 0) throw cannotWrite("standard output", error);
}

void writeFile(const std::string& path, std::string_view text) {
    std::error_code failure;
    fs::path target = pathFromUtf8(path);
    const fs::file_status status = fs::status(target, failure);
    if (fs::exists(status) && !fs::is_regular_file(status)) return writeAndClose(path, target, text);
    // A symbolic link keeps pointing to the file that is replaced.
    if (fs::exists(status)) target = fs::canonical(target, failure);
    fs::path temporary = target;
    temporary += fmt::format(".{}.tmp", processNumber());
    try {
        writeAndClose(path, temporary, text);
    } catch (...) {
        fs::remove(temporary, failure);
        throw;
    }
    if (fs::exists(status)) fs::permissions(temporary, status.permissions(), failure);
    fs::rename(temporary, target, failure);
    if (failure) {
        std::error_code ignored;
        fs::remove(temporary, ignored);
        throw DataError(fmt::format("{}: cannot replace: {}", printable(path), failure.message()));
    }
}

}  // namespace numcore::cli
