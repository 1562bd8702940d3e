// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <rpm/rpmts.h>
#include <rpm/rpmtypes.h>

#include <memory>
#include <type_traits>

/// Gives a transaction set of rpm back.
struct transaction_deleter {
    void operator()(rpmts transaction) const noexcept { rpmtsFree(transaction); }
};
using owned_transaction = std::unique_ptr<std::remove_pointer_t<rpmts>, transaction_deleter>;
