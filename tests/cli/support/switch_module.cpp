// SPDX-License-Identifier: Apache-2.0
// Switches a module that no command of the program switches, as the framework's other tools do: switch_module MODULE
// STATUS, both as the service library's numbers. Ends with 0 where the library accepts it.
#include <cstdio>
#include <cstdlib>

#include "service/status.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: switch_module MODULE STATUS\n", stderr);
        return EXIT_FAILURE;
    }
    const int module = std::atoi(argv[1]);
    const int status = std::atoi(argv[2]);
    return orvex_scene_set_module_status(module, status) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
