// SPDX-License-Identifier: Apache-2.0
// orvex_local: the framework's part, played by hand.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "tool/command_line.h"
#include "tool/commands.h"
#include "tool/usage.h"

using namespace local_service;

namespace {

constexpr int exit_failure = 1;
constexpr int exit_usage = 2;

int tell(std::string_view problem, int exit_value) {
    std::cerr << "orvex_local: " << problem << '\n';
    return exit_value;
}

void parse(CLI::App& app, int argc, const char* const* argv) {
    std::vector<std::string> words = checked_words(app, argc, argv);
    std::reverse(words.begin(), words.end());
    try {
        app.parse(std::move(words));
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) {
            // A help or the version, which are asked for.
            app.exit(error);
            return;
        }
        throw usage_error(error.what());
    }
}

int run(int argc, const char* const* argv) {
    CLI::App app(
        "Plays the part of the security framework for the stand-in of its service library.\n"
        "The store lies in $ORVEX_LOCAL_STATE, else in /var/lib/orvex-local (root and user 600), else in\n"
        "$XDG_STATE_HOME/orvex-local, which is ~/.local/state/orvex-local by default.",
        "orvex_local");
    app.require_subcommand(1);
    app.set_version_flag("--version", "orvex_local " ORVEX_VERSION);
    arguments given;
    add_commands(app, given);
    parse(app, argc, argv);
    return given.exit_value;
}

/// An output that is lost is a failure, however the command went.
int check_output(int exit_value) {
    errno = 0;
    std::cout.flush();
    if (std::cout && std::ferror(stdout) == 0) {
        return exit_value;
    }
    return tell(std::string("cannot write standard output: ") + std::strerror(errno == 0 ? EIO : errno), exit_failure);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return check_output(run(argc, argv));
    } catch (const usage_error& error) {
        return tell(error.what(), exit_usage);
    } catch (const std::exception& error) {
        return tell(error.what(), exit_failure);
    }
}
