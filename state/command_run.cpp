// SPDX-License-Identifier: Apache-2.0
#include "state/command_run.h"

#include <glib.h>

#include <filesystem>
#include <memory>
#include <system_error>

#include "framework/owned.h"

namespace state {
namespace {

struct glib_deleter {
    void operator()(char* text) const noexcept { g_free(text); }
    void operator()(GError* error) const noexcept { g_error_free(error); }
};
using glib_text = std::unique_ptr<char, glib_deleter>;
using glib_error = std::unique_ptr<GError, glib_deleter>;

std::string find_program() {
    std::error_code error;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) {
        throw failure("the directory of this program cannot be found: " + error.message());
    }
    return self.parent_path() / "orvex_policy";
}

}  // namespace

command_result run_command(const command& words) {
    std::string program = find_program();
    command all = words;
    std::vector<char*> arguments{program.data()};
    for (std::string& word : all) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);

    char* output = nullptr;
    char* errors = nullptr;
    GError* problem = nullptr;
    int status = 0;
    // All paths are absolute, and a directory beside the command would be taken for a package of its name.
    const bool is_started = g_spawn_sync("/", arguments.data(), nullptr, G_SPAWN_DEFAULT, nullptr, nullptr, &output,
                                         &errors, &status, &problem) != 0;
    const glib_text owned_output(output);
    const glib_text owned_errors(errors);
    const glib_error owned_problem(problem);
    if (!is_started) {
        throw failure(program + ": " + problem->message);
    }
    GError* end = nullptr;
    const bool is_success = g_spawn_check_wait_status(status, &end) != 0;
    const glib_error owned_end(end);
    return {std::string(output) + errors, is_success ? "" : end->message};
}

}  // namespace state
