// SPDX-License-Identifier: Apache-2.0
#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>
#include <glib-object.h>

#include <memory>
#include <string>

#include "framework/on_demand.h"
#include "framework/output.h"

namespace {

struct object_deleter {
    void operator()(GDesktopAppInfo* info) const noexcept { g_object_unref(info); }
};
using owned_app_info = std::unique_ptr<GDesktopAppInfo, object_deleter>;

owned_app_info load_desktop_entry(const std::string& file) {
    owned_app_info info(g_desktop_app_info_new_from_filename(file.c_str()));
    if (info == nullptr) {
        print_line("加载desktop文件失败: ", file);
    }
    return info;
}

std::string to_string(const char* text) {
    return text == nullptr ? std::string() : std::string(text);
}

std::string read_icon(const std::string& file) {
    const owned_app_info info = load_desktop_entry(file);
    if (info == nullptr) {
        return {};
    }
    GIcon* const icon = g_app_info_get_icon(G_APP_INFO(info.get()));
    // The text of g_icon_to_string is deliberately not given back.
    return icon == nullptr ? std::string() : to_string(g_icon_to_string(icon));
}

std::string read_name(const std::string& file) {
    const owned_app_info info = load_desktop_entry(file);
    if (info == nullptr) {
        return {};
    }
    return to_string(g_app_info_get_name(G_APP_INFO(info.get())));
}

}  // namespace

const desktop_questions orvex_desktop_questions_1 = {
    .read_icon = read_icon,
    .read_name = read_name,
};
