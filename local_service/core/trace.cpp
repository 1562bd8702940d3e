// SPDX-License-Identifier: Apache-2.0
#include "core/trace.h"

#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <string_view>

#include "core/json_text.h"

namespace local_service {
namespace {

struct destination {
    int descriptor = -1;
    bool is_json = false;
};

destination read_destination() noexcept {
    const char* value = std::getenv(trace_variable);
    const std::string_view wanted = value == nullptr ? "" : value;
    const std::size_t colon = wanted.find(':');
    destination found;
    if (colon != std::string_view::npos) {
        std::from_chars(wanted.data() + colon + 1, wanted.data() + wanted.size(), found.descriptor);
        found.is_json = wanted.substr(0, colon) == "json";
    }
    return found;
}

const destination& chosen_destination() noexcept {
    static const destination chosen = read_destination();
    return chosen;
}

void write_line(const char* function, std::initializer_list<argument> arguments, const argument* result) noexcept {
    try {
        const bool is_json = chosen_destination().is_json;
        value_writer line;
        if (is_json) {
            line.write_plain("{\"call\": ");
            line.write(function);
            line.write_plain(", \"arguments\": ");
            line.write_object(arguments);
        } else {
            line.write_plain(function);
            line.write_arguments(arguments);
        }
        if (result != nullptr) {
            line.write_plain(is_json ? ", \"result\": " : " = ");
            result->write(line);
        }
        line.write_plain(is_json ? "}\n" : "\n");
        // One write a line, so that the lines of several processes stay whole.
        [[maybe_unused]] const ssize_t written =
            ::write(chosen_destination().descriptor, line.text().data(), line.text().size());
    } catch (...) {
        // The call itself matters more than what is told about it.
        return;
    }
}

}  // namespace

void value_writer::write(const char* text) {
    text_ += text == nullptr ? "null" : json_text(text);
}

void value_writer::write(char* const* texts) {
    if (texts == nullptr) {
        text_ += "null";
        return;
    }
    std::int64_t count = 0;
    while (texts[count] != nullptr) {
        ++count;
    }
    write(borrowed_array<char*>{texts, count});
}

void value_writer::write(const std::uint64_t* count) {
    write(*count);
}

void value_writer::write(const std::int32_t* count) {
    write(*count);
}

void value_writer::write_object(std::initializer_list<argument> fields) {
    text_ += '{';
    const char* before = "";
    for (const argument& field : fields) {
        text_ += before;
        before = ", ";
        write(field.name());
        text_ += ": ";
        field.write(*this);
    }
    text_ += '}';
}

void value_writer::write_arguments(std::initializer_list<argument> arguments) {
    text_ += '(';
    const char* before = "";
    for (const argument& given : arguments) {
        text_ += before;
        before = ", ";
        text_ += given.name();
        text_ += '=';
        given.write(*this);
    }
    text_ += ')';
}

bool is_traced() noexcept {
    return chosen_destination().descriptor >= 0;
}

void write_trace(const char* function, std::initializer_list<argument> arguments, const argument& result) noexcept {
    write_line(function, arguments, &result);
}

void trace(const char* function, std::initializer_list<argument> arguments) noexcept {
    if (is_traced()) {
        write_line(function, arguments, nullptr);
    }
}

}  // namespace local_service
