// SPDX-License-Identifier: Apache-2.0
// The service library as the unit tests see it: one mock method for each of its functions, under the function's name.
//
// The C functions of this directory stand in for the library at link time and forward to the double in use. On the way
// there they turn C into values: a text is a `std::string` (a `maybe_text` where null is allowed: match it with `Eq`),
// an array and its count are a vector. On the way back they make memory from what the test gives; see given.h.
#pragma once

#include <gmock/gmock.h>
#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "support/given.h"
#include "support/memory_ledger.h"

class service_double {
public:
    /// The new double is the one in use, until it ends. There is one at a time.
    service_double();
    service_double(const service_double&) = delete;
    service_double& operator=(const service_double&) = delete;
    ~service_double();

    /// The double in use. Ends the program with a word on standard error where there is none.
    static service_double& in_use();

    /// The double in use, or null.
    static service_double* find_in_use() noexcept;

    /// What the program has got from the double and not given back.
    memory_ledger& memory() { return memory_; }

    /// Keeps an error record with `text`. It is the double's own and holds until the next one.
    void* keep_error_record(const std::string& text);

    // Calls of the C library whose answers the tests choose.
    MOCK_METHOD(uid_t, getuid, ());
    MOCK_METHOD(void, setlocale, (int category, const maybe_text& locale));

    // log.h. `message` is the finished text; for a format that does not fit its arguments it is the arguments, each in
    // square brackets. The error record is handed out with the text given here, or there is none.
    MOCK_METHOD(void, orvex_log,
                (int level, const std::string& tag, const std::string& function, const std::string& format,
                 const std::string& message));
    MOCK_METHOD(maybe_text, orvex_get_error, ());

    // status.h
    MOCK_METHOD(int, orvex_scene_getstatus, ());
    MOCK_METHOD(int, orvex_scene_get_sm_status, ());
    MOCK_METHOD(int, orvex_scene_get_module_status, (int module));
    MOCK_METHOD(int, orvex_scene_set_module_status, (int module, int status));
    MOCK_METHOD(int, orvex_scene_set_multi_module_status, (int module, int status, int final));
    MOCK_METHOD(int, setModuleStatusReboot_dbus, (int a, int state, int b, int c, int d, int reboot));

    // paths.h
    MOCK_METHOD(int, path_is_exist, (const std::string& path));
    MOCK_METHOD(int, path_is_dir, (const std::string& path));
    MOCK_METHOD(int, path_is_same, (const std::string& path, const std::string& other));
    MOCK_METHOD(maybe_text, get_absolute_path, (const std::string& path));
    MOCK_METHOD(maybe_text, pathNormalize, (const std::string& path));
    MOCK_METHOD(int, parse_file_type, (const std::string& path));
    MOCK_METHOD(given_list, get_file_list_from_dir, (const std::string& directory));
    MOCK_METHOD(int, ppro_path_in_blacklist, (const std::string& path));

    // kmodctl.h
    MOCK_METHOD(given_list, orvex_scene_kmodctl_get_policy, ());
    MOCK_METHOD(int, orvex_scene_kmodctl_add_by_path, (const std::string& path));
    MOCK_METHOD(int, orvex_scene_kmodctl_add_by_name, (const std::string& name));
    MOCK_METHOD(int, orvex_scene_kmodctl_remove_by_path, (const std::string& path));
    MOCK_METHOD(int, orvex_scene_kmodctl_remove_by_name, (const std::string& name));
    MOCK_METHOD(maybe_text, orvex_scene_get_module_name_from_ko_path, (const std::string& path));

    // admctl.h
    MOCK_METHOD(given_list, orvex_scene_admctl_get_user_policy, (std::int32_t user_type));

    // exectl.h. The free calls free for real; they show the record's path, or the number of links.
    MOCK_METHOD(int, orvex_scene_exectl_wlist_multi_add, (const std::vector<std::string>& paths));
    MOCK_METHOD(int, orvex_scene_exectl_wlist_multi_delete, (const std::vector<std::string>& paths));
    MOCK_METHOD(int, orvex_scene_exectl_wlist_add_by_dir, (const std::string& directory));
    MOCK_METHOD(int, orvex_scene_exectl_wlist_delete_by_dir, (const std::string& directory));
    MOCK_METHOD(given_exectl_lookup, orvex_scene_exectl_wlist_load_by_path, (const std::string& path));
    MOCK_METHOD(given_exectl_chain, orvex_scene_exectl_wlist_load_all, ());
    MOCK_METHOD(void, orvex_scene_exectl_obj_free, (const maybe_text& path));
    MOCK_METHOD(void, orvex_scene_exectl_objs_free, (std::size_t links));
    MOCK_METHOD(given_list, orvex_scene_exectl_get_policy_for_file_permissive, ());
    MOCK_METHOD(given_list, orvex_scene_exectl_get_policy_for_package_permissive, ());
    MOCK_METHOD(int, orvex_scene_exectl_multi_add_file_in_permissive, (const std::vector<std::string>& paths));
    MOCK_METHOD(int, orvex_scene_exectl_multi_remove_file_from_permissive, (const std::vector<std::string>& paths));
    MOCK_METHOD(int, orvex_scene_exectl_multi_add_package_in_permissive, (const std::vector<std::string>& packages));
    MOCK_METHOD(int, orvex_scene_exectl_multi_remove_package_from_permissive,
                (const std::vector<std::string>& packages));

