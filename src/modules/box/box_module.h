// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "framework/module_base.h"

/// The `box` command: switches the file box. The module holds no policies of its own.
class COrvexBox : public COrvexBase {
public:
    int run(int argc, char** argv) override;
    void usage() override;
};
