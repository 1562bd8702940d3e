// SPDX-License-Identifier: Apache-2.0
// The functions of log.h, status.h, paths.h, kmodctl.h and admctl.h over the double in use.
#include <cstdarg>

#include "service/admctl.h"
#include "service/kmodctl.h"
#include "service/log.h"
#include "service/paths.h"
#include "service/status.h"
#include "support/hand_over.h"
#include "support/log_text.h"
#include "support/service_double.h"

extern "C" {

// NOLINTNEXTLINE(cert-dcl50-cpp): the library's own declaration
void orvex_log(int level, const char* tag, const char* function, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const std::string message = render_log_text(format, arguments);
    va_end(arguments);
    service_double::in_use().orvex_log(level, text_of(tag), text_of(function), format, message);
}

orvex_error_record* orvex_get_error(void) {
    service_double& service = service_double::in_use();
    const maybe_text text = service.orvex_get_error();
    return text ? static_cast<orvex_error_record*>(service.keep_error_record(*text)) : nullptr;
}

int orvex_scene_getstatus(void) {
    return service_double::in_use().orvex_scene_getstatus();
}

int orvex_scene_get_sm_status(void) {
    return service_double::in_use().orvex_scene_get_sm_status();
}

int orvex_scene_get_module_status(int module) {
    return service_double::in_use().orvex_scene_get_module_status(module);
}

int orvex_scene_set_module_status(int module, int status) {
    return service_double::in_use().orvex_scene_set_module_status(module, status);
}

int orvex_scene_set_multi_module_status(int module, int status, int final) {
    return service_double::in_use().orvex_scene_set_multi_module_status(module, status, final);
}

int setModuleStatusReboot_dbus(int a, int state, int b, int c, int d, int reboot) {
    return service_double::in_use().setModuleStatusReboot_dbus(a, state, b, c, d, reboot);
}

int path_is_exist(const char* path) {
    return service_double::in_use().path_is_exist(text_of(path));
}

int path_is_dir(const char* path) {
    return service_double::in_use().path_is_dir(text_of(path));
}

int path_is_same(const char* path, const char* other) {
    return service_double::in_use().path_is_same(text_of(path), text_of(other));
}

char* get_absolute_path(const char* path) {
    return hand_over_text(service_double::in_use().get_absolute_path(text_of(path)));
}

char* pathNormalize(const char* path) {
    return hand_over_text(service_double::in_use().pathNormalize(text_of(path)));
}

int parse_file_type(const char* path) {
    return service_double::in_use().parse_file_type(text_of(path));
}

char** get_file_list_from_dir(const char* directory, int* count) {
    return hand_over_list(service_double::in_use().get_file_list_from_dir(text_of(directory)), count);
}

int ppro_path_in_blacklist(const char* path) {
    return service_double::in_use().ppro_path_in_blacklist(text_of(path));
}

char** orvex_scene_kmodctl_get_policy(std::uint64_t* count) {
    return hand_over_list(service_double::in_use().orvex_scene_kmodctl_get_policy(), count);
}

int orvex_scene_kmodctl_add_by_path(const char* path) {
    return service_double::in_use().orvex_scene_kmodctl_add_by_path(text_of(path));
}

int orvex_scene_kmodctl_add_by_name(const char* name) {
    return service_double::in_use().orvex_scene_kmodctl_add_by_name(text_of(name));
}

int orvex_scene_kmodctl_remove_by_path(const char* path) {
    return service_double::in_use().orvex_scene_kmodctl_remove_by_path(text_of(path));
}

int orvex_scene_kmodctl_remove_by_name(const char* name) {
    return service_double::in_use().orvex_scene_kmodctl_remove_by_name(text_of(name));
}

char* orvex_scene_get_module_name_from_ko_path(const char* path) {
    return hand_over_text(service_double::in_use().orvex_scene_get_module_name_from_ko_path(text_of(path)));
}

char** orvex_scene_admctl_get_user_policy(std::int32_t user_type, std::uint64_t* count) {
    return hand_over_list(service_double::in_use().orvex_scene_admctl_get_user_policy(user_type), count);
}
}
