// SPDX-License-Identifier: Apache-2.0
#include "support/given_variable.h"

#include <cstdlib>
#include <utility>

namespace {

void set(const std::string& name, const char* value) {
    if (value == nullptr) {
        unsetenv(name.c_str());
    } else {
        setenv(name.c_str(), value, 1);
    }
}

}  // namespace

given_variable::given_variable(std::string name, const char* value) : name_(std::move(name)) {
    if (const char* const old_value = std::getenv(name_.c_str())) {
        old_value_ = old_value;
    }
    set(name_, value);
}

given_variable::~given_variable() {
    set(name_, old_value_ ? old_value_->c_str() : nullptr);
}
