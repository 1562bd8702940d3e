// SPDX-License-Identifier: Apache-2.0
#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>
#include <glib-object.h>

#include <list>
#include <memory>
#include <string>

#include "framework/module_base.h"
#include "framework/output.h"

namespace {

struct object_deleter {
    void operator()(GDesktopAppInfo* info) const noexcept { g_object_unref(info); }
};
using owned_app_info = std::unique_ptr<GDesktopAppInfo, object_deleter>;

/// Loads the desktop entry of the package `pkg`. Null without one, and with a line for one that cannot be loaded.
owned_app_info load_desktop_entry(COrvexBase& module, const std::string& pkg) {
    const std::string file = module.get_desktop_file(pkg);
    if (file.empty()) {
        return nullptr;
    }
    owned_app_info info(g_desktop_app_info_new_from_filename(file.c_str()));
    if (info == nullptr) {
        print_line("加载desktop文件失败: ", file);
    }
    return info;
}

std::string to_string(const char* text) {
    return text == nullptr ? std::string() : std::string(text);
}

bool holds(const std::string& text, const char* piece) {
    return text.find(piece) != std::string::npos;
}

}  // namespace

std::string COrvexBase::get_desktop_file(const std::string& pkg) {
    std::list<std::string> files;
    if (pkg.empty() || get_pkg_files(pkg, files) != 0) {
        return {};
    }
    std::string found;
    for (const std::string& file : files) {
        // This one package brings several entries, of which only one is the application's.
        const bool is_entry =
            holds(file, "/usr/share/applications/") && (pkg != "wps-office" || holds(file, "wps-office-prometheus"));
        // The last one counts.
        if (is_entry) {
            found = file;
        }
    }
    return found;
}

std::string COrvexBase::get_desktop_icon(const std::string& pkg) {
    const owned_app_info info = load_desktop_entry(*this, pkg);
    if (info == nullptr) {
        return {};
    }
    GIcon* const icon = g_app_info_get_icon(G_APP_INFO(info.get()));
    // The text of g_icon_to_string is deliberately not given back.
    return icon == nullptr ? std::string() : to_string(g_icon_to_string(icon));
}

std::string COrvexBase::get_desktop_name(const std::string& pkg) {
    const owned_app_info info = load_desktop_entry(*this, pkg);
    if (info == nullptr) {
        return {};
    }
    return to_string(g_app_info_get_name(G_APP_INFO(info.get())));
}
