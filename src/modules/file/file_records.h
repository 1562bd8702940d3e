// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "framework/exception_records.h"
#include "service/filectl.h"

/// The exception records of file protection.
using filectl_records = exception_records<filectl_exception_record, orvex_scene_filectl_exception_policy_free>;
