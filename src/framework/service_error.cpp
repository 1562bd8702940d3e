// SPDX-License-Identifier: Apache-2.0
#include "framework/service_error.h"

#include "service/log.h"

std::string get_service_error() {
    const orvex_error_record* record = orvex_get_error();
    return record == nullptr ? std::string() : std::string(&record->text[0]);
}
