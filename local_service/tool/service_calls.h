// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>

namespace local_service {

enum class call_result {
    number,
    pointer,
    nothing,
};

struct service_call {
    const char* name;
    call_result result;
};

/// All functions of the service library, by their names.
inline constexpr std::array<service_call, 71> service_calls{{
    {"get_absolute_path", call_result::pointer},
    {"get_file_list_from_dir", call_result::pointer},
    {"orvex_get_error", call_result::pointer},
    {"orvex_log", call_result::nothing},
    {"orvex_netctl_ext_add", call_result::number},
    {"orvex_netctl_ext_read_all_data_with_uid", call_result::pointer},
    {"orvex_netctl_ext_read_node_with_uid", call_result::pointer},
    {"orvex_netctl_ext_update", call_result::number},
    {"orvex_netctl_pkg_add", call_result::number},
    {"orvex_netctl_pkg_read_all_data_with_uid", call_result::pointer},
    {"orvex_netctl_pkg_read_node_with_uid", call_result::pointer},
    {"orvex_netctl_pkg_remove", call_result::number},
    {"orvex_netctl_pkg_update", call_result::number},
    {"orvex_netctl_remove", call_result::number},
    {"orvex_scene_admctl_get_user_policy", call_result::pointer},
    {"orvex_scene_exectl_get_policy_for_file_permissive", call_result::pointer},
    {"orvex_scene_exectl_get_policy_for_package_permissive", call_result::pointer},
    {"orvex_scene_exectl_multi_add_file_in_permissive", call_result::number},
    {"orvex_scene_exectl_multi_add_package_in_permissive", call_result::number},
    {"orvex_scene_exectl_multi_remove_file_from_permissive", call_result::number},
    {"orvex_scene_exectl_multi_remove_package_from_permissive", call_result::number},
    {"orvex_scene_exectl_obj_free", call_result::nothing},
    {"orvex_scene_exectl_objs_free", call_result::nothing},
    {"orvex_scene_exectl_wlist_add_by_dir", call_result::number},
    {"orvex_scene_exectl_wlist_delete_by_dir", call_result::number},
    {"orvex_scene_exectl_wlist_load_all", call_result::number},
    {"orvex_scene_exectl_wlist_load_by_path", call_result::number},
    {"orvex_scene_exectl_wlist_multi_add", call_result::number},
    {"orvex_scene_exectl_wlist_multi_delete", call_result::number},
    {"orvex_scene_filectl_exception_clear_resource_policy", call_result::number},
    {"orvex_scene_filectl_exception_get_policy", call_result::pointer},
    {"orvex_scene_filectl_exception_multi_add", call_result::number},
    {"orvex_scene_filectl_exception_multi_remove", call_result::number},
    {"orvex_scene_filectl_exception_policy_free", call_result::nothing},
    {"orvex_scene_filectl_get_pkg_policy", call_result::pointer},
    {"orvex_scene_filectl_get_policy", call_result::pointer},
    {"orvex_scene_filectl_multi_add_by_path", call_result::number},
    {"orvex_scene_filectl_multi_add_by_pkg", call_result::number},
    {"orvex_scene_filectl_multi_remove_by_path", call_result::number},
    {"orvex_scene_filectl_multi_remove_by_pkg", call_result::number},
    {"orvex_scene_get_module_name_from_ko_path", call_result::pointer},
    {"orvex_scene_get_module_status", call_result::number},
    {"orvex_scene_get_sm_status", call_result::number},
    {"orvex_scene_getstatus", call_result::number},
    {"orvex_scene_kmodctl_add_by_name", call_result::number},
    {"orvex_scene_kmodctl_add_by_path", call_result::number},
    {"orvex_scene_kmodctl_get_policy", call_result::pointer},
    {"orvex_scene_kmodctl_remove_by_name", call_result::number},
    {"orvex_scene_kmodctl_remove_by_path", call_result::number},
    {"orvex_scene_set_module_status", call_result::number},
    {"orvex_scene_set_multi_module_status", call_result::number},
    {"orvex_scene_taskctl_exception_clear_resource_policy", call_result::number},
    {"orvex_scene_taskctl_exception_clear_resource_policy_by_pid", call_result::number},
    {"orvex_scene_taskctl_exception_get_policy", call_result::pointer},
    {"orvex_scene_taskctl_exception_multi_add", call_result::number},
    {"orvex_scene_taskctl_exception_multi_add_by_pid", call_result::number},
    {"orvex_scene_taskctl_exception_multi_remove", call_result::number},
    {"orvex_scene_taskctl_exception_multi_remove_by_pid", call_result::number},
    {"orvex_scene_taskctl_exception_policy_free", call_result::nothing},
    {"orvex_scene_taskctl_get_policy", call_result::pointer},
    {"orvex_scene_taskctl_multi_add_by_path", call_result::number},
    {"orvex_scene_taskctl_multi_add_by_pid", call_result::number},
    {"orvex_scene_taskctl_multi_remove_by_path", call_result::number},
    {"orvex_scene_taskctl_multi_remove_by_pid", call_result::number},
    {"parse_file_type", call_result::number},
    {"pathNormalize", call_result::pointer},
    {"path_is_dir", call_result::number},
    {"path_is_exist", call_result::number},
    {"path_is_same", call_result::number},
    {"ppro_path_in_blacklist", call_result::number},
    {"setModuleStatusReboot_dbus", call_result::number},
}};

}  // namespace local_service
