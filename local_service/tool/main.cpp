// SPDX-License-Identifier: Apache-2.0
// orvex_local: the framework's part, played by hand.
#include <CLI/CLI.hpp>
#include <exception>
#include <filesystem>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "core/entry_list.h"
#include "core/failure.h"
#include "core/paths.h"
#include "core/states.h"
#include "core/store.h"
#include "service/status.h"
#include "tool/command_runner.h"
#include "tool/show.h"

using namespace local_service;

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

void reset() {
    reset_store();
    std::cout << "The store is as new: framework disabled, all modules off, all lists empty.\n";
}

/// Switches the separation of the administrator roles, which no command of orvex_policy does.
void separate_roles(int status) {
    constexpr int role_module = 4;
    transaction whole;
    switch_module(role_module, status);
    whole.commit();
}

/// A change of a list by one path.
using list_change = void (*)(const entry_list& list, const std::string& path);

void add_to(const entry_list& list, const std::string& path) {
    if (!list.add(path)) {
        throw failure(path + " is on the list already");
    }
}

void remove_from(const entry_list& list, const std::string& path) {
    if (!list.remove(path)) {
        throw failure(path + " is not on the list");
    }
}

/// What the command line gives beside the commands.
struct arguments {
    std::string role;
    std::string path;
    bool is_following = false;
    run_place place;
    trace_wish trace;
    int exit_value = 0;
};

const std::map<std::string, std::size_t>& role_numbers() {
    static const std::map<std::string, std::size_t> numbers{{"root", 0}, {"secadm", 1}, {"auditadm", 2}};
    return numbers;
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
    action->add_option("ROLE", given.role, "root, secadm or auditadm")
        ->required()
        ->check(CLI::IsMember(role_numbers()));
    action->add_option("PATH", given.path, "The file, which need not exist")->required();
    action->callback(
        [&given, act] { act(lists::role_labels.at(role_numbers().at(given.role)), absolute_path(given.path)); });
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
    log->callback([&given] { print_log(given.is_following); });
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
        throw CLI::RequiredError("COMMAND");
    }
    return words;
}

void add_run_command(CLI::App& app, arguments& given) {
    CLI::App* runner = add_runner(app, "run", "Run a command on the stand-in");
    runner->add_option("--state", given.place.state, "The state directory, made where it is missing")->type_name("DIR");
    runner->add_option("--uid", given.place.user, "The user to run it as: 0 or 600")->type_name("UID");
    runner->callback([runner, &given] { given.exit_value = run_command(command_of(*runner), given.place); });
}

void add_trace_command(CLI::App& app, arguments& given) {
    CLI::App* runner = add_runner(app, "trace", "Run a command on the stand-in and print its service calls");
    runner->add_flag("--json", given.trace.is_json, "Print each call as a JSON object");
    runner->add_option("-o,--output", given.trace.file, "Write to FILE instead of standard error")->type_name("FILE");
    runner->callback([runner, &given] { given.exit_value = trace_command(command_of(*runner), given.trace); });
}

int run(int argc, const char* const* argv) {
    CLI::App app(
        "Plays the part of the security framework for the stand-in of its service library.\n"
        "The store lies in $ORVEX_LOCAL_STATE, else in /var/lib/orvex-local (root and user 600), else in\n"
        "$XDG_STATE_HOME/orvex-local, which is ~/.local/state/orvex-local by default.",
        "orvex_local");
    app.require_subcommand(1);
    app.add_subcommand("show", "Print all states and lists")->callback(print_store);
    app.add_subcommand("restart", "Simulate a restart of the machine")->callback(restart);
    app.add_subcommand("reset", "Bring the store back to what it holds when new")->callback(reset);
    arguments given;
    add_scene_command(app);
    add_roles_command(app);
    add_label_command(app, given);
    add_blacklist_command(app, given);
    add_log_command(app, given);
    add_run_command(app, given);
    add_trace_command(app, given);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error);
    }
    return given.exit_value;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "orvex_local: " << error.what() << '\n';
    }
    return 1;
}
