// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

/// Tries one input. Returns 0, or does not return where it found something. The name is libFuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size);  // NOLINT(readability-identifier-naming)

/// The input as a text of any bytes.
inline std::string text_of_input(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// Ends the target where something that has to hold does not; `what` says what was found.
inline void require(bool holds, const char* what) {
    if (!holds) {
        static_cast<void>(std::fprintf(stderr, "found: %s\n", what));
        std::abort();
    }
}
