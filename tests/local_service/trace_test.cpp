// SPDX-License-Identifier: Apache-2.0
// What a trace says of the calls of a whole test program: this one.
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>

#include "service/paths.h"
#include "tool/service_calls.h"
#include "tool_run.h"

using nlohmann::ordered_json;

namespace {

class traced : public tool {
protected:
    /// Runs the tests whose names fit `filter` under a trace and returns its lines.
    std::vector<std::string> trace(const std::string& filter, const std::string& options) {
        const std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
        // The file that watches over the end of these tests is not for those.
        EXPECT_EQ(run("trace " + options + " -o '" + path("calls") + "' env -u TEST_PREMATURE_EXIT_FILE '" + self +
                      "' --gtest_filter='" + filter + "'"),
                  0);
        std::vector<std::string> lines;
        std::ifstream file(path("calls"));
        for (std::string line; std::getline(file, line);) {
            lines.push_back(line);
        }
        return lines;
    }
};

/// All tests but those of the tool, among them this one.
const char* const widely_used = "-tool.*:document.*:traced.*:wished_failure.*:store.*";

/// The names of the arguments of each function.
const std::map<std::string, std::string> argument_names = {
    {"get_absolute_path", "path"},
    {"get_file_list_from_dir", "directory, count"},
    {"orvex_get_error", ""},
    {"orvex_log", "level, tag, function, message"},
    {"orvex_netctl_ext_add", "uid, path, status, label, text1, text2, tag"},
    {"orvex_netctl_ext_read_all_data_with_uid", "uid, count"},
    {"orvex_netctl_ext_read_node_with_uid", "uid, path"},
    {"orvex_netctl_ext_update", "uid, path, status, label, text1, text2, tag"},
    {"orvex_netctl_pkg_add", "uid, package, status, icon, desktop, tag"},
    {"orvex_netctl_pkg_read_all_data_with_uid", "uid, count"},
    {"orvex_netctl_pkg_read_node_with_uid", "uid, package"},
    {"orvex_netctl_pkg_remove", "uid, package"},
    {"orvex_netctl_pkg_update", "uid, package, status, icon, desktop, tag"},
    {"orvex_netctl_remove", "uid, path"},
    {"orvex_scene_admctl_get_user_policy", "user_type, count"},
    {"orvex_scene_exectl_get_policy_for_file_permissive", "count"},
    {"orvex_scene_exectl_get_policy_for_package_permissive", "count"},
    {"orvex_scene_exectl_multi_add_file_in_permissive", "paths, count"},
    {"orvex_scene_exectl_multi_add_package_in_permissive", "packages, count"},
    {"orvex_scene_exectl_multi_remove_file_from_permissive", "paths, count"},
    {"orvex_scene_exectl_multi_remove_package_from_permissive", "packages, count"},
    {"orvex_scene_exectl_obj_free", "record"},
    {"orvex_scene_exectl_objs_free", "head"},
    {"orvex_scene_exectl_wlist_add_by_dir", "directory"},
    {"orvex_scene_exectl_wlist_delete_by_dir", "directory"},
    {"orvex_scene_exectl_wlist_load_all", "head"},
    {"orvex_scene_exectl_wlist_load_by_path", "path, record"},
    {"orvex_scene_exectl_wlist_multi_add", "paths, count"},
    {"orvex_scene_exectl_wlist_multi_delete", "paths, count"},
    {"orvex_scene_filectl_exception_clear_resource_policy", "kind, resource"},
    {"orvex_scene_filectl_exception_get_policy", "count"},
    {"orvex_scene_filectl_exception_multi_add", "kind, resource, except_kind, exceptions, count"},
    {"orvex_scene_filectl_exception_multi_remove", "kind, resource, except_kind, exceptions, count"},
    {"orvex_scene_filectl_exception_policy_free", "records, count"},
    {"orvex_scene_filectl_get_pkg_policy", "count"},
    {"orvex_scene_filectl_get_policy", "count"},
    {"orvex_scene_filectl_multi_add_by_path", "paths, count"},
    {"orvex_scene_filectl_multi_add_by_pkg", "packages, count"},
    {"orvex_scene_filectl_multi_remove_by_path", "paths, count"},
    {"orvex_scene_filectl_multi_remove_by_pkg", "packages, count"},
    {"orvex_scene_get_module_name_from_ko_path", "path"},
    {"orvex_scene_get_module_status", "module"},
    {"orvex_scene_get_sm_status", ""},
    {"orvex_scene_getstatus", ""},
    {"orvex_scene_kmodctl_add_by_name", "name"},
    {"orvex_scene_kmodctl_add_by_path", "path"},
    {"orvex_scene_kmodctl_get_policy", "count"},
    {"orvex_scene_kmodctl_remove_by_name", "name"},
    {"orvex_scene_kmodctl_remove_by_path", "path"},
    {"orvex_scene_set_module_status", "module, status"},
    {"orvex_scene_set_multi_module_status", "module, status, final"},
    {"orvex_scene_taskctl_exception_clear_resource_policy", "path"},
    {"orvex_scene_taskctl_exception_clear_resource_policy_by_pid", "pid"},
    {"orvex_scene_taskctl_exception_get_policy", "count"},
    {"orvex_scene_taskctl_exception_multi_add", "kind, path, except_kind, exceptions, count"},
    {"orvex_scene_taskctl_exception_multi_add_by_pid", "pid, except_kind, exceptions, count"},
    {"orvex_scene_taskctl_exception_multi_remove", "kind, path, except_kind, exceptions, count"},
    {"orvex_scene_taskctl_exception_multi_remove_by_pid", "pid, except_kind, exceptions, count"},
    {"orvex_scene_taskctl_exception_policy_free", "records, count"},
    {"orvex_scene_taskctl_get_policy", "count"},
    {"orvex_scene_taskctl_multi_add_by_path", "paths, count"},
    {"orvex_scene_taskctl_multi_add_by_pid", "pids, count"},
    {"orvex_scene_taskctl_multi_remove_by_path", "paths, count"},
    {"orvex_scene_taskctl_multi_remove_by_pid", "pids, count"},
    {"parse_file_type", "path"},
    {"pathNormalize", "path"},
    {"path_is_dir", "path"},
    {"path_is_exist", "path"},
    {"path_is_same", "path, other"},
    {"ppro_path_in_blacklist", "path"},
    {"setModuleStatusReboot_dbus", "a, state, b, c, d, reboot"},
};

std::string names_in(const ordered_json& arguments) {
    std::string names;
    for (const auto& argument : arguments.items()) {
        names += (names.empty() ? "" : ", ") + argument.key();
    }
    return names;
}

TEST_F(traced, calls_are_objects_of_json_with_all_arguments) {
    std::map<std::string, std::string> seen;
    for (const std::string& line : trace(widely_used, "--json")) {
        const ordered_json call = ordered_json::parse(line, nullptr, false);
        ASSERT_FALSE(call.is_discarded()) << line;
        EXPECT_TRUE(call["arguments"].is_object()) << line;
        seen[call["call"].get<std::string>()] = names_in(call["arguments"]);
    }
    EXPECT_EQ(seen, argument_names);
    EXPECT_EQ(seen.size(), local_service::service_calls.size());
}

TEST_F(traced, calls_are_lines_with_their_results) {
    using local_service::call_result;
    const std::vector<std::string> lines = trace(widely_used, "");
    EXPECT_GT(lines.size(), 500U);
    for (const std::string& line : lines) {
        const std::string name = line.substr(0, line.find('('));
        const bool has_result = line.find(") = ") != std::string::npos;
        for (const auto& call : local_service::service_calls) {
            if (call.name == name) {
                EXPECT_EQ(has_result, call.result != call_result::nothing) << line;
            }
        }
    }
}

}  // namespace
