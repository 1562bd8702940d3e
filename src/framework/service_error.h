// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// Returns the text of the service library's last failure, empty where the library has no record of one.
std::string get_service_error();
