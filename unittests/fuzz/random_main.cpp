// Runs a fuzz target on pseudo-random inputs, the same ones every time, and on files given as arguments: what
// the ordinary tests do with a target, without a fuzzer.
//
//   usage: <target> [COUNT | FILE...]
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

constexpr std::size_t kLongest = 4096;

/// Every second input is any bytes, the others are made of what stands in tables of text.
std::vector<std::uint8_t> randomInput(std::mt19937_64& random, bool anyByte) {
    constexpr std::string_view kTableBytes =
        "0123456789012345,,;;\t\"\"\n\n\r..-+eE aNA/:\xEF\xBB\xBF\xC3\xA9\xFF";
    const std::size_t longest = random() % 4 == 0 ? kLongest : 256;
    std::vector<std::uint8_t> bytes(random() % longest);
    for (std::uint8_t& byte : bytes) {
        byte = anyByte ? static_cast<std::uint8_t>(random())
                       : static_cast<std::uint8_t>(kTableBytes[random() % kTableBytes.size()]);
    }
    return bytes;
}

void runFile(const char* path) {
    std::ifstream in(path, std::ios::binary);
    const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    std::printf("%s: %zu bytes\n", path, bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
    char* end = nullptr;
    const unsigned long count = argc == 2 ? std::strtoul(argv[1], &end, 10) : 1000;
    if (argc > 2 || (end != nullptr && *end != '\0')) {
        for (int i = 1; i < argc; ++i) runFile(argv[i]);
        return 0;
    }
    std::mt19937_64 random(20241107);
    for (unsigned long i = 0; i < count; ++i) {
        const std::vector<std::uint8_t> bytes = randomInput(random, i % 2 == 0);
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    std::printf("%lu inputs\n", count);
    return 0;
}
