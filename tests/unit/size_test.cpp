// SPDX-License-Identifier: Apache-2.0
// Names and lists of a size that nobody types, but that a service or a script may come with: they are served as any
// other.
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "modules/exec/exec_module.h"
#include "modules/file/file_module.h"
#include "modules/kmod/kmod_module.h"
#include "support/module_test.h"

namespace {

using testing::Return;

constexpr std::size_t many = 100'000;

/// A name of a megabyte, which would be a format as well.
std::string make_long_name() {
    std::string name;
    while (name.size() < std::size_t{1} << 20U) {
        name += "名%s";
    }
    return name;
}

/// Names that differ, in no order.
std::vector<std::string> make_many_names() {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < many; ++i) {
        names.push_back("/srv/" + std::to_string(i * 7919 % many));
    }
    return names;
}

given_list give_all(const std::vector<std::string>& names) {
    return give_items(std::vector<maybe_text>(names.begin(), names.end()));
}

/// The rows of these names, each between the same two texts.
std::string print_rows(const std::string& head, const std::vector<std::string>& names, const std::string& tail) {
    std::string rows;
    for (const std::string& name : names) {
        rows.append(head).append(name).append(tail).append("\n");
    }
    return rows;
}

class size_test : public module_test {
protected:
    void expect_protected_modules(const given_list& names) {
        EXPECT_CALL(service, orvex_scene_kmodctl_get_policy()).WillOnce(Return(names));
    }

    call_result list_files(const std::vector<std::string>& paths, given_exceptions records) {
        EXPECT_CALL(service, orvex_scene_filectl_get_policy()).WillOnce(Return(give_all(paths)));
        EXPECT_CALL(service, orvex_scene_filectl_get_pkg_policy()).WillOnce(Return(give_list({})));
        EXPECT_CALL(service, orvex_scene_filectl_exception_get_policy()).WillOnce(Return(records));
        EXPECT_CALL(service, orvex_scene_filectl_exception_policy_free(true, records.count));
        return capture([&] { return file.list_file_policy(); });
    }

    COrvexExec exec;
    COrvexFile file;
    COrvexKmod kmod;
};

TEST_F(size_test, a_name_of_a_megabyte_reaches_the_library_the_line_and_the_log) {
    const std::string name = make_long_name();
    expect_ladder(kmod_ladder);
    expect_protected_modules(give_list({"ext4"}));
    EXPECT_CALL(service, orvex_scene_kmodctl_add_by_name(name)).WillOnce(Return(-1));
    EXPECT_CALL(service, orvex_log).Times(1);
    EXPECT_EQ(run(kmod, {"kmod", "-A", "-n", name}), (call_result{-1, "添加内核模块[" + name + "]防卸载失败!\n"}));
}

TEST_F(size_test, names_of_a_megabyte_are_listed) {
    const std::string name = make_long_name();
    expect_ladder(kmod_ladder);
    expect_protected_modules(give_list({name.c_str(), "ext4"}));
    EXPECT_EQ(run(kmod, {"kmod", "-L"}),
              (call_result{0, print_rows("模块名称: ", {name, "ext4"}, ", 防卸载保护: 开")}));

    EXPECT_EQ(list_files({name}, give_items(std::vector<given_exceptions_of>{{name, give_list({name.c_str()})}})),
              (call_result{0, name + "{例外:" + name + "}\n"}));
}

TEST_F(size_test, a_hundred_thousand_names_are_listed_and_searched) {
    const std::vector<std::string> names = make_many_names();
    expect_ladder(kmod_ladder);
    expect_protected_modules(give_all(names));
    EXPECT_EQ(run(kmod, {"kmod", "-L"}), (call_result{0, print_rows("模块名称: ", names, ", 防卸载保护: 开")}));

    expect_protected_modules(give_all(names));
    EXPECT_TRUE(kmod.check_kmod_is_add_by_name(names.back()));
}

TEST_F(size_test, a_hundred_thousand_objects_are_listed_with_their_exceptions) {
    const std::vector<std::string> names = make_many_names();
    std::vector<given_exceptions_of> records;
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        records.push_back({*name, give_list({"/x"})});
    }
    EXPECT_EQ(list_files(names, give_items(std::move(records))), (call_result{0, print_rows("", names, "{例外:/x}")}));
}

TEST_F(size_test, a_hundred_thousand_exceptions_are_one_line) {
    const std::vector<std::string> names = make_many_names();
    std::string line = "放行   软件包";
    for (const std::string& name : names) {
        line += ":" + name;
    }
    EXPECT_CALL(service, orvex_scene_exectl_get_policy_for_file_permissive()).WillOnce(Return(give_list({})));
    EXPECT_CALL(service, orvex_scene_exectl_get_policy_for_package_permissive()).WillOnce(Return(give_all(names)));
    EXPECT_EQ(capture([&] { return exec.get_all_except_policy(); }), (call_result{0, line + "\n"}));
}

TEST_F(size_test, a_list_of_a_hundred_thousand_paths_is_taken_apart) {
    const std::vector<std::string> names = make_many_names();
    std::string list;
    for (const std::string& name : names) {
        list += name + ":";
    }
    EXPECT_CALL(service, path_is_exist).Times(many).WillRepeatedly(Return(0));
    EXPECT_EQ(capture([&] { return file.set_file_policy_by_file(list, 1); }).output,
              print_rows("文件路径[", names, "]不存在!"));
}

}  // namespace
