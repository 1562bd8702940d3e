// SPDX-License-Identifier: Apache-2.0
#include "tool/commands.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <vector>

#include "core/entry_list.h"
#include "core/failure.h"
#include "core/paths.h"
#include "core/state_directory.h"
#include "core/states.h"
#include "core/store.h"
#include "core/store_file.h"
#include "core/wished_failure.h"
#include "service/status.h"
#include "tool/content.h"
#include "tool/document.h"
#include "tool/show.h"
#include "tool/usage.h"

namespace local_service {
namespace {

/// The form in which callers of the libraries name a file: links resolved where it exists.
std::string resolve(const std::string& path) {
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(path, error);
    return error ? absolute_path(path) : real.string();
}

void restart() {
    transaction whole;
    simulate_restart();
    whole.commit();
    std::cout << "Restart simulated: what was set for after a restart is in force.\n";
}

/// Where there is something that is no store, it has to go first, and nobody is to lose it without a word.
void reset(bool is_forced) {
    try {
        reset_store();
        clear_failure_wishes();
    } catch (const store_failure& fault) {
        if (!has_store()) {
            throw;
        }
        if (!is_forced) {
            throw store_failure(std::string(fault.what()) + "; 'reset --force' drops what is there");
        }
        std::cout << "Dropping what is there: " << fault.what() << std::endl;
        replace_store();
    }
    std::cout << "The store is as new: framework disabled, all modules off, all lists empty.\n";
}

void require_store() {
    if (!has_store()) {
        throw failure("there is no store in " + state_directory());
    }
}

/// Switches the separation of the administrator roles, which no command of orvex_policy does.
void separate_roles(int status) {
    constexpr int role_module = 4;
    transaction whole;
    if (read_global_status() == orvex_status_disabled) {
        set_pending_statuses({{role_module, status}});
        std::cout << "The framework is disabled, so no roles are separated now. After a restart, with the framework "
                     "enabled, they are"
                  << (status == orvex_module_on ? ".\n" : " not either.\n");
    } else {
        switch_module(role_module, status);
    }
    whole.commit();
}

std::string read_input(const std::string& path) {
    std::ostringstream text;
    if (path == "-") {
        text << std::cin.rdbuf();
        return text.str();
    }
    const std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw failure(path + ": " + std::strerror(errno));
    }
    text << file.rdbuf();
    return text.str();
}

void load(const std::string& path) {
    const std::string input = read_input(path);
    try {
        write_content(read_document(input));
    } catch (const failure& fault) {
        throw failure((path == "-" ? "standard input" : path) + ": " + fault.what());
    }
}

/// A change of a list by one path.
using list_change = void (*)(const entry_list& list, const std::string& path);

void add_to(const entry_list& list, const std::string& path) {
    require_room();
    if (!list.add(path)) {
        throw failure(path + " is on the list already");
    }
}

void remove_from(const entry_list& list, const std::string& path) {
    if (!list.remove(path)) {
        throw failure(path + " is not on the list");
    }
}

const entry_list& list_of_role(const std::string& role) {
    const std::vector<std::string> roles{"root", "secadm", "auditadm"};
    const auto found = std::find(roles.begin(), roles.end(), role);
    if (found == roles.end()) {
        throw unknown_word("role", role, roles);
    }
    return lists::role_labels.at(static_cast<std::size_t>(found - roles.begin()));
}

void add_store_commands(CLI::App& app, arguments& given) {
    CLI::App* show = app.add_subcommand("show", "Print all states and lists");
    show->add_flag("--json", given.is_json, "Print them as one JSON document");
    show->callback([&given] {
        require_store();
        given.is_json ? print_document() : print_store();
    });
    CLI::App* loader = app.add_subcommand("load", "Put a document of 'show --json' in place of all states and lists");
    loader->add_option("FILE", given.path, "The document; - is standard input")->required();
    loader->callback([&given] { load(given.path); });
    app.add_subcommand("restart", "Simulate a restart of the machine")->callback(restart);
    CLI::App* resetter = app.add_subcommand("reset", "Bring the store back to what it holds when new");
    resetter->add_flag("--force", given.is_forced, "Drop also what is no store that can be read");
    resetter->callback([&given] { reset(given.is_forced); });
}

void add_scene_command(CLI::App& app) {
    CLI::App* scene = app.add_subcommand("scene", "Switch the secret scene mode, which forbids changes of state");
    scene->require_subcommand(1);
    scene->add_subcommand("on", "Switch it on")->callback([] { set_secret_scene(true); });
    scene->add_subcommand("off", "Switch it off")->callback([] { set_secret_scene(false); });
}

void add_roles_command(CLI::App& app) {
    CLI::App* roles = app.add_subcommand("roles", "Separate the administrator roles (3adm), so that user 600 acts");
    roles->require_subcommand(1);
    roles->add_subcommand("on", "Put the separation in force")->callback([] { separate_roles(orvex_module_on); });
    roles->add_subcommand("off", "End it")->callback([] { separate_roles(orvex_module_off); });
}

void add_label_action(CLI::App& label, arguments& given, const char* name, const char* help, list_change act) {
    CLI::App* action = label.add_subcommand(name, help);
    action->add_option("ROLE", given.role, "root, secadm or auditadm")->required();
    action->add_option("PATH", given.path, "The file, which need not exist")->required();
    action->callback([&given, act] { act(list_of_role(given.role), absolute_path(given.path)); });
}

void add_label_command(CLI::App& app, arguments& given) {
    CLI::App* label = app.add_subcommand("label", "Give a file the label of an administrator role, or take it away");
    label->require_subcommand(1);
    add_label_action(*label, given, "add", "Give PATH the label of ROLE", add_to);
    add_label_action(*label, given, "remove", "Take the label of ROLE away from PATH", remove_from);
}

void add_blacklist_action(CLI::App& blacklist, arguments& given, const char* name, const char* help, list_change act) {
    CLI::App* action = blacklist.add_subcommand(name, help);
    action->add_option("PATH", given.path, "The program, which need not exist")->required();
    action->callback([&given, act] { act(lists::blacklist, resolve(given.path)); });
}

void add_blacklist_command(CLI::App& app, arguments& given) {
    CLI::App* blacklist = app.add_subcommand("blacklist", "Programs that process kill protection refuses to protect");
    blacklist->require_subcommand(1);
    add_blacklist_action(*blacklist, given, "add", "Put PATH on the list", add_to);
    add_blacklist_action(*blacklist, given, "remove", "Take PATH off the list", remove_from);
}

void add_log_command(CLI::App& app, arguments& given) {
    CLI::App* log = app.add_subcommand("log", "Print the log: time, level, tag, function and message of each record");
    log->add_flag("-f,--follow", given.is_following, "Go on printing records as they come");
    log->callback([&given] {
        require_store();
        print_log(given.is_following);
    });
}

void change_wishes(const arguments& given) {
    if (given.is_listing) {
        require_store();
        print_failure_wishes();
    } else if (given.is_clearing) {
        require_store();
        clear_failure_wishes();
    } else if (given.wish.call.empty() || given.wish.result.empty()) {
        throw usage_error("fail needs CALL and RESULT, --list or --clear");
    } else {
        wish_failure(given.wish);
    }
}

/// A check of an option: a whole number, `least` or more.
auto number_from(std::int64_t least) {
    return [least](const std::string& text) -> std::string {
        std::int64_t number = 0;
        const char* end = text.data() + text.size();
        const auto [stopped, error] = std::from_chars(text.data(), end, number);
        const bool is_good = error == std::errc() && stopped == end && number >= least;
        return is_good ? "" : "a whole number from " + std::to_string(least) + " on is needed, not '" + text + "'";
    };
}

void add_fail_command(CLI::App& app, arguments& given) {
    CLI::App* fail = app.add_subcommand("fail", "Let the next calls of a service function fail");
    fail->add_option("CALL", given.wish.call, "The function");
    fail->add_option("RESULT", given.wish.result, "What it returns: a number, or null for a pointer");
    fail->add_option("--times", given.wish.times, "How many calls fail; without it all do")
        ->type_name("N")
        ->check(number_from(1));
    fail->add_option("--after", given.wish.after, "How many calls work before")->type_name("N")->check(number_from(0));
    fail->add_option("--error", given.wish.error, "What orvex_get_error says then")->type_name("TEXT");
    CLI::Option* list = fail->add_flag("--list", given.is_listing, "Print what is still to fail");
    CLI::Option* clear = fail->add_flag("--clear", given.is_clearing, "Let nothing fail any more");
    list->excludes(clear);
    fail->callback([&given] { change_wishes(given); });
}

/// Takes the rest of the command line, with its options, for another command's.
CLI::App* add_runner(CLI::App& app, const char* name, const char* help) {
    CLI::App* runner = app.add_subcommand(name, help);
    runner->prefix_command();
    runner->footer("COMMAND... follows the options: a command with its arguments.");
    return runner;
}

std::vector<std::string> command_of(const CLI::App& runner) {
    std::vector<std::string> words = runner.remaining();
    if (!words.empty() && words.front() == "--") {
        words.erase(words.begin());
    }
    if (words.empty()) {
        throw usage_error(runner.get_name() + " needs a command to run");
    }
    return words;
}

void add_run_command(CLI::App& app, arguments& given) {
    CLI::App* runner = add_runner(app, "run", "Run a command on the stand-in");
    runner->add_option("--state", given.place.state, "The state directory, made where it is missing")->type_name("DIR");
    runner->add_option("--uid", given.place.user, "The user to run it as: 0 or 600")
        ->type_name("UID")
        ->check(CLI::IsMember({0, 600}));
    runner->callback([runner, &given] { given.exit_value = run_command(command_of(*runner), given.place); });
}

void add_trace_command(CLI::App& app, arguments& given) {
    CLI::App* runner = add_runner(app, "trace", "Run a command on the stand-in and print its service calls");
    runner->add_flag("--json", given.trace.is_json, "Print each call as a JSON object");
    runner->add_option("-o,--output", given.trace.file, "Write to FILE instead of standard error")->type_name("FILE");
    runner->callback([runner, &given] { given.exit_value = trace_command(command_of(*runner), given.trace); });
}

}  // namespace

void add_commands(CLI::App& app, arguments& given) {
    add_store_commands(app, given);
    add_scene_command(app);
    add_roles_command(app);
    add_label_command(app, given);
    add_blacklist_command(app, given);
    add_log_command(app, given);
    add_fail_command(app, given);
    add_run_command(app, given);
    add_trace_command(app, given);
}

}  // namespace local_service
