// SPDX-License-Identifier: Apache-2.0
// The reader of documents: what it takes is written in one form only, and all else is refused by a failure.
#include "state/document.h"

#include <cstdlib>
#include <string>

#include "fuzz_target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const std::string input(reinterpret_cast<const char*>(data), size);
        const std::string written = state::write_document(state::read_document(input));
        if (state::write_document(state::read_document(written)) != written) {
            std::abort();
        }
    } catch (const state::failure&) {
        // Most inputs are refused.
    }
    return 0;
}
