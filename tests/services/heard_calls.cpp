// SPDX-License-Identifier: Apache-2.0
#include "services/heard_calls.h"

#include <popt.h>
#include <rpm/rpmcli.h>
#include <rpm/rpmdb.h>
#include <rpm/rpmfi.h>
#include <rpm/rpmlib.h>
#include <rpm/rpmts.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>

namespace {

/// Text in memory that a process shares with its children. What does not fit is lost.
struct shared_text {
    std::size_t size;
    char bytes[16384];

    void append_line(const std::string& line) {
        if (size + line.size() + 1 < sizeof(bytes)) {
            std::memcpy(bytes + size, line.data(), line.size());
            size += line.size();
            bytes[size++] = '\n';
        }
    }
};

struct shared_record {
    shared_text here;
    shared_text in_child;
    std::size_t pipe_ends_in_child;
    std::atomic<bool> has_parent_read;
};

/// What the wrappers below need; null and empty while nobody listens.
struct listener {
    shared_record* record = nullptr;
    pid_t process = 0;
    planned_faults faults;
    /// The read and the write end of the last pipe; -1 once this process has closed it.
    std::array<int, 2> pipe_ends = {-1, -1};
};

const pid_t test_process = getpid();

listener& current() {
    static listener the_one;
    return the_one;
}

const planned_faults& faults() {
    return current().faults;
}

std::vector<std::string> split_lines(const shared_text& text) {
    std::vector<std::string> lines;
    std::istringstream stream(std::string(text.bytes, text.size));
    std::string line;
    while (std::getline(stream, line)) {
        lines.push_back(line);
    }
    return lines;
}

std::string tell(const char* text) {
    return text == nullptr ? "null" : text;
}

/// The strings of an array that ends with a null pointer.
std::string tell_all(const char* const* texts) {
    std::string told;
    for (; texts != nullptr && *texts != nullptr; ++texts) {
        told += std::string(" ") + *texts;
    }
    return told;
}

std::string tell_table(const void* table) {
    const std::vector<std::pair<const void*, const char*>> known = {
        {rpmQVSourcePoptTable, "source"}, {rpmcliAllPoptTable, "all"}, {rpmQueryPoptTable, "query"},
        {rpmVerifyPoptTable, "verify"},   {poptAliasOptions, "alias"}, {poptHelpOptions, "help"},
    };
    const auto entry = std::find_if(known.begin(), known.end(), [&](const auto& pair) { return pair.first == table; });
    return entry == known.end() ? "unknown" : entry->second;
}

/// One line for each entry of an option table, up to its empty end entry.
void hear_options(const poptOption* options) {
    for (; options->longName != nullptr || options->shortName != '\0' || options->arg != nullptr; ++options) {
        const bool is_named = options->longName != nullptr || options->shortName != '\0';
        hear("option " + std::string(is_named ? "with a name" : "without name") + ", kind " +
             std::to_string(options->argInfo) + ", table " + tell_table(options->arg) + ", value " +
             std::to_string(options->val) + ", " + tell(options->descrip));
    }
}

/// Waits for the end of the child, which somebody else still has to collect.
void await_child() {
    siginfo_t info{};
    waitid(P_ALL, 0, &info, WEXITED | WNOWAIT);
}

/// How many descriptors lead where standard output leads; none if that is no pipe.
std::size_t count_pipe_ends() {
    const auto read_link = [](const std::filesystem::path& path) {
        std::error_code closed;
        return std::filesystem::read_symlink(path, closed).string();
    };
    const std::string output = read_link("/proc/self/fd/1");
    const auto entries = std::filesystem::directory_iterator("/proc/self/fd");
    const auto count = std::count_if(begin(entries), end(entries),
                                     [&](const auto& entry) { return read_link(entry.path()) == output; });
    return output.rfind("pipe:", 0) == 0 ? static_cast<std::size_t>(count) : 0;
}

/// Prints `text`, NULs included, and leaves it to the program to flush it.
void print(const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) {
        std::abort();
    }
}

/// Prints what the plan says in place of the query's answer.
void print_planned_answer() {
    print(*faults().printed_by_query);
    if (faults().printed_after_the_read.empty()) {
        return;
    }
    static_cast<void>(std::fflush(stdout));
    while (!current().record->has_parent_read) {
        usleep(1000);
    }
    print(faults().printed_after_the_read);
}

/// Whether something stands in the pipe that standard output leads to.
bool is_output_in_pipe() {
    int size = 0;
    return ioctl(STDOUT_FILENO, FIONREAD, &size) == 0 && size > 0;
}

