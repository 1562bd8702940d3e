// SPDX-License-Identifier: Apache-2.0
// The whitelist as the service library hands it out: one file's record, and all of them.
#pragma once

#include <string>

#include "service/exectl.h"

/// The look-up of one file's whitelist record. What the record holds is given back at its end.
class record_lookup {
public:
    explicit record_lookup(const std::string& path)
        : result_(orvex_scene_exectl_wlist_load_by_path(path.c_str(), &record_)) {}

    record_lookup(const record_lookup&) = delete;
    record_lookup& operator=(const record_lookup&) = delete;

    ~record_lookup() {
        if (!is_abandoned_) {
            orvex_scene_exectl_obj_free(&record_);
        }
    }

    /// The library's own result; anything but 0 is a failure.
    int result() const { return result_; }

    /// Tells whether the file has a record.
    bool is_found() const { return record_.path != nullptr; }

    /// The record's state: intact, tampered with, or unknown.
    int status() const { return record_.status; }

    /// Leaves the record as it is: nothing is given back.
    void abandon() { is_abandoned_ = true; }

private:
    // The record stands first: it has to be zero when it is looked up.
    orvex_exectl_obj record_ = {};
    int result_;
    bool is_abandoned_ = false;
};

/// All whitelist records. A chain that was loaded and is not empty is given back at its end.
class whole_whitelist {
public:
    whole_whitelist() : result_(orvex_scene_exectl_wlist_load_all(&head_)) {}

    whole_whitelist(const whole_whitelist&) = delete;
    whole_whitelist& operator=(const whole_whitelist&) = delete;

    ~whole_whitelist() {
        if (result_ == 0 && head_ != nullptr) {
            orvex_scene_exectl_objs_free(&head_);
        }
    }

    /// The library's own result; anything but 0 is a failure.
    int result() const { return result_; }

    /// The first link of the chain, or null.
    const orvex_exectl_list_obj* first() const { return head_; }

private:
    // The head stands first: it has to be null when the chain is loaded.
    orvex_exectl_list_obj* head_ = nullptr;
    int result_;
};
