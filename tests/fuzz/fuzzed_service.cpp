// SPDX-License-Identifier: Apache-2.0
#include "fuzzed_service.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <list>
#include <sstream>
#include <utility>
#include <vector>

#include "framework/module_base.h"
#include "framework/on_demand.h"
#include "fuzz_target.h"

using testing::DefaultValue;

std::optional<std::string> line_reader::take() {
    const std::size_t end = std::min(rest_.find('\n'), rest_.size());
    std::string line = rest_.substr(0, end);
    rest_.erase(0, end + 1);
    return line.empty() ? std::nullopt : std::optional(std::move(line));
}

namespace {

/// A longer list says nothing more and costs time.
constexpr long most_repetitions = 300;

line_reader answers{""};

int to_number(const std::string& text) {
    return static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
}

maybe_text to_maybe_text(const std::string& text) {
    return text == "null" ? maybe_text() : maybe_text(text);
}

int take_number(int otherwise) {
    const std::optional<std::string> line = answers.take();
    return line ? to_number(*line) : otherwise;
}

maybe_text take_maybe_text(const std::string& otherwise) {
    return to_maybe_text(answers.take().value_or(otherwise));
}

std::vector<std::string> split(const std::string& text, char delimiter) {
    std::vector<std::string> pieces;
    std::istringstream stream(text);
    for (std::string piece; std::getline(stream, piece, delimiter);) {
        pieces.push_back(piece);
    }
    return pieces;
}

/// The pieces of a list, with those that stand for many written out.
std::vector<std::string> to_items(const std::string& text, char delimiter) {
    std::vector<std::string> items;
    for (const std::string& piece : split(text, delimiter)) {
        if (piece.size() > 1 && piece.front() == '*' && !items.empty()) {
            const long times = std::clamp(std::strtol(piece.c_str() + 1, nullptr, 10), 0L, most_repetitions);
            const std::string repeated = items.back();
            items.insert(items.end(), static_cast<std::size_t>(times), repeated);
        } else {
            items.push_back(piece);
        }
    }
    return items;
}

given_list to_list(const std::string& text, char delimiter) {
    if (text == "null") {
        return {};
    }
    std::vector<maybe_text> items;
    for (const std::string& item : to_items(text, delimiter)) {
        items.push_back(to_maybe_text(item));
    }
    return give_items(std::move(items));
}

given_list take_list() {
    return to_list(answers.take().value_or(""), '|');
}

/// A list whose entries have two bytes at least: of shorter ones the program demands that there are none.
given_list take_list_of_paths() {
    given_list list = take_list();
    if (list.items) {
        for (maybe_text& item : *list.items) {
            if (item && std::strlen(item->c_str()) < 2) {
                item->insert(0, "/a");
            }
        }
    }
    return list;
}

/// Records separated by '|': the object, '=' and its exceptions, separated by ','.
given_exceptions take_exceptions() {
    const std::string line = answers.take().value_or("");
    if (line == "null") {
        return {};
    }
    std::vector<given_exceptions_of> records;
    for (const std::string& item : to_items(line, '|')) {
        const std::size_t border = std::min(item.find('='), item.size());
        const std::string exceptions = item.substr(std::min(border + 1, item.size()));
        records.push_back({to_maybe_text(item.substr(0, border)), to_list(exceptions, ',')});
    }
    return give_items(std::move(records));
}

/// A number, and a text behind the first blank.
std::pair<int, std::string> to_number_and_text(const std::string& text) {
    const std::size_t blank = std::min(text.find(' '), text.size());
    return {to_number(text), text.substr(std::min(blank + 1, text.size()))};
}

/// A state and a path.
given_exectl to_exectl(const std::string& text) {
    const auto [status, path] = to_number_and_text(text);
    return {to_maybe_text(path), status};
}

/// A result, a state and a path. A look-up that fails leaves the record as it was.
given_exectl_lookup take_exectl_lookup() {
    const auto [result, record] = to_number_and_text(answers.take().value_or("0 0 null"));
    return {result, result == 0 ? to_exectl(record) : given_exectl()};
}

/// A result, and states and paths separated by '|'. A load that fails loads nothing.
given_exectl_chain take_exectl_chain() {
    const auto [result, links] = to_number_and_text(answers.take().value_or("0"));
    given_exectl_chain chain{result, {}};
    if (result != 0) {
        return chain;
    }
    for (const std::string& link : to_items(links, '|')) {
        chain.links.push_back(to_exectl(link));
    }
    return chain;
}

template <std::size_t size>
void fill(char (&field)[size], const std::string& text) {
    text.copy(&field[0], size);
}

template <class Record>
Record to_net_record(const std::string& text);

/// A state and a name.
template <>
netctl_pkg_record to_net_record(const std::string& text) {
    netctl_pkg_record record{};
    const auto [status, name] = to_number_and_text(text);
    record.status = status;
    fill(record.name, name);
    fill(record.icon, name);
    fill(record.desktop, name);
    return record;
}

/// A state and a path.
template <>
netctl_ext_record to_net_record(const std::string& text) {
    netctl_ext_record record{};
    const auto [status, path] = to_number_and_text(text);
    record.status = status;
    fill(record.path, path);
    fill(record.label, path.substr(0, sizeof(record.label) - 1));
    fill(record.text1, path.substr(0, sizeof(record.text1) - 1));
    fill(record.text2, path.substr(0, sizeof(record.text2) - 1));
    return record;
}

template <class Record>
std::optional<Record> take_net_record() {
    const std::string line = answers.take().value_or("1 name");
    return line == "null" ? std::nullopt : std::optional(to_net_record<Record>(line));
}

template <class Record>
given<Record> take_net_records() {
    const std::string line = answers.take().value_or("");
    if (line == "null") {
        return {};
    }
    std::vector<Record> records;
    // Twelve KiB each.
    for (const std::string& item : split(line, '|')) {
        records.push_back(to_net_record<Record>(item));
    }
    return give_items(std::move(records));
}

template <class Value>
void let_all_answer(Value (*take)()) {
    DefaultValue<Value>::SetFactory(take);
}

bool is_installed(const std::string& /*pkg*/) {
    return take_number(1) == 1;
}

int get_files(const std::string& /*pkg*/, std::list<std::string>& files) {
    const int result = take_number(0);
    for (const std::string& item : to_items(answers.take().value_or("/a"), '|')) {
        files.push_back(item);
    }
    return result;
}

int print_owner(const std::string& /*path*/) {
    std::cout << answers.take().value_or("owner-1.0-1.x86_64") << std::endl;
    return 0;
}

std::string read_desktop_text(const std::string& /*file*/) {
    return answers.take().value_or("");
}

}  // namespace

