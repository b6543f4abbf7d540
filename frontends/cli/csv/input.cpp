#include "cli/csv/input.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <new>

#include "cli/csv/encoding.hpp"
#include "cli/errors.hpp"

namespace numcore::cli {

namespace {

/// Reads a stream to its end in growing blocks.
Bytes readAll(std::FILE* stream, const std::string& name, Progress& progress) {
    constexpr std::size_t kFirstBlock = std::size_t{1} << 16;
    constexpr std::size_t kLargestRead = std::size_t{1} << 22;
    Bytes bytes;
    std::size_t used = 0;
    for (;;) {
        if (bytes.size() - used < kFirstBlock) bytes.resize(std::max(kFirstBlock, bytes.size() * 2));
        const std::size_t got =
            std::fread(bytes.data() + used, 1, std::min(kLargestRead, bytes.size() - used), stream);
        used += got;
        progress.report(used, 0);
        if (got == 0) break;
    }
    if (std::ferror(stream) != 0)
        throw DataError(fmt::format("{}: cannot read: {}", name, std::strerror(errno)));
    bytes.resize(used);
    return bytes;
}

}  // namespace

void Bytes::resize(std::size_t size) {
    // One more byte: nothing to reallocate to is no failure.
    char* data = static_cast<char*>(std::realloc(data_.get(), size + 1));
    if (data == nullptr) throw std::bad_alloc();
    static_cast<void>(data_.release());
    data_.reset(data);
    size_ = size;
}

Input Input::open(const std::string& file, Progress& progress) {
    Input input;
    if (file == "-") {
        input.bytes_ = readAll(stdin, "standard input", progress);
        input.text_ = {input.bytes_.data(), input.bytes_.size()};
        return input;
    }
    const auto path = pathFromUtf8(file);
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) {
        throw DataError(fmt::format("{}: is a directory; name a file", printable(file)));
    }
    input.mapping_ = FileMapping(path);
    input.text_ = input.mapping_.bytes();
    if (input.text_.empty()) {
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(openFile(path, "rb"), std::fclose);
        if (!stream) throw DataError(fmt::format("{}: cannot open: {}", printable(file), std::strerror(errno)));
        input.bytes_ = readAll(stream.get(), printable(file), progress);
        input.text_ = {input.bytes_.data(), input.bytes_.size()};
    }
    return input;
}

Input Input::fromBytes(std::string_view bytes) {
    Input input;
    input.converted_.assign(bytes.begin(), bytes.end());
    input.text_ = {input.converted_.data(), input.converted_.size()};
    return input;
}

void Input::decode(std::optional<Encoding> given, std::vector<std::string>& warnings) {
    EncodingGuess guess;
    if (given) {
        guess = {*given, byteOrderMark(text_, *given), false};
    } else {
        guess = guessEncoding(text_);
    }
    encoding_ = guess.encoding;
    hadByteOrderMark_ = guess.markLength > 0;
    text_.remove_prefix(guess.markLength);
    if (guess.assumed) {
        warnings.push_back("the text is not UTF-8; read as Windows-1252 (set --encoding to be sure)");
    } else if (encoding_ == Encoding::kUtf8 && (given || hadByteOrderMark_) &&
               firstBadUtf8(text_) != text_.size()) {
        warnings.push_back("the text is not well-formed UTF-8; bad bytes show as U+FFFD");
    }
    if (encoding_ == Encoding::kUtf8) return;
    converted_ = convertToUtf8(text_, encoding_);
    mapping_ = FileMapping();
    bytes_ = Bytes();
    text_ = {converted_.data(), converted_.size()};
}

const char* encodingName(Encoding encoding) {
    switch (encoding) {
        case Encoding::kUtf16Le:
            return "UTF-16LE";
        case Encoding::kUtf16Be:
            return "UTF-16BE";
        case Encoding::kLatin1:
            return "Latin-1";
        case Encoding::kWindows1252:
            return "Windows-1252";
        case Encoding::kUtf8:
            break;
    }
    return "UTF-8";
}

}  // namespace numcore::cli