/// Tells what is set in the query's record besides the source and the mode.
std::string tell_query(const rpmQVKArguments_s& arguments) {
    std::array<unsigned char, sizeof(arguments)> rest{};
    std::memcpy(rest.data(), &arguments, rest.size());
    std::memset(rest.data() + offsetof(rpmQVKArguments_s, qva_source), 0, sizeof(arguments.qva_source));
    std::memset(rest.data() + offsetof(rpmQVKArguments_s, qva_mode), 0, sizeof(arguments.qva_mode));
    const bool is_rest_zero = std::all_of(rest.begin(), rest.end(), [](unsigned char byte) { return byte == 0; });
    return "source " + std::to_string(arguments.qva_source) + ", mode " + arguments.qva_mode +
           (is_rest_zero ? ", nothing else" : ", something else");
}

}  // namespace

heard_calls::heard_calls(const planned_faults& faults) {
    void* const memory =
        mmap(nullptr, sizeof(shared_record), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        std::abort();
    }
    current() = {static_cast<shared_record*>(memory), getpid(), faults, {-1, -1}};
}

heard_calls::~heard_calls() {
    munmap(current().record, sizeof(shared_record));
    current() = {};
}

std::vector<std::string> heard_calls::get_calls_here() const {
    return split_lines(current().record->here);
}

std::vector<std::string> heard_calls::get_calls_in_child() const {
    return split_lines(current().record->in_child);
}

std::size_t heard_calls::get_pipe_ends_in_child() const {
    return current().record->pipe_ends_in_child;
}

void hear(const std::string& call) {
    const listener& now = current();
    if (now.record != nullptr) {
        shared_text& text = getpid() == now.process ? now.record->here : now.record->in_child;
        text.append_line(call);
    }
}

