// SPDX-License-Identifier: Apache-2.0
#include "tool/failing.h"

#include <algorithm>
#include <charconv>
#include <iostream>
#include <vector>

#include "core/json_text.h"
#include "core/wished_failure.h"
#include "tool/service_calls.h"
#include "tool/usage.h"

namespace local_service {
namespace {

const service_call& find_call(const std::string& name) {
    const auto* found = std::find_if(service_calls.begin(), service_calls.end(),
                                     [&](const service_call& call) { return call.name == name; });
    if (found != service_calls.end()) {
        return *found;
    }
    std::vector<std::string> names;
    names.reserve(service_calls.size());
    for (const service_call& call : service_calls) {
        names.emplace_back(call.name);
    }
    throw unknown_word("service function", name, names);
}

int number_in(const std::string& text) {
    int number = 0;
    const char* end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stopped != end) {
        throw usage_error("'" + text + "' is no number that a service function can return");
    }
    return number;
}

int result_of(const service_call& call, const std::string& result) {
    switch (call.result) {
        case call_result::nothing:
            throw usage_error(std::string(call.name) + " returns nothing, so it cannot fail");
        case call_result::pointer:
            if (result != "null") {
                throw usage_error(std::string(call.name) + " returns a pointer, so it can only fail with null");
            }
            return 0;
        default:
            return number_in(result);
    }
}

}  // namespace

void wish_failure(const typed_wish& wish) {
    const service_call& call = find_call(wish.call);
    add_failure_wish({call.name, result_of(call, wish.result), wish.times, wish.after, wish.error});
}

void print_failure_wishes() {
    for (const failure_wish& wish : read_failure_wishes()) {
        const bool is_pointer = find_call(wish.call).result == call_result::pointer;
        std::cout << wish.call << ' ' << (is_pointer ? "null" : std::to_string(wish.result));
        if (wish.times.has_value()) {
            std::cout << " --times " << *wish.times;
        }
        if (wish.after != 0) {
            std::cout << " --after " << wish.after;
        }
        if (!wish.error.empty()) {
            std::cout << " --error " << json_text(wish.error);
        }
        std::cout << '\n';
    }
}

}  // namespace local_service
