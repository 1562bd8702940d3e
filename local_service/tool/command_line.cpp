// SPDX-License-Identifier: Apache-2.0
#include "tool/command_line.h"

#include <algorithm>

#include "tool/usage.h"

namespace local_service {
namespace {

/// An option as it is typed: its name, and whether a value hangs on it.
struct typed_option {
    std::string name;
    bool has_value;
};

typed_option split(const std::string& word) {
    if (word.rfind("--", 0) == 0) {
        const std::size_t end = word.find('=');
        return {word.substr(0, end), end != std::string::npos};
    }
    return {word.substr(0, 2), word.size() > 2};
}

std::vector<std::string> option_names(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return names;
}

/// Checks the option `word` and tells whether the next word is its value.
bool takes_next_word(const CLI::App& app, const std::string& word) {
    const typed_option typed = split(word);
    const CLI::Option* option = app.get_option_no_throw(typed.name);
    if (option == nullptr) {
        throw unknown_word("option", typed.name, option_names(app));
    }
    const bool takes_value = option->get_items_expected_max() > 0;
    if (typed.has_value && !takes_value) {
        throw usage_error(typed.name + " takes no value");
    }
    return takes_value && !typed.has_value;
}

const CLI::App& find_subcommand(const CLI::App& app, const std::string& word) {
    std::vector<std::string> names;
    for (const CLI::App* candidate : app.get_subcommands({})) {
        if (candidate->get_name() == word) {
            return *candidate;
        }
        names.push_back(candidate->get_name());
    }
    throw unknown_word("command", word, names);
}

bool is_option(const std::string& word) {
    const bool is_number = word.size() > 1 && word[1] >= '0' && word[1] <= '9';
    return word.size() > 1 && word[0] == '-' && !is_number;
}

}  // namespace

std::vector<std::string> checked_words(const CLI::App& app, int argc, const char* const* argv) {
    std::vector<std::string> words(argv + 1, argv + argc);
    const CLI::App* current = &app;
    for (std::size_t index = 0; index < words.size(); ++index) {
        const std::string& word = words[index];
        if (word == "--") {
            if (current->get_prefix_command()) {
                words.erase(words.begin() + static_cast<std::ptrdiff_t>(index));
            }
            break;
        }
        if (is_option(word)) {
            index += takes_next_word(*current, word) ? 1U : 0U;
        } else if (current->get_prefix_command()) {
            break;
        } else if (!current->get_subcommands({}).empty()) {
            current = &find_subcommand(*current, word);
        }
    }
    return words;
}

}  // namespace local_service
