// SPDX-License-Identifier: Apache-2.0
// The functions of netctl.h over the double in use.
#include <cstring>

#include "gtest/gtest.h"
#include "service/netctl.h"
#include "support/hand_over.h"
#include "support/service_double.h"

namespace {

template <std::size_t Size>
void put_text(char (&field)[Size], const std::string& text) {
    ASSERT_LT(text.size(), Size) << "the record has no room for this text";
    std::memcpy(field, text.data(), text.size());
}

template <class Record>
Record* hand_over_block(const given<Record>& block, std::int32_t* count) {
    expect_zero(*count);
    *count = static_cast<std::int32_t>(block.count);
    if (!block.items) {
        return nullptr;
    }
    const std::size_t size = block.items->size() * sizeof(Record);
    void* const memory = service_double::in_use().memory().hand_out(size, way_back::with_free, "records");
    if (size > 0) {
        std::memcpy(memory, block.items->data(), size);
    }
    return static_cast<Record*>(memory);
}

template <class Record>
Record* hand_over_record(const std::optional<Record>& record) {
    std::int32_t count = 0;
    return record ? hand_over_block(give_items<Record>({*record}), &count) : nullptr;
}

}  // namespace

netctl_pkg_record give_netctl_pkg(const std::string& name, std::int32_t status, const std::string& icon,
                                  const std::string& desktop, std::int32_t tag) {
    netctl_pkg_record record = {};
    put_text(record.name, name);
    record.status = status;
    put_text(record.icon, icon);
    put_text(record.desktop, desktop);
    record.tag = tag;
    return record;
}

netctl_ext_record give_netctl_ext(const std::string& path, std::int32_t status, const std::string& label,
                                  const std::string& text1, const std::string& text2, std::int32_t tag) {
    netctl_ext_record record = {};
    put_text(record.path, path);
    record.status = status;
    put_text(record.label, label);
    put_text(record.text1, text1);
    put_text(record.text2, text2);
    record.tag = tag;
    return record;
}

extern "C" {

netctl_pkg_record* orvex_netctl_pkg_read_all_data_with_uid(std::uint32_t uid, std::int32_t* count) {
    return hand_over_block(service_double::in_use().orvex_netctl_pkg_read_all_data_with_uid(uid), count);
}

netctl_ext_record* orvex_netctl_ext_read_all_data_with_uid(std::uint32_t uid, std::int32_t* count) {
    return hand_over_block(service_double::in_use().orvex_netctl_ext_read_all_data_with_uid(uid), count);
}

netctl_pkg_record* orvex_netctl_pkg_read_node_with_uid(std::uint32_t uid, const char* package) {
    return hand_over_record(service_double::in_use().orvex_netctl_pkg_read_node_with_uid(uid, text_of(package)));
}

int orvex_netctl_pkg_add(std::uint32_t uid, const char* package, std::int32_t status, const char* icon,
                         const char* desktop, std::int32_t tag) {
    return service_double::in_use().orvex_netctl_pkg_add(uid, text_of(package), status, text_of(icon), text_of(desktop),
                                                         tag);
}

int orvex_netctl_pkg_update(std::uint32_t uid, const char* package, std::int32_t status, const char* icon,
                            const char* desktop, std::int32_t tag) {
    return service_double::in_use().orvex_netctl_pkg_update(uid, text_of(package), status, text_of(icon),
                                                            text_of(desktop), tag);
}

int orvex_netctl_pkg_remove(std::uint32_t uid, const char* package) {
    return service_double::in_use().orvex_netctl_pkg_remove(uid, text_of(package));
}

netctl_ext_record* orvex_netctl_ext_read_node_with_uid(std::uint32_t uid, const char* path) {
    return hand_over_record(service_double::in_use().orvex_netctl_ext_read_node_with_uid(uid, text_of(path)));
}

int orvex_netctl_ext_add(std::uint32_t uid, const char* path, std::int32_t status, const char* label, const char* text1,
                         const char* text2, std::int32_t tag) {
    return service_double::in_use().orvex_netctl_ext_add(uid, text_of(path), status, text_of(label),
                                                         maybe_text_of(text1), maybe_text_of(text2), tag);
}

int orvex_netctl_ext_update(std::uint32_t uid, const char* path, std::int32_t status, const char* label,
                            const char* text1, const char* text2, std::int32_t tag) {
    return service_double::in_use().orvex_netctl_ext_update(uid, text_of(path), status, text_of(label),
                                                            maybe_text_of(text1), maybe_text_of(text2), tag);
}

int orvex_netctl_remove(std::uint32_t uid, const char* path) {
    return service_double::in_use().orvex_netctl_remove(uid, text_of(path));
}
}
