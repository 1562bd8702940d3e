// SPDX-License-Identifier: Apache-2.0
#include "core/heap.h"

#include <algorithm>

namespace local_service {
char* heap_text(std::string_view text) {
    char* copy = allocate<char>(text.size() + 1);
    std::copy(text.begin(), text.end(), copy);
    return copy;
}

char** heap_texts::release() {
    char** const list = allocate<char*>(count() + 1);
    std::transform(texts_.begin(), texts_.end(), list, [](auto& text) { return text.release(); });
    return list;
}

char** heap_list(const std::vector<std::string>& texts) {
    heap_texts list;
    for (const std::string& text : texts) {
        list.add(text);
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
