// SPDX-License-Identifier: Apache-2.0
// Runs a command, its output dropped, and prints the most memory that it held at a time, in KiB.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: peak_memory COMMAND [ARGUMENT...]\n";
        return 2;
    }
    const pid_t child = fork();
    if (child == 0) {
        dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
        execvp(argv[1], argv + 1);
        _exit(127);
    }
    int status = -1;
    rusage usage{};
    if (child == -1 || wait4(child, &status, 0, &usage) == -1 || status != 0) {
        std::cerr << "peak_memory: " << argv[1] << " failed\n";
        return 1;
    }
    std::cout << usage.ru_maxrss << '\n';
    return 0;
}