    // netctl.h
    MOCK_METHOD(given<netctl_pkg_record>, orvex_netctl_pkg_read_all_data_with_uid, (std::uint32_t uid));
    MOCK_METHOD(given<netctl_ext_record>, orvex_netctl_ext_read_all_data_with_uid, (std::uint32_t uid));
    MOCK_METHOD(std::optional<netctl_pkg_record>, orvex_netctl_pkg_read_node_with_uid,
                (std::uint32_t uid, const std::string& package));
    MOCK_METHOD(int, orvex_netctl_pkg_add,
                (std::uint32_t uid, const std::string& package, std::int32_t status, const std::string& icon,
                 const std::string& desktop, std::int32_t tag));
    MOCK_METHOD(int, orvex_netctl_pkg_update,
                (std::uint32_t uid, const std::string& package, std::int32_t status, const std::string& icon,
                 const std::string& desktop, std::int32_t tag));
    MOCK_METHOD(int, orvex_netctl_pkg_remove, (std::uint32_t uid, const std::string& package));
    MOCK_METHOD(std::optional<netctl_ext_record>, orvex_netctl_ext_read_node_with_uid,
                (std::uint32_t uid, const std::string& path));
    MOCK_METHOD(int, orvex_netctl_ext_add,
                (std::uint32_t uid, const std::string& path, std::int32_t status, const std::string& label,
                 const maybe_text& text1, const maybe_text& text2, std::int32_t tag));
    MOCK_METHOD(int, orvex_netctl_ext_update,
                (std::uint32_t uid, const std::string& path, std::int32_t status, const std::string& label,
                 const maybe_text& text1, const maybe_text& text2, std::int32_t tag));
    MOCK_METHOD(int, orvex_netctl_remove, (std::uint32_t uid, const std::string& path));

    // filectl.h. The free call frees for real; it shows whether there was an array, and the count.
    MOCK_METHOD(given_list, orvex_scene_filectl_get_policy, ());
    MOCK_METHOD(given_list, orvex_scene_filectl_get_pkg_policy, ());
    MOCK_METHOD(int, orvex_scene_filectl_multi_add_by_path, (const std::vector<std::string>& paths));
    MOCK_METHOD(int, orvex_scene_filectl_multi_remove_by_path, (const std::vector<std::string>& paths));
    MOCK_METHOD(int, orvex_scene_filectl_multi_add_by_pkg, (const std::vector<std::string>& packages));
    MOCK_METHOD(int, orvex_scene_filectl_multi_remove_by_pkg, (const std::vector<std::string>& packages));
    MOCK_METHOD(int, orvex_scene_filectl_exception_clear_resource_policy,
                (std::int32_t kind, const std::string& resource));
    MOCK_METHOD(given_exceptions, orvex_scene_filectl_exception_get_policy, ());
    MOCK_METHOD(void, orvex_scene_filectl_exception_policy_free, (bool has_records, std::uint64_t count));
    MOCK_METHOD(int, orvex_scene_filectl_exception_multi_add,
                (std::int32_t kind, const std::string& resource, std::int32_t except_kind,
                 const std::vector<std::string>& exceptions));
    MOCK_METHOD(int, orvex_scene_filectl_exception_multi_remove,
                (std::int32_t kind, const std::string& resource, std::int32_t except_kind,
                 const std::vector<std::string>& exceptions));

    // taskctl.h. The free call is like that of filectl.h.
    MOCK_METHOD(given_list, orvex_scene_taskctl_get_policy, ());
    MOCK_METHOD(int, orvex_scene_taskctl_multi_add_by_path, (const std::vector<std::string>& paths));
    MOCK_METHOD(int, orvex_scene_taskctl_multi_remove_by_path, (const std::vector<std::string>& paths));
    MOCK_METHOD(int, orvex_scene_taskctl_multi_add_by_pid, (const std::vector<std::int32_t>& pids));
    MOCK_METHOD(int, orvex_scene_taskctl_multi_remove_by_pid, (const std::vector<std::int32_t>& pids));
    MOCK_METHOD(int, orvex_scene_taskctl_exception_clear_resource_policy, (const std::string& path));
    MOCK_METHOD(int, orvex_scene_taskctl_exception_clear_resource_policy_by_pid, (std::int32_t pid));
    MOCK_METHOD(given_exceptions, orvex_scene_taskctl_exception_get_policy, ());
    MOCK_METHOD(void, orvex_scene_taskctl_exception_policy_free, (bool has_records, std::uint64_t count));
    MOCK_METHOD(int, orvex_scene_taskctl_exception_multi_add,
                (std::int32_t kind, const std::string& path, std::int32_t except_kind,
                 const std::vector<std::string>& exceptions));
    MOCK_METHOD(int, orvex_scene_taskctl_exception_multi_remove,
                (std::int32_t kind, const std::string& path, std::int32_t except_kind,
                 const std::vector<std::string>& exceptions));
    MOCK_METHOD(int, orvex_scene_taskctl_exception_multi_add_by_pid,
                (std::int32_t pid, std::int32_t except_kind, const std::vector<std::string>& exceptions));
    MOCK_METHOD(int, orvex_scene_taskctl_exception_multi_remove_by_pid,
                (std::int32_t pid, std::int32_t except_kind, const std::vector<std::string>& exceptions));

private:
    memory_ledger memory_;
    std::vector<unsigned char> error_record_;
};

// NOLINTNEXTLINE(cppcoreguidelines-macro-usage)
#define MOCKED_SIGNATURE(...) extern template class testing::internal::FunctionMocker<__VA_ARGS__>;
#include "support/mocked_signatures.inc"
#undef MOCKED_SIGNATURE
