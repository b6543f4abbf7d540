// The few things that differ between operating systems.
#pragma once

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace numcore::cli {

/// Prepares the process: standard descriptors open, binary streams, UTF-8 console, no death by a closed pipe.
/// Returns the arguments in UTF-8.
std::vector<std::string> startProcess(int argc, char** argv);

/// A path from UTF-8 text.
std::filesystem::path pathFromUtf8(std::string_view text);

/// Opens a file ("rb", "wb"); null with errno set.
std::FILE* openFile(const std::filesystem::path& path, const char* mode);

bool isTerminal(std::FILE* stream);
/// Columns of the terminal behind a stream; 0 when it is not one.
int terminalWidth(std::FILE* stream);
/// A number that no other running process has.
unsigned long processNumber();

/// The bytes of a file mapped into memory, read only. Empty when the file cannot be mapped (a pipe, a device):
/// then it has to be read.
class FileMapping {
  public:
    FileMapping() = default;
    explicit FileMapping(const std::filesystem::path& path);
    FileMapping(FileMapping&& other) noexcept;
    FileMapping& operator=(FileMapping&& other) noexcept;
    FileMapping(const FileMapping&) = delete;
    FileMapping& operator=(const FileMapping&) = delete;
    ~FileMapping();
    std::string_view bytes() const { return {data_, size_}; }

  private:
    const char* data_ = nullptr;
    std::size_t size_ = 0;
};

}  // namespace numcore::cli
