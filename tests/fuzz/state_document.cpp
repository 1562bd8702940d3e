// SPDX-License-Identifier: Apache-2.0
// The reader of documents: what it takes is written in one form only, and all else is refused by a failure.
#include "state/document.h"

#include <string>

#include "fuzz_target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const std::string written = state::write_document(state::read_document(text_of_input(data, size)));
        require(state::write_document(state::read_document(written)) == written, "a document is written in two forms");
    } catch (const state::failure&) {
        // Most inputs are refused.
    }
    return 0;
}
