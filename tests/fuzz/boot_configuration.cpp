// SPDX-License-Identifier: Apache-2.0
// The readers of the boot configuration: the kernel's command line and the boot loader's defaults are the input. What
// they answer is compared with what regular expressions say of the line that decides.
#include <unistd.h>

#include <regex>
#include <sstream>
#include <string>

#include "framework/module_base.h"
#include "fuzz_target.h"
#include "services/replaced_file.h"
#include "support/scratch_dir.h"

namespace {

constexpr const char* grub_key = "GRUB_CMDLINE_LINUX_SECURITY";
/// A regular expression of the library takes as many frames of the stack as the text has bytes.
constexpr std::size_t longest_line = 1024;

/// The two files, which hold what the input says.
class boot_files {
public:
    void fill(const std::string& content) const {
        scratch_.write("cmdline", content);
        scratch_.write("grub", content);
    }

private:
    scratch_dir scratch_;
    replaced_file cmdline_{"/proc/cmdline", scratch_.path() + "/cmdline"};
    replaced_file grub_{"/etc/default/grub", scratch_.path() + "/grub"};
};

bool enables_box(const std::string& line) {
    static const std::regex lsm("lsm=[^]*vemu");
    static const std::regex security("security=[^]*box");
    return std::regex_search(line, lsm) && std::regex_search(line, security);
}

/// The line of `content` that decides for the boot loader, from its key on.
std::string find_grub_line(const std::string& content) {
    std::istringstream lines(content);
    for (std::string line; std::getline(lines, line);) {
        if (const std::size_t key = line.find(grub_key); key != std::string::npos) {
            return line.substr(key);
        }
    }
    return {};
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const boot_files files;
    if (size > longest_line) {
        return 0;
    }
    const std::string content = text_of_input(data, size);
    files.fill(content);
    COrvexBase base;
    const std::string first_line = content.substr(0, content.find('\n'));
    require(base.is_cmdline_box_enabled() == enables_box(first_line), "the kernel's command line");
    require(base.is_grub_box_enabled() == enables_box(find_grub_line(content)), "the boot loader's defaults");
    return 0;
}
