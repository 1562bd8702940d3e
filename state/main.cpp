// SPDX-License-Identifier: Apache-2.0
// orvex_state: the policy of a host as one document.
#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <string>

#include "state/commands.h"
#include "state/policy.h"
#include "state/text.h"

namespace {

using namespace state;

int tell(const std::string& problem) {
    std::cerr << "orvex_state: " << make_visible(problem) << '\n';
    return exit_error;
}

CLI::App* add_command(CLI::App& app, const char* name, const char* help, int (*run)(const arguments&), arguments& given,
                      int& exit_value) {
    CLI::App* command = app.add_subcommand(name, help);
    command->callback([&given, &exit_value, run] { exit_value = run(given); });
    return command;
}

void add_document(CLI::App* command, arguments& given) {
    command->add_option("FILE", given.document, "The document; - is standard input")->required();
    command->add_flag("--keep-others", given.keeps_others, "Take nothing off the lists");
}

int run(int argc, char** argv) {
    CLI::App app("The policy of this host as one document.", "orvex_state");
    app.require_subcommand(1);
    app.set_version_flag("--version", "orvex_state " ORVEX_VERSION);
    arguments given;
    int exit_value = exit_done;
    CLI::App* dump = add_command(app, "dump", "Print the policy of this host", dump_policy, given, exit_value);
    dump->add_option("-o,--output", given.output, "Write it to FILE");
    CLI::App* diff = add_command(app, "diff", "Tell what differs between this host and a document", show_differences,
                                 given, exit_value);
    add_document(diff, given);
    diff->add_flag("--json", given.is_json, "Tell it as a JSON list");
    add_document(add_command(app, "plan", "Print the commands that make this host what a document says", show_plan,
                             given, exit_value),
                 given);
    add_document(
        add_command(app, "apply", "Run these commands and look what came of it", apply_document, given, exit_value),
        given);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return error.get_exit_code() == 0 ? app.exit(error) : tell(error.what());
    }
    return exit_value;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const int exit_value = run(argc, argv);
        std::cout.flush();
        return std::cout ? exit_value : tell("standard output cannot be written");
    } catch (const refusal& refused) {
        for (const std::string& problem : refused.problems()) {
            tell(problem);
        }
        return exit_error;
    } catch (const std::exception& error) {
        return tell(error.what());
    }
}
