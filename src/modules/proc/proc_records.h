// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "framework/exception_records.h"
#include "service/taskctl.h"

/// The exception records of process protection.
using taskctl_records = exception_records<taskctl_exception_record, orvex_scene_taskctl_exception_policy_free>;
