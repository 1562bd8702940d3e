// SPDX-License-Identifier: Apache-2.0
// The listings as a reader of their rows meets them. The first byte chooses the module, and the rest are the lines of
// the policy. Read back, the rows are the policy again.
#include <getopt.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <functional>
#include <iostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "fuzz_target.h"
#include "modules/file/file_module.h"
#include "modules/kmod/kmod_module.h"
#include "modules/net/net_module.h"
#include "modules/proc/proc_module.h"
#include "support/captured_stream.h"
#include "support/command_line.h"
#include "support/service_double.h"

namespace {

using testing::NiceMock;
using testing::Return;
using lines = std::vector<std::string>;

lines split(const std::string& text, char delimiter) {
    lines pieces;
    std::istringstream stream(text);
    for (std::string piece; std::getline(stream, piece, delimiter);) {
        pieces.push_back(piece);
    }
    return pieces;
}

/// What the service answers in this run.
struct policy {
    given_list objects;
    given_exceptions exceptions;
    given<netctl_ext_record> programs;
};
policy present;

/// The double in use, which is on in all its parts. It lives as long as the target, as making one costs more than a
/// run.
class policy_service {
public:
    policy_service() {
        // A complaint of the double is a find.
        testing::GTEST_FLAG(break_on_failure) = true;
        const auto objects = [] { return present.objects; };
        const auto exceptions = [] { return present.exceptions; };
        ON_CALL(service_, orvex_scene_getstatus()).WillByDefault(Return(2));
        ON_CALL(service_, orvex_scene_get_module_status(module_kmod)).WillByDefault(Return(1));
        ON_CALL(service_, orvex_scene_kmodctl_get_policy()).WillByDefault(objects);
        ON_CALL(service_, orvex_scene_filectl_get_policy()).WillByDefault(objects);
        ON_CALL(service_, orvex_scene_filectl_exception_get_policy()).WillByDefault(exceptions);
        ON_CALL(service_, orvex_scene_taskctl_get_policy()).WillByDefault(objects);
        ON_CALL(service_, orvex_scene_taskctl_exception_get_policy()).WillByDefault(exceptions);
        ON_CALL(service_, orvex_netctl_ext_read_all_data_with_uid(0)).WillByDefault([](std::uint32_t /*uid*/) {
            return present.programs;
        });
    }

private:
    NiceMock<service_double> service_;
};

template <class Print>
lines capture_rows(Print print) {
    std::cout.clear();
    const captured_stream output(stdout);
    print();
    return split(output.read_all(), '\n');
}

given_list to_list(const lines& texts) {
    return give_items(std::vector<maybe_text>(texts.begin(), texts.end()));
}

/// What stands in `row` between a head and a tail.
std::string read_between(const std::string& row, const std::string& head, const std::string& tail) {
    require(row.size() >= head.size() + tail.size() && row.compare(0, head.size(), head) == 0 &&
                row.compare(row.size() - tail.size(), tail.size(), tail) == 0,
            "a row without its head or tail");
    return row.substr(head.size(), row.size() - head.size() - tail.size());
}

void try_kmod(const lines& names) {
    present.objects = to_list(names);
    command_line line({"kmod", "-L"});
    optind = 0;
    lines read;
    for (const std::string& row : capture_rows([&] { COrvexKmod().run(line.argc(), line.argv()); })) {
        read.push_back(read_between(row, "模块名称: ", ", 防卸载保护: 开"));
    }
    require(read == names, "the rows of kmod are not its list");
}

/// A protected object and its exceptions, as they stand in the input: separated by ':'.
struct protected_object {
    std::string name;
    lines exceptions;
};

bool operator==(const protected_object& left, const protected_object& right) {
    return left.name == right.name && left.exceptions == right.exceptions;
}

protected_object read_object(const std::string& row) {
    const std::string inner = read_between(row, "", "}");
    const std::size_t brace = inner.rfind('{');
    require(brace != std::string::npos, "a row without a brace");
    const std::string exceptions = read_between(inner.substr(brace + 1), "例外", "");
    if (exceptions == ":") {
        return {read_between(inner.substr(0, brace), "", " "), {}};
    }
    return {inner.substr(0, brace), exceptions.empty() ? lines() : split(exceptions.substr(1), ':')};
}

/// Takes the lines of the input for objects that are listed once and whose names cannot be taken for the row's own
/// signs.
std::vector<protected_object> to_objects(const lines& texts) {
    std::vector<protected_object> objects;
    for (const std::string& text : texts) {
        lines names = split(text, ':');
        const auto is_empty = [](const std::string& name) { return name.empty(); };
        const auto is_same = [&](const protected_object& other) { return other.name == names.front(); };
        const bool is_clear = text.find_first_of("{}") == std::string::npos && !names.empty() &&
                              std::none_of(names.begin(), names.end(), is_empty) &&
                              std::none_of(objects.begin(), objects.end(), is_same);
        if (is_clear) {
            objects.push_back({names.front(), lines(names.begin() + 1, names.end())});
        }
    }
    return objects;
}

lines names_of(const std::vector<protected_object>& objects) {
    lines names;
    for (const protected_object& object : objects) {
        names.push_back(object.name);
    }
    return names;
}

/// The records of those that have exceptions; an object without any has none.
given_exceptions records_of(const std::vector<protected_object>& objects) {
    std::vector<given_exceptions_of> records;
    for (const protected_object& object : objects) {
        if (!object.exceptions.empty()) {
            records.push_back({object.name, to_list(object.exceptions)});
        }
    }
    return give_items(std::move(records));
}

void check_rows(const lines& rows, const std::vector<protected_object>& objects) {
    std::vector<protected_object> read;
    for (const std::string& row : rows) {
        read.push_back(read_object(row));
    }
    require(read == objects, "the rows are not the protected objects");
}

void try_protection(const lines& texts, const std::function<void()>& list) {
    const std::vector<protected_object> objects = to_objects(texts);
    present.objects = to_list(names_of(objects));
    present.exceptions = records_of(objects);
    check_rows(capture_rows(list), objects);
}

void try_file(const lines& texts) {
    try_protection(texts, [] { COrvexFile().list_file_policy(); });
}

void try_proc(const lines& texts) {
    try_protection(texts, [] { COrvexProc().list_proc_policy(); });
}

void try_net(const lines& names) {
    std::vector<netctl_ext_record> records;
    lines expected = names.empty() ? lines() : lines{"应用程序:"};
    for (const std::string& name : names) {
        netctl_ext_record record{};
        name.copy(&record.path[0], sizeof(record.path));
        record.status = static_cast<std::int32_t>(name.size() % 4);
        constexpr std::array<const char*, 4> heads = {"   未知状态: ", "   允许: ", "   阻止: ", "   未知状态: "};
        expected.push_back(heads[name.size() % 4] + name.substr(0, sizeof(record.path)));
        records.push_back(record);
    }
    present.programs = give_items(std::move(records));
    require(capture_rows([] { COrvexNet().list_net_policy(); }) == expected, "the rows of net are not its list");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::array try_listing = {try_kmod, try_file, try_proc, try_net};
    static const policy_service service;
    if (size > 0 && std::find(data, data + size, '\0') == data + size) {
        try_listing[*data % try_listing.size()](split(text_of_input(data + 1, size - 1), '\n'));
    }
    return 0;
}
