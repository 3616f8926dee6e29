#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Tries one input; what must hold for every input is asserted. Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

/// An input, taken off piece by piece; at its end there are only zeros and empty texts.
struct FuzzInput {
    FuzzInput(const std::uint8_t* bytes, std::size_t size) : rest(reinterpret_cast<const char*>(bytes), size) {}

    std::string_view text(int most) {
        const std::string_view taken = rest.substr(0, static_cast<std::size_t>(most));
        rest.remove_prefix(taken.size());
        return taken;
    }
    int number() {
        const std::string_view byte = text(1);
        return byte.empty() ? 0 : static_cast<unsigned char>(byte.front());
    }

    std::string_view rest;
};
