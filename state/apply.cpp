// SPDX-License-Identifier: Apache-2.0
#include <unistd.h>

#include <iostream>
#include <sstream>

#include "framework/module_base.h"
#include "state/command_run.h"
#include "state/comparison.h"
#include "state/host.h"
#include "state/text.h"

namespace state {
namespace {

/// What orvex_policy says where a disabled framework will be enabled. No call tells what is set for after a restart.
constexpr const char* start_text = "orvex开启成功, 重启后生效!\n";

void show_output(const std::string& output) {
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        std::cout << "  " << make_visible(line) << '\n';
    }
}

/// Shows and runs the commands, up to the first that does not end well. Returns what the last one said.
std::string run_commands(const std::vector<command>& commands) {
    const bool is_terminal = isatty(STDOUT_FILENO) == 1;
    std::string output;
    for (std::size_t index = 0; index < commands.size(); ++index) {
        if (is_terminal) {
            std::cout << '[' << index + 1 << '/' << commands.size() << "] ";
        }
        std::cout << tell_command(commands[index]) << std::endl;
        const command_result result = run_command(commands[index]);
        output = result.output;
        show_output(output);
        if (!result.failure.empty()) {
            std::cout << "  (" << result.failure << ")\n";
            break;
        }
    }
    return output;
}

void require_rights() {
    std::string refusal;
    if (!COrvexBase().check_permission(refusal)) {
        throw failure(refusal);
    }
}

int tell_unchanged(const std::vector<std::string>& changes) {
    std::cout.flush();
    for (const std::string& change : changes) {
        std::cerr << "orvex_state: this did not come about: " << change << '\n';
    }
    return exit_different;
}

/// Tells how the framework's start, for which there is nothing to compare before the restart, came out.
int tell_start(const std::string& output) {
    if (output != start_text) {
        return tell_unchanged({"the framework works after a restart"});
    }
    std::cout.flush();
    tell_restart();
    return exit_restart_needed;
}

}  // namespace

int apply_document(const arguments& given) {
    const comparison before = compare_with_document(given);
    if (before.all.empty()) {
        return exit_done;
    }
    const plan planned = make_plan(before, given);
    require_rights();
    const std::string output = run_commands(planned.commands);
    if (planned.needs_restart) {
        return tell_start(output);
    }
    const differences rest = find_differences(read_host(), before.wanted, given.keeps_others);
    return rest.empty() ? exit_done : tell_unchanged(tell_differences(rest, false));
}

}  // namespace state
