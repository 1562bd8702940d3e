// SPDX-License-Identifier: Apache-2.0
// The order of the virtual operations, as the Itanium C++ ABI lays them out, and the shape of the objects. Others rely
// on both, so every class has its test here.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <list>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

#include "framework/module_base.h"
#include "modules/box/box_module.h"
#include "modules/exec/exec_module.h"
#include "modules/file/file_module.h"
#include "modules/kmod/kmod_module.h"
#include "modules/net/net_module.h"
#include "modules/proc/proc_module.h"
#include "modules/userid/userid_module.h"

// The destructors that stand in the base's table, under the names that the linker knows them by.
extern "C" {
void base_destructor() __asm__("_ZN10COrvexBaseD1Ev");
void base_deleting_destructor() __asm__("_ZN10COrvexBaseD0Ev");
}

namespace {

using text = const std::string&;
using number = const std::int32_t&;
using kind = const std::int32_t&;

constexpr std::size_t base_slots = 30;

/// The slot of a virtual operation of the type `Signature`. -1 for an operation that is not virtual or not of the first
/// base.
template <class Signature, class Class>
std::ptrdiff_t slot(Signature Class::*operation) {
    static_assert(sizeof(operation) == 2 * sizeof(std::ptrdiff_t), "a member pointer of the Itanium ABI");
    std::ptrdiff_t parts[2];
    std::memcpy(parts, &operation, sizeof(parts));
    // One more than the offset in the table; on some machines the mark stands in the second part instead.
    if (parts[0] % 2 != 0 && parts[1] == 0) {
        return (parts[0] - 1) / static_cast<std::ptrdiff_t>(sizeof(void*));
    }
    return parts[1] == 1 ? parts[0] / static_cast<std::ptrdiff_t>(sizeof(void*)) : -1;
}

/// A class with one operation more, which tells how many stand in front of it.
template <class Class>
class with_one_more : public Class {
public:
    virtual void one_more() {}
};

template <class Class>
std::ptrdiff_t count_slots() {
    return slot<void()>(&with_one_more<Class>::one_more);
}

/// What stands in a slot of the table of `object`.
std::uintptr_t read_slot(const COrvexBase& object, std::size_t index) {
    const std::uintptr_t* table = nullptr;
    std::memcpy(&table, static_cast<const void*>(&object), sizeof(table));
    return table[index];
}

std::uintptr_t address(void (*function)()) {
    return reinterpret_cast<std::uintptr_t>(function);
}

/// Tells whether `Class` is nothing but `COrvexBase` with other operations.
template <class Class>
constexpr bool is_plain_module() {
    return std::is_convertible_v<Class*, COrvexBase*> && sizeof(Class) == sizeof(COrvexBase) &&
           std::is_default_constructible_v<Class>;
}

static_assert(is_plain_module<COrvexFile>(), "the module classes add no data");
static_assert(is_plain_module<COrvexProc>(), "the module classes add no data");
static_assert(is_plain_module<COrvexExec>(), "the module classes add no data");
static_assert(is_plain_module<COrvexKmod>(), "the module classes add no data");
static_assert(is_plain_module<COrvexNet>(), "the module classes add no data");
static_assert(is_plain_module<COrvexUserid>(), "the module classes add no data");
static_assert(is_plain_module<COrvexBox>(), "the module classes add no data");
static_assert(std::has_virtual_destructor_v<COrvexBase>, "the destructors are virtual");
static_assert(std::is_same_v<std::underlying_type_t<orvex_module_type>, std::int32_t>, "the numbers are 32 bits wide");

TEST(slots_test, the_modules_have_their_numbers) {
    EXPECT_EQ(module_exec, 0);
    EXPECT_EQ(module_net, 1);
    EXPECT_EQ(module_file, 2);
    EXPECT_EQ(module_kmod, 3);
    EXPECT_EQ(module_3adm, 4);
    EXPECT_EQ(module_proc, 5);
    EXPECT_EQ(module_exec_script, 7);
    EXPECT_EQ(module_box, 11);
}

TEST(slots_test, the_base_has_its_operations_in_order) {
    EXPECT_EQ(slot<int(int, char**)>(&COrvexBase::run), 2);
    EXPECT_EQ(slot<void()>(&COrvexBase::usage), 3);
    EXPECT_EQ(slot<std::string(text)>(&COrvexBase::get_pkg_by_file), 4);
    EXPECT_EQ(slot<std::string(text)>(&COrvexBase::get_path_tail), 5);
    EXPECT_EQ(slot<std::string(text)>(&COrvexBase::get_desktop_file), 6);
    EXPECT_EQ(slot<std::string(text)>(&COrvexBase::get_desktop_icon), 7);
    EXPECT_EQ(slot<std::string(text)>(&COrvexBase::get_path_filename), 8);
    EXPECT_EQ(slot<std::string(text)>(&COrvexBase::get_desktop_name), 9);
    EXPECT_EQ((slot<int(text, std::list<std::string>&)>(&COrvexBase::get_pkg_files)), 10);
    EXPECT_EQ(slot<bool(text)>(&COrvexBase::is_pkg_installed), 11);
    EXPECT_EQ(slot<bool(text)>(&COrvexBase::is_path_under_home), 12);
    EXPECT_EQ(slot<bool(text)>(&COrvexBase::is_all_digits), 13);
    EXPECT_EQ(slot<bool()>(&COrvexBase::is_cmdline_box_enabled), 14);
    EXPECT_EQ(slot<bool()>(&COrvexBase::is_grub_box_enabled), 15);
    EXPECT_EQ(slot<bool(text)>(&COrvexBase::is_absolute_path), 16);
    EXPECT_EQ(slot<std::string()>(&COrvexBase::get_home_dir), 17);
    EXPECT_EQ(slot<std::string(text)>(&COrvexBase::expand_tilde), 18);
    EXPECT_EQ(slot<std::uint32_t(text)>(&COrvexBase::parse_uint32), 19);
    EXPECT_EQ(slot<int(text)>(&COrvexBase::parse_pid), 20);
    EXPECT_EQ((slot<std::vector<std::string>(text, char)>(&COrvexBase::split_string)), 21);
    EXPECT_EQ(slot<void(text)>(&COrvexBase::print_current_time), 22);
    EXPECT_EQ(slot<std::string(std::uint32_t)>(&COrvexBase::get_path_by_pid), 23);
    EXPECT_EQ((slot<int(const orvex_module_type&, const int&)>(&COrvexBase::set_module_status)), 24);
    EXPECT_EQ(slot<void()>(&COrvexBase::init_module_table), 25);
    EXPECT_EQ((slot<std::map<orvex_module_type, std::string>&()>(&COrvexBase::get_module_names)), 26);
    EXPECT_EQ(slot<std::vector<orvex_module_type>&()>(&COrvexBase::get_module_types), 27);
    EXPECT_EQ(slot<bool(std::string&)>(&COrvexBase::check_permission), 28);
    EXPECT_EQ(slot<std::string(text)>(&COrvexBase::get_pkg_name_from_nevra), 29);
    EXPECT_EQ(count_slots<COrvexBase>(), base_slots);
}

TEST(slots_test, file_has_its_operations_behind_the_base_s) {
    EXPECT_EQ((slot<int(text, const int&)>(&COrvexFile::set_file_policy_by_file)), base_slots);
    EXPECT_EQ((slot<int(text, const int&)>(&COrvexFile::set_file_policy_by_dir)), base_slots + 1);
    EXPECT_EQ((slot<int(text, const int&)>(&COrvexFile::set_file_policy_by_pkg)), base_slots + 2);
    EXPECT_EQ((slot<int(kind, text, kind, text, const int&)>(&COrvexFile::set_file_except_policy)), base_slots + 3);
    EXPECT_EQ(slot<int()>(&COrvexFile::list_file_policy), base_slots + 4);
    EXPECT_EQ(slot<bool(text)>(&COrvexFile::is_file_in_policy), base_slots + 5);
    EXPECT_EQ(slot<bool(text)>(&COrvexFile::is_dir_in_policy), base_slots + 6);
    EXPECT_EQ(slot<bool(text)>(&COrvexFile::is_pkg_in_policy), base_slots + 7);
    EXPECT_EQ((slot<bool(text, text)>(&COrvexFile::is_except_in_policy)), base_slots + 8);
    EXPECT_EQ(count_slots<COrvexFile>(), base_slots + 9);
}

TEST(slots_test, proc_has_its_operations_behind_the_base_s) {
    EXPECT_EQ((slot<int(text, const int&)>(&COrvexProc::set_proc_policy_by_file)), base_slots);
    EXPECT_EQ((slot<int(text, const int&)>(&COrvexProc::set_proc_policy_by_pid)), base_slots + 1);
    EXPECT_EQ((slot<int(kind, text, kind, text, const int&)>(&COrvexProc::set_proc_except_policy)), base_slots + 2);
    EXPECT_EQ((slot<int(text, kind, text, const int&)>(&COrvexProc::set_proc_except_policy_by_pid)), base_slots + 3);
    EXPECT_EQ(slot<int()>(&COrvexProc::list_proc_policy), base_slots + 4);
    EXPECT_EQ(slot<bool(text)>(&COrvexProc::is_proc_in_policy), base_slots + 5);
    EXPECT_EQ((slot<bool(text, text)>(&COrvexProc::is_proc_except_in_policy)), base_slots + 6);
    EXPECT_EQ(count_slots<COrvexProc>(), base_slots + 7);
}

TEST(slots_test, exec_has_its_operations_behind_the_base_s) {
    EXPECT_EQ(slot<bool(text)>(&COrvexExec::is_file_excepted), base_slots);
    EXPECT_EQ((slot<bool(text, const int&)>(&COrvexExec::is_file_excepted_from)), base_slots + 1);
    EXPECT_EQ(slot<bool(text)>(&COrvexExec::is_dir_in_except_list), base_slots + 2);
    EXPECT_EQ(slot<bool(text)>(&COrvexExec::is_pkg_in_except_list), base_slots + 3);
    EXPECT_EQ((slot<int(text, const int&)>(&COrvexExec::set_exec_policy_by_file)), base_slots + 4);
    EXPECT_EQ((slot<int(text, const int&)>(&COrvexExec::set_exec_policy_by_dir)), base_slots + 5);
    EXPECT_EQ((slot<int(text, const int&)>(&COrvexExec::set_exec_policy_by_pkg)), base_slots + 6);
    EXPECT_EQ((slot<int(text, const int&)>(&COrvexExec::set_exec_except_policy_by_file)), base_slots + 7);
    EXPECT_EQ((slot<int(text, const int&)>(&COrvexExec::set_exec_except_policy_by_dir)), base_slots + 8);
    EXPECT_EQ((slot<int(text, const int&)>(&COrvexExec::set_exec_except_policy_by_pkg)), base_slots + 9);
    EXPECT_EQ(slot<int()>(&COrvexExec::get_all_tampered_file), base_slots + 10);
    EXPECT_EQ(slot<int(text)>(&COrvexExec::get_whlist_status_by_file), base_slots + 11);
    EXPECT_EQ(slot<int(text)>(&COrvexExec::get_whlist_status_by_dir), base_slots + 12);
    EXPECT_EQ(slot<int(text)>(&COrvexExec::get_whlist_status_by_pkg), base_slots + 13);
    EXPECT_EQ(slot<int()>(&COrvexExec::get_all_except_policy), base_slots + 14);
    EXPECT_EQ(slot<int(text)>(&COrvexExec::check_file_in_policy), base_slots + 15);
    EXPECT_EQ(slot<bool(text)>(&COrvexExec::is_file_in_except_list), base_slots + 16);
    EXPECT_EQ(slot<bool(text)>(&COrvexExec::has_except_dir), base_slots + 17);
    EXPECT_EQ(slot<bool(text)>(&COrvexExec::has_except_pkg), base_slots + 18);
    EXPECT_EQ((slot<int(text, const int&, bool)>(&COrvexExec::print_whlist_status_by_file)), base_slots + 19);
    EXPECT_EQ(count_slots<COrvexExec>(), base_slots + 20);
}

TEST(slots_test, kmod_has_its_operations_behind_the_base_s) {
    EXPECT_EQ(slot<bool(text)>(&COrvexKmod::check_kmod_is_add_by_name), base_slots);
    EXPECT_EQ(slot<bool(text)>(&COrvexKmod::check_kmod_is_add_by_file), base_slots + 1);
    EXPECT_EQ(slot<int(text)>(&COrvexKmod::add_kmod_by_file), base_slots + 2);
    EXPECT_EQ(slot<int(text)>(&COrvexKmod::add_kmod_by_name), base_slots + 3);
    EXPECT_EQ(slot<int(text)>(&COrvexKmod::del_kmod_by_file), base_slots + 4);
    EXPECT_EQ(slot<int(text)>(&COrvexKmod::del_kmod_by_name), base_slots + 5);
    EXPECT_EQ(count_slots<COrvexKmod>(), base_slots + 6);
}

TEST(slots_test, net_has_its_operations_behind_the_base_s) {
    EXPECT_EQ(slot<int(text)>(&COrvexNet::add_net_policy_by_file), base_slots);
    EXPECT_EQ(slot<int(text)>(&COrvexNet::add_net_policy_by_pkg), base_slots + 1);
    EXPECT_EQ(slot<int(text)>(&COrvexNet::del_net_policy_by_file), base_slots + 2);
    EXPECT_EQ(slot<int(text)>(&COrvexNet::del_net_policy_by_pkg), base_slots + 3);
    EXPECT_EQ((slot<int(text, const std::int32_t&)>(&COrvexNet::update_net_policy_by_file)), base_slots + 4);
    EXPECT_EQ((slot<int(text, const std::int32_t&)>(&COrvexNet::update_net_policy_by_pkg)), base_slots + 5);
    EXPECT_EQ(slot<int()>(&COrvexNet::list_net_policy), base_slots + 6);
    EXPECT_EQ(count_slots<COrvexNet>(), base_slots + 7);
}

TEST(slots_test, userid_has_its_operations_behind_the_base_s) {
    EXPECT_EQ(slot<int(text)>(&COrvexUserid::print_userid_by_file), base_slots);
    EXPECT_EQ(slot<int(text)>(&COrvexUserid::print_userid_by_dir), base_slots + 1);
    EXPECT_EQ(slot<int(text)>(&COrvexUserid::print_userid_by_pkg), base_slots + 2);
    EXPECT_EQ(slot<void(std::list<std::string>)>(&COrvexUserid::print_userid_of_file_list), base_slots + 3);
    EXPECT_EQ((slot<void(char**, int)>(&COrvexUserid::print_userid_of_file_array)), base_slots + 4);
    EXPECT_EQ(count_slots<COrvexUserid>(), base_slots + 5);
}

TEST(slots_test, box_has_no_operations_of_its_own) {
    EXPECT_EQ(count_slots<COrvexBox>(), base_slots);
}

TEST(slots_test, the_destructors_stand_first) {
    const COrvexBase base;
    EXPECT_EQ(read_slot(base, 0), address(base_destructor));
    EXPECT_EQ(read_slot(base, 1), address(base_deleting_destructor));
}

/// The slots behind the destructors in which the tables of two objects differ. The modules' own destructors do what the
/// base's does, and a compiler may put the base's in their place.
std::vector<std::size_t> compare_slots(const COrvexBase& left, const COrvexBase& right) {
    std::vector<std::size_t> different;
    for (std::size_t index = 2; index < base_slots; ++index) {
        if (read_slot(left, index) != read_slot(right, index)) {
            different.push_back(index);
        }
    }
    return different;
}

TEST(slots_test, a_module_overrides_its_run_and_its_help) {
    const COrvexBase base;
    const std::vector<std::size_t> overridden = {2, 3};
    EXPECT_EQ(compare_slots(base, COrvexFile()), overridden);
    EXPECT_EQ(compare_slots(base, COrvexProc()), overridden);
    EXPECT_EQ(compare_slots(base, COrvexExec()), overridden);
    EXPECT_EQ(compare_slots(base, COrvexKmod()), overridden);
    EXPECT_EQ(compare_slots(base, COrvexNet()), overridden);
    EXPECT_EQ(compare_slots(base, COrvexUserid()), overridden);
    EXPECT_EQ(compare_slots(base, COrvexBox()), overridden);
}

TEST(slots_test, the_object_is_the_table_pointer_the_names_and_the_types) {
    COrvexBase base;
    const auto start = reinterpret_cast<std::uintptr_t>(&base);
    const auto names = reinterpret_cast<std::uintptr_t>(&base.get_module_names());
    const auto types = reinterpret_cast<std::uintptr_t>(&base.get_module_types());
    EXPECT_EQ(names, start + sizeof(void*));
    EXPECT_EQ(types, names + sizeof(std::map<orvex_module_type, std::string>));
    EXPECT_EQ(start + sizeof(base), types + sizeof(std::vector<orvex_module_type>));
}

}  // namespace
