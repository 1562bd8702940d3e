// SPDX-License-Identifier: Apache-2.0
// The least that a program with the libraries of orvex_policy can cost: it is loaded, prints a line and ends.
#include <iostream>

int main() {
    std::cout << "orvex status : disable" << std::endl;
    return 0;
}
