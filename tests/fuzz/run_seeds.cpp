// Stands in for the fuzzer: tries each file of a folder once.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include "fuzz/fuzz.h"

int main(int, char** arguments) {
    for (const auto& seed : std::filesystem::directory_iterator(arguments[1])) {
        std::cerr << seed.path() << "\n";
        std::ifstream file(seed.path(), std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(file), {});
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    return 0;
}