std::size_t count_descriptors() {
    const auto entries = std::filesystem::directory_iterator("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

// The linker's names.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
extern "C" {

int __real_pipe(int* ends);
int __real_close(int descriptor);
void __real_perror(const char* text);
pid_t __real_waitpid(pid_t process, int* status, int options);
pid_t __real_fork(void);
ssize_t __real_read(int descriptor, void* buffer, size_t size);
FILE* __real_freopen(const char* path, const char* mode, FILE* stream);
[[noreturn]] void __real__exit(int status);
int __real_rpmReadConfigFiles(const char* file, const char* target);
rpmts __real_rpmtsCreate(void);
rpmts __real_rpmtsFree(rpmts transaction);
rpmdbMatchIterator __real_rpmtsInitIterator(rpmts transaction, rpmDbiTagVal tag, const void* key, size_t length);
Header __real_rpmdbNextIterator(rpmdbMatchIterator iterator);
rpmdbMatchIterator __real_rpmdbFreeIterator(rpmdbMatchIterator iterator);
rpmfi __real_rpmfiNew(rpmts transaction, Header header, rpmTagVal tag, rpmfiFlags flags);
rpmfi __real_rpmfiFree(rpmfi info);
poptContext __real_rpmcliInit(int argc, char* const* argv, poptOption* options);
int __real_rpmcliQuery(rpmts transaction, QVA_t arguments, ARGV_const_t words);
poptContext __real_rpmcliFini(poptContext context);
// Only in a build that records what the tests reach.
__attribute__((weak)) void __gcov_dump(void);

int __wrap_pipe(int* ends);
int __wrap_close(int descriptor);
void __wrap_perror(const char* text);
pid_t __wrap_waitpid(pid_t process, int* status, int options);
pid_t __wrap_fork(void);
ssize_t __wrap_read(int descriptor, void* buffer, size_t size);
FILE* __wrap_freopen(const char* path, const char* mode, FILE* stream);
[[noreturn]] void __wrap__exit(int status);
int __wrap_rpmReadConfigFiles(const char* file, const char* target);
rpmts __wrap_rpmtsCreate(void);
rpmts __wrap_rpmtsFree(rpmts transaction);
rpmdbMatchIterator __wrap_rpmtsInitIterator(rpmts transaction, rpmDbiTagVal tag, const void* key, size_t length);
Header __wrap_rpmdbNextIterator(rpmdbMatchIterator iterator);
rpmdbMatchIterator __wrap_rpmdbFreeIterator(rpmdbMatchIterator iterator);
rpmfi __wrap_rpmfiNew(rpmts transaction, Header header, rpmTagVal tag, rpmfiFlags flags);
rpmfi __wrap_rpmfiFree(rpmfi info);
poptContext __wrap_rpmcliInit(int argc, char* const* argv, poptOption* options);
int __wrap_rpmcliQuery(rpmts transaction, QVA_t arguments, ARGV_const_t words);
poptContext __wrap_rpmcliFini(poptContext context);

int __wrap_pipe(int* ends) {
    hear("pipe");
    if (faults().pipe) {
        errno = EMFILE;
        return -1;
    }
    const int result = __real_pipe(ends);
    current().pipe_ends = {ends[0], ends[1]};
    return result;
}

int __wrap_close(int descriptor) {
    for (int& end : current().pipe_ends) {
        if (descriptor == end) {
            hear(&end == current().pipe_ends.data() ? "close read end" : "close write end");
            end = -1;
        }
    }
    return __real_close(descriptor);
}

void __wrap_perror(const char* text) {
    hear("perror " + std::string(text));
    __real_perror(text);
}

pid_t __wrap_waitpid(pid_t process, int* status, int options) {
    hear("waitpid");
    return __real_waitpid(process, status, options);
}

pid_t __wrap_fork(void) {
    hear("fork");
    if (faults().fork) {
        errno = EAGAIN;
        return -1;
    }
    return __real_fork();
}

ssize_t __wrap_read(int descriptor, void* buffer, size_t size) {
    hear("read " + std::to_string(size));
    if (faults().read) {
        errno = EIO;
        return -1;
    }
    if (current().record == nullptr) {
        return __real_read(descriptor, buffer, size);
    }
    if (faults().printed_after_the_read.empty()) {
        await_child();
    }
    const ssize_t count = __real_read(descriptor, buffer, size);
    current().record->has_parent_read = true;
    return count;
}

FILE* __wrap_freopen(const char* path, const char* mode, FILE* stream) {
    hear("freopen " + std::string(path) + " " + mode + (stream == stderr ? " stderr" : " another stream"));
    const std::vector<std::string>& failing = faults().reopened_files;
    if (std::find(failing.begin(), failing.end(), path) != failing.end()) {
        return nullptr;
    }
    return __real_freopen(current().record == nullptr ? path : "/dev/null", mode, stream);
}

void __wrap__exit(int status) {
    hear("_exit " + std::to_string(status));
    if (getpid() == test_process) {
        // The tests would end here, and with a success that they did not have.
        std::abort();
    }
    if (__gcov_dump != nullptr) {
        __gcov_dump();
    }
    __real__exit(status);
}

int __wrap_rpmReadConfigFiles(const char* file, const char* target) {
    hear("rpmReadConfigFiles " + tell(file) + " " + tell(target));
    return __real_rpmReadConfigFiles(file, target);
}

rpmts __wrap_rpmtsCreate(void) {
    hear("rpmtsCreate");
    return faults().transaction ? nullptr : __real_rpmtsCreate();
}

rpmts __wrap_rpmtsFree(rpmts transaction) {
    hear("rpmtsFree");
    return __real_rpmtsFree(transaction);
}

rpmdbMatchIterator __wrap_rpmtsInitIterator(rpmts transaction, rpmDbiTagVal tag, const void* key, size_t length) {
    hear("rpmtsInitIterator " + std::to_string(tag) + " " + static_cast<const char*>(key) + " " +
         std::to_string(length));
    return faults().iterator ? nullptr : __real_rpmtsInitIterator(transaction, tag, key, length);
}

Header __wrap_rpmdbNextIterator(rpmdbMatchIterator iterator) {
    hear("rpmdbNextIterator");
    return __real_rpmdbNextIterator(iterator);
}

rpmdbMatchIterator __wrap_rpmdbFreeIterator(rpmdbMatchIterator iterator) {
    hear("rpmdbFreeIterator");
    return __real_rpmdbFreeIterator(iterator);
}

rpmfi __wrap_rpmfiNew(rpmts transaction, Header header, rpmTagVal tag, rpmfiFlags flags) {
    std::ostringstream call;
    call << "rpmfiNew " << tag << " 0x" << std::hex << flags;
    hear(call.str());
    return faults().file_info ? nullptr : __real_rpmfiNew(transaction, header, tag, flags);
}

rpmfi __wrap_rpmfiFree(rpmfi info) {
    hear("rpmfiFree");
    return __real_rpmfiFree(info);
}

poptContext __wrap_rpmcliInit(int argc, char* const* argv, poptOption* options) {
    if (current().record != nullptr) {
        hear("rpmcliInit " + std::to_string(argc) + tell_all(argv));
        hear_options(options);
        current().record->pipe_ends_in_child = count_pipe_ends();
    }
    return faults().option_context ? nullptr : __real_rpmcliInit(argc, argv, options);
}

int __wrap_rpmcliQuery(rpmts transaction, QVA_t arguments, ARGV_const_t words) {
    hear("rpmcliQuery " + tell_query(*arguments) + "," + tell_all(words));
    if (faults().printed_by_query) {
        print_planned_answer();
        return faults().query_result;
    }
    return __real_rpmcliQuery(transaction, arguments, words);
}

poptContext __wrap_rpmcliFini(poptContext context) {
    hear(is_output_in_pipe() ? "rpmcliFini behind output" : "rpmcliFini");
    return __real_rpmcliFini(context);
}
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
