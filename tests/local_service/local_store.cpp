// SPDX-License-Identifier: Apache-2.0
#include "local_store.h"

#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>

#include "core/log.h"
#include "core/states.h"
#include "core/store.h"
#include "service/log.h"
#include "service/status.h"

namespace {

uid_t& present_user() {
    static uid_t user = 0;
    return user;
}

std::optional<uid_t>& pretended_user() {
    static std::optional<uid_t> user;
    return user;
}

}  // namespace

// These take the place of the C library's own, also for the libraries under test.
extern "C" uid_t getuid() noexcept {
    return present_user();
}

extern "C" uid_t geteuid() noexcept {
    return pretended_user().value_or(static_cast<uid_t>(syscall(SYS_geteuid)));
}

void local_store::SetUp() {
    std::string name = testing::TempDir() + "local_service_XXXXXX";
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    directory_ = std::filesystem::canonical(name).string();
    ASSERT_EQ(setenv("ORVEX_LOCAL_STATE", path("state").c_str(), 1), 0);
    become(0);
}

void local_store::TearDown() {
    pretended_user().reset();
    std::filesystem::remove_all(directory_);
}

std::string local_store::write(const std::string& name, const std::string& content) const {
    std::ofstream(path(name), std::ios::binary) << content;
    return path(name);
}

void local_store::link(const std::string& name, const std::string& target) const {
    std::filesystem::create_symlink(target, path(name));
}

std::string local_store::make_directory(const std::string& name) const {
    std::filesystem::create_directories(path(name));
    return path(name);
}

void become(uid_t user) {
    present_user() = user;
}

void pretend_files_of(uid_t user) {
    pretended_user() = user;
}

pid_t start_child(const std::function<int()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(work());
    }
    return child;
}

int wait_for(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int run_in_child(const std::function<int()>& work) {
    return wait_for(start_child(work));
}

std::vector<std::string> fetch_list(char** (*fetch)(std::uint64_t* count)) {
    std::uint64_t count = 0;
    char** list = fetch(&count);
    EXPECT_NE(list, nullptr);
    std::vector<std::string> texts;
    for (std::uint64_t index = 0; index < count; ++index) {
        texts.push_back(take(list[index]));
    }
    std::free(list);
    return texts;
}

std::string take(char* text) {
    if (text == nullptr) {
        return "<null>";
    }
    std::string copy = text;
    std::free(text);
    return copy;
}

batch::batch(std::initializer_list<std::string> texts) : texts_(texts) {
    for (std::string& text : texts_) {
        pointers_.push_back(text.data());
    }
}

std::string last_error() {
    return orvex_get_error()->text;
}

std::vector<std::string> log_messages() {
    std::vector<std::string> messages;
    for (const local_service::log_record& record : local_service::read_log_after(0)) {
        messages.push_back(record.message);
    }
    return messages;
}

void enable_framework() {
    ASSERT_EQ(setModuleStatusReboot_dbus(1, orvex_state_enable, 11, 0, 1, 0), 0);
    local_service::transaction whole;
    local_service::simulate_restart();
    whole.commit();
}
