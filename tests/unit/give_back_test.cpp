// SPDX-License-Identifier: Apache-2.0
// When memory of the library goes back: the frees are heard and stand as lines of their own between what the program
// prints and what it calls.
#include <gmock/gmock.h>

#include <functional>
#include <iostream>
#include <string>

#include "modules/file/file_module.h"
#include "modules/kmod/kmod_module.h"
#include "modules/proc/proc_module.h"
#include "modules/userid/userid_module.h"
#include "unit/net_test.h"

namespace {

using testing::InvokeWithoutArgs;
using testing::Return;

class give_back_test : public net_test {
protected:
    /// What `call` prints, with the frees and the calls that were to be shown.
    std::string show(const std::function<void()>& call) {
        service.memory().show_give_backs();
        return capture([&] {
                   call();
                   return 0;
               })
            .output;
    }
};

/// Shows that a call is made.
auto show_call(const char* name) {
    return InvokeWithoutArgs([name] { std::cout << "(call: " << name << ")" << std::endl; });
}

template <class Answer>
auto show_and_return(const char* name, const Answer& answer) {
    return testing::DoAll(show_call(name), Return(answer));
}

TEST_F(give_back_test, file_listing_frees_each_string_behind_its_row_and_the_records_last) {
    const given_exceptions records = give_items(std::vector<given_exceptions_of>{{"/b", give_list({"/x"})}});
    EXPECT_CALL(service, orvex_scene_filectl_get_policy()).WillOnce(Return(give_list({"/a", nullptr, "/b"})));
    EXPECT_CALL(service, orvex_scene_filectl_get_pkg_policy()).WillOnce(Return(give_list({"p"})));
    EXPECT_CALL(service, orvex_scene_filectl_exception_get_policy()).WillOnce(Return(records));
    EXPECT_CALL(service, orvex_scene_filectl_exception_policy_free(true, 1)).WillOnce(show_call("policy_free"));
    COrvexFile file;
    EXPECT_EQ(show([&] { file.list_file_policy(); }), lines({
                                                          "/a {例外:}",
                                                          "(free: /a)",
                                                          "/b{例外:/x}",
                                                          "(free: /b)",
                                                          "(free: array)",
                                                          "p {例外:}",
                                                          "(free: p)",
                                                          "(free: array)",
                                                          "(call: policy_free)",
                                                          "(free: /x)",
                                                          "(free: array)",
                                                          "(free: /b)",
                                                          "(free: records)",
                                                      }));
}

TEST_F(give_back_test, proc_listing_frees_each_string_behind_its_row_and_the_records_last) {
    EXPECT_CALL(service, orvex_scene_taskctl_get_policy()).WillOnce(Return(give_list({"/a", "/b"})));
    EXPECT_CALL(service, orvex_scene_taskctl_exception_get_policy()).WillOnce(Return(given_exceptions()));
    EXPECT_CALL(service, orvex_scene_taskctl_exception_policy_free(false, 0)).WillOnce(show_call("policy_free"));
    COrvexProc proc;
    EXPECT_EQ(show([&] { proc.list_proc_policy(); }), lines({
                                                          "/a {例外:}",
                                                          "(free: /a)",
                                                          "/b {例外:}",
                                                          "(free: /b)",
                                                          "(free: array)",
                                                          "(call: policy_free)",
                                                      }));
}

TEST_F(give_back_test, net_listing_frees_the_packages_before_it_fetches_the_programs) {
    const auto pkgs = give_items(std::vector<netctl_pkg_record>{give_netctl_pkg("p", 1, "", "", 2)});
    const auto programs = give_items(std::vector<netctl_ext_record>{give_netctl_ext("/a", 2, "", "", "", 2)});
    EXPECT_CALL(service, orvex_netctl_pkg_read_all_data_with_uid(0)).WillOnce(Return(pkgs));
    EXPECT_CALL(service, orvex_netctl_ext_read_all_data_with_uid(0)).WillOnce(show_and_return("programs", programs));
    EXPECT_EQ(show([&] { net.list_net_policy(); }), lines({
                                                        "软件包:",
                                                        "   允许: p",
                                                        "(free: records)",
                                                        "",
                                                        "(call: programs)",
                                                        "应用程序:",
                                                        "   阻止: /a",
                                                        "(free: records)",
                                                    }));
}

TEST_F(give_back_test, kmod_frees_the_absolute_path_before_it_asks_for_the_name) {
    EXPECT_CALL(service, get_absolute_path("x.ko")).WillOnce(Return("/x.ko"));
    EXPECT_CALL(service, orvex_scene_get_module_name_from_ko_path("/x.ko"))
        .WillOnce(show_and_return("name", maybe_text("x")));
    EXPECT_CALL(service, orvex_scene_kmodctl_get_policy()).WillOnce(Return(give_list({"ext4"})));
    COrvexKmod kmod;
    EXPECT_EQ(show([&] { kmod.check_kmod_is_add_by_file("x.ko"); }), lines({
                                                                         "(free: /x.ko)",
                                                                         "(call: name)",
                                                                         "(free: ext4)",
                                                                         "(free: array)",
                                                                         "(free: x)",
                                                                     }));
}

TEST_F(give_back_test, userid_frees_the_absolute_path_of_a_file_before_it_asks_for_the_roles) {
    EXPECT_CALL(service, get_absolute_path("a")).WillOnce(Return("/a"));
    EXPECT_CALL(service, orvex_scene_admctl_get_user_policy(0))
        .WillOnce(show_and_return("root", give_list({"/a", "/r"})));
    COrvexUserid userid;
    EXPECT_EQ(show([&] { userid.print_userid_by_file("a"); }), lines({
                                                                   "(free: /a)",
                                                                   "(call: root)",
                                                                   "(free: /a)",
                                                                   "(free: /r)",
                                                                   "(free: array)",
                                                                   "/a: root",
                                                               }));
}

TEST_F(give_back_test, userid_frees_the_path_of_a_directory_and_then_its_files) {
    EXPECT_CALL(service, get_absolute_path("d")).WillOnce(Return("/d"));
    EXPECT_CALL(service, get_file_list_from_dir("/d")).WillOnce(Return(give_list({"/d/a", "/d/b"})));
    for (const int role : {1, 2, 0}) {
        EXPECT_CALL(service, orvex_scene_admctl_get_user_policy(role)).WillOnce(Return(give_no_list()));
    }
    COrvexUserid userid;
    EXPECT_EQ(show([&] { userid.print_userid_by_dir("d"); }), lines({
                                                                  "/d/a: none",
                                                                  "/d/b: none",
                                                                  "(free: /d)",
                                                                  "(free: /d/a)",
                                                                  "(free: /d/b)",
                                                                  "(free: array)",
                                                              }));
}

TEST_F(give_back_test, net_delete_frees_the_package_s_record_between_the_two_removals) {
    expect_ext_read("/a", stored_ext_record());
    EXPECT_CALL(net, get_pkg_by_file("/a")).WillOnce(Return("p"));
    expect_pkg_read("p", stored_pkg_record());
    EXPECT_CALL(service, orvex_netctl_pkg_remove(0, "p")).WillOnce(show_and_return("pkg_remove", -7));
    expect_log("netctl", "del_net_policy_by_file", "del netctl failed, pkgName: %s, ret: %d",
               "del netctl failed, pkgName: p, ret: -7");
    EXPECT_CALL(service, orvex_netctl_remove(0, "/a")).WillOnce(show_and_return("remove", 0));
    EXPECT_EQ(show([&] { net.del_net_policy_by_file("/a"); }), lines({
                                                                   "(free: records)",
                                                                   "(call: pkg_remove)",
                                                                   "删除软件包[p]联网管控失败!",
                                                                   "(free: records)",
                                                                   "(call: remove)",
                                                               }));
}

TEST_F(give_back_test, net_update_frees_the_record_behind_the_call_and_before_its_failure_is_told) {
    expect_pkg_read("p", stored_pkg_record());
    expect_pkg_update(netctl_allow, -7);
    expect_log("netctl", "update_net_policy_by_pkg", "update netctl failed, pkgName: %s, ret: %d",
               "update netctl failed, pkgName: p, ret: -7");
    EXPECT_EQ(show([&] { net.update_net_policy_by_pkg("p", netctl_allow); }),
              "(free: records)\n更新软件包[p]管控状态失败!\n");
}

TEST_F(give_back_test, net_add_frees_the_record_of_a_present_policy_behind_the_line) {
    EXPECT_CALL(net, is_pkg_installed("p")).WillOnce(Return(true));
    expect_pkg_read("p", stored_pkg_record());
    EXPECT_EQ(show([&] { net.add_net_policy_by_pkg("p"); }),
              "软件包[p]的联网管控策略已存在, 无需重复添加!\n(free: records)\n");
}

}  // namespace
