// SPDX-License-Identifier: Apache-2.0
#include "core/heap.h"

#include <algorithm>

namespace local_service {
namespace {

struct list_deleter {
    void operator()(char** list) const noexcept { free_heap_list(list); }
};

}  // namespace

char* heap_text(const std::string& text) {
    char* copy = allocate<char>(text.size() + 1);
    std::copy(text.begin(), text.end(), copy);
    return copy;
}

char** heap_list(const std::vector<std::string>& texts) {
    std::unique_ptr<char*[], list_deleter> list(allocate<char*>(texts.size() + 1));
    for (std::size_t index = 0; index < texts.size(); ++index) {
        list[index] = heap_text(texts[index]);
    }
    return list.release();
}

void free_heap_list(char** list) noexcept {
    if (list == nullptr) {
        return;
    }
    for (char** entry = list; *entry != nullptr; ++entry) {
        std::free(*entry);
    }
    std::free(list);
}

}  // namespace local_service
