// SPDX-License-Identifier: Apache-2.0
#include "framework/module_base.h"

COrvexBase::~COrvexBase() = default;

int COrvexBase::run(int /*argc*/, char** /*argv*/) {
    return 0;
}

void COrvexBase::usage() {}
