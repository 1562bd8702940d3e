// SPDX-License-Identifier: Apache-2.0
#include "tool/show.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>

#include "core/json_text.h"
#include "core/log.h"
#include "core/state_directory.h"
#include "core/wished_failure.h"
#include "tool/content.h"
#include "tool/document.h"
#include "tool/document_fields.h"

namespace local_service {
namespace {

constexpr int name_width = 18;
constexpr int status_width = 6;
constexpr std::chrono::milliseconds follow_interval(200);

std::string name_of_module(int module) {
    const auto* found = std::find_if(modules.begin(), modules.end(),
                                     [&](const known_module& candidate) { return candidate.number == module; });
    return found == modules.end() ? std::to_string(module) : found->name;
}

std::string on_or_off(int status) {
    return status == 0 ? "off" : "on";
}

void print_row(const std::string& name, const std::string& text) {
    std::cout << std::left << std::setw(name_width) << name << text << '\n';
}

void print_states(const framework_state& states) {
    print_row("Framework:", word_of_status(states.now) + ", after a restart " + word_of_status(states.after_restart));
    print_row("Secret scene:", on_or_off(states.is_secret_scene ? 1 : 0));
    print_row("Restarts:", std::to_string(states.restarts) + " simulated, " +
                               std::to_string(states.requested_restarts) + " of them asked for by a change of state");
    std::cout << '\n';
    print_row("Modules:", "now   after a restart");
    for (const module_state& module : states.modules) {
        std::cout << "  " << std::setw(name_width - 2) << name_of_module(module.number) << std::setw(status_width)
                  << on_or_off(module.now) << on_or_off(module.after_restart) << '\n';
    }
}

/// Returns `text` as it is where that can be told from everything else on a line, else as JSON.
std::string line_form(const std::string& text) {
    const bool is_plain = is_utf8(text) && !text.empty() && text.front() != '"' && text.front() != '{' &&
                          std::none_of(text.begin(), text.end(), [](char letter) {
                              return static_cast<unsigned char>(letter) < ' ' || letter == '\x7f';
                          });
    return is_plain && text.front() != ' ' && text.back() != ' ' ? text : json_text(text);
}

/// Prints the heading `title` and a row for each of `items`, where there are some.
template <class Items, class PrintRow>
void print_list(const char* title, const Items& items, PrintRow print_one) {
    if (items.empty()) {
        return;
    }
    std::cout << '\n' << title << ":\n";
    for (const auto& item : items) {
        std::cout << "  ";
        print_one(item);
        std::cout << '\n';
    }
}

std::string word_of_net_status(std::int32_t status) {
    switch (status) {
        case netctl_allow:
            return "allow";
        case netctl_deny:
            return "deny";
        default:
            return std::to_string(status);
    }
}

void print_net_policy(const net_policy& policy, std::size_t part) {
    std::cout << line_form(policy.name) << ": " << word_of_net_status(policy.status) << ", user " << policy.uid
              << ", tag " << policy.tag;
    for (std::size_t index = 0; index < policy.texts.size(); ++index) {
        if (const char* field = net_text_fields[part][index]; field != nullptr) {
            std::cout << ", " << field << ' ' << json_text(policy.texts[index]);
        }
    }
}

void print_excepted(const excepted_object& object) {
    std::cout << line_form(object.resource) << ':';
    for (const stored_exception& exception : object.exceptions) {
        std::cout << "\n    " << word_of_exception(exception.kind) << ' ' << line_form(exception.text);
    }
}

void print_policies(const store_content& content) {
    print_list("Files on the whitelist of execution control", content.whitelist, [](const whitelisted_file& file) {
        std::cout << std::left << std::setw(status_width + 2) << word_of(status_of(file)) << line_form(file.path);
    });
    for (std::size_t part = 0; part < net_parts.size(); ++part) {
        print_list(net_parts[part].title, content.net[part],
                   [&](const net_policy& policy) { print_net_policy(policy, part); });
    }
    for (std::size_t part = 0; part < text_parts.size(); ++part) {
        print_list(text_parts[part].title, content.texts[part],
                   [](const std::string& text) { std::cout << line_form(text); });
    }
    for (std::size_t part = 0; part < exception_parts.size(); ++part) {
        print_list(exception_parts[part].title, content.exceptions[part], print_excepted);
    }
}

std::string format_time(std::int64_t time_ms) {
    const std::time_t seconds = time_ms / 1000;
    std::tm local{};
    localtime_r(&seconds, &local);
    std::ostringstream text;
    text << std::put_time(&local, "%Y-%m-%d %H:%M:%S") << '.' << std::setfill('0') << std::setw(3) << time_ms % 1000;
    return text.str();
}

std::int64_t print_records_after(std::int64_t number) {
    for (const log_record& record : read_log_after(number)) {
        std::cout << format_time(record.time_ms) << ' ' << record.level << ' ' << record.tag << ' ' << record.function
                  << ' ' << record.message << '\n';
        number = record.number;
    }
    std::cout.flush();
    return number;
}

}  // namespace

void print_store() {
    const store_content content = read_content();
    print_row("State directory:", line_form(state_directory()));
    print_states(content.states);
    print_policies(content);
    std::cout << '\n';
    print_row("Log records:", std::to_string(count_log_records()));
    print_row("Wished failures:", std::to_string(read_failure_wishes().size()));
}

void print_document() {
    std::cout << make_document(read_content());
}

void print_log(bool is_following) {
    std::int64_t last = print_records_after(0);
    while (is_following && std::cout) {
        std::this_thread::sleep_for(follow_interval);
        last = print_records_after(last);
    }
}

}  // namespace local_service
