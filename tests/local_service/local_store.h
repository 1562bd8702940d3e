// SPDX-License-Identifier: Apache-2.0
// What the tests share: a store of their own, callers to choose from, and owners of what the libraries hand out.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// Gives each test an empty directory, with the store in `state` below it, and removes both afterwards.
class local_store : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// The test's own directory, without links in its path.
    const std::string& directory() const { return directory_; }

    /// Returns the path `name` in the test's directory.
    std::string path(const std::string& name) const { return directory_ + "/" + name; }

    /// Writes the file `name` in the test's directory and returns its path.
    std::string write(const std::string& name, const std::string& content) const;

    /// Makes the link `name` to `target` in the test's directory.
    void link(const std::string& name, const std::string& target) const;

    /// Makes the directory `name` in the test's directory and returns its path.
    std::string make_directory(const std::string& name) const;

private:
    std::string directory_;
};

/// Sets the user that the libraries take the caller for, up to the end of the test.
void become(uid_t user);

/// Sets the user whose files the libraries take for the caller's, up to the end of the test.
void pretend_files_of(uid_t user);

/// Runs `work` in a child process, waits for it and returns its result, or -1 where a signal ended the child.
int run_in_child(const std::function<int()>& work);

/// Starts `work` in a child process and returns its id.
pid_t start_child(const std::function<int()>& work);

/// Waits for the child `child` and returns what it returned, or -1 where a signal ended it.
int wait_for(pid_t child);

/// Calls `fetch` with the address of a count, and copies and gives back the list.
std::vector<std::string> fetch_list(char** (*fetch)(std::uint64_t* count));

/// Copies and gives back the text `text`; null becomes "<null>".
std::string take(char* text);

/// An array of C strings as the batch calls take it.
class batch {
public:
    batch(std::initializer_list<std::string> texts);
    char** data() { return pointers_.data(); }
    std::int64_t count() const { return static_cast<std::int64_t>(pointers_.size()); }

private:
    std::vector<std::string> texts_;
    std::vector<char*> pointers_;
};

/// The text of the last failure.
std::string last_error();

/// The messages in the log, oldest first.
std::vector<std::string> log_messages();

/// Enables the framework, with the restart that it takes.
void enable_framework();