const package_questions orvex_package_questions_1 = {
    .is_installed = is_installed,
    .get_files = get_files,
    .print_owner = print_owner,
};

const desktop_questions orvex_desktop_questions_1 = {
    .read_icon = read_desktop_text,
    .read_name = read_desktop_text,
};

fuzzed_service::fuzzed_service() {
    // A complaint of the double is a find.
    testing::GTEST_FLAG(break_on_failure) = true;
    scratch_.write("a/b/c", "text");
    let_all_answer<int>([] { return take_number(0); });
    let_all_answer<uid_t>([] { return static_cast<uid_t>(take_number(0)); });
    let_all_answer<maybe_text>([] { return take_maybe_text("text"); });
    let_all_answer<given_list>(take_list);
    let_all_answer<given_exceptions>(take_exceptions);
    let_all_answer<given_exectl_lookup>(take_exectl_lookup);
    let_all_answer<given_exectl_chain>(take_exectl_chain);
    let_all_answer<std::optional<netctl_pkg_record>>(take_net_record<netctl_pkg_record>);
    let_all_answer<std::optional<netctl_ext_record>>(take_net_record<netctl_ext_record>);
    let_all_answer<given<netctl_pkg_record>>(take_net_records<netctl_pkg_record>);
    let_all_answer<given<netctl_ext_record>>(take_net_records<netctl_ext_record>);
    let_calls_lead_on();
}

void fuzzed_service::let_calls_lead_on() {
    using testing::_;
    ON_CALL(service_, orvex_scene_getstatus()).WillByDefault([] { return take_number(2); });
    ON_CALL(service_, orvex_scene_get_module_status(_)).WillByDefault([](int module) {
        return take_number(module == module_3adm ? 0 : 1);
    });
    ON_CALL(service_, path_is_exist(_)).WillByDefault([](const std::string& /*path*/) { return take_number(1); });
    ON_CALL(service_, orvex_scene_exectl_get_policy_for_file_permissive()).WillByDefault(take_list_of_paths);
    // The program walks over real directories: they stay within the scratch directory.
    ON_CALL(service_, get_absolute_path(_)).WillByDefault([this](const std::string& path) -> maybe_text {
        const maybe_text answer = take_maybe_text(path);
        if (!answer || answer->find("..") != std::string::npos) {
            return std::nullopt;
        }
        return scratch_.path() + "/" + *answer;
    });
    ON_CALL(service_, orvex_log(_, _, _, _, _))
        .WillByDefault([](int level, const std::string& tag, const std::string& function, const std::string& format,
                          const std::string& /*message*/) {
            require(level == 18 && !tag.empty() && !function.empty() && !format.empty(), "an empty log record");
        });
}

void fuzzed_service::begin(const std::string& lines) {
    answers = line_reader(lines);
}

std::string fuzzed_service::take_text() {
    return answers.take().value_or("");
}
