// SPDX-License-Identifier: Apache-2.0
#include <functional>
#include <ostream>

#include "framework/module_base.h"
#include "services/replaced_file.h"
#include "support/module_test.h"
#include "support/scratch_dir.h"

namespace {

struct boot_case {
    std::string name;
    std::string content;
    bool is_enabled;
};

void PrintTo(const boot_case& one, std::ostream* stream) {
    *stream << one.name;
}

std::string name_of(const testing::TestParamInfo<boot_case>& one) {
    return one.param.name;
}

// What holds for a line of either file.
const std::vector<boot_case> common_cases = {
    {"both_parameters", "lsm=vemu,x security=box\n", true},
    {"security_in_front", "security=box lsm=vemu\n", true},
    {"vemu_in_front_of_lsm_only", "vemu lsm=x security=box\n", false},
    {"vemu_behind_another_word", "lsm=x quiet vemu security=box\n", true},
    {"no_lsm", "vemu security=box\n", false},
    {"no_vemu", "lsm=x security=box\n", false},
    {"no_security", "lsm=vemu box\n", false},
    {"no_box", "lsm=vemu security=x\n", false},
    {"box_further_on", "security=x lsm=vemu quiet box\n", true},
    {"box_in_front_of_security_only", "box lsm=vemu security=x\n", false},
    {"parts_of_longer_words", "xlsm=xvemux xsecurity=xboxx\n", true},
    {"no_newline", "lsm=vemu security=box", true},
};

class boot_configuration_test : public module_test, public testing::WithParamInterface<boot_case> {
protected:
    void expect_answer(const std::function<bool(COrvexBase&)>& ask) {
        COrvexBase base;
        EXPECT_EQ(capture([&] { return ask(base) ? 1 : 0; }), (call_result{GetParam().is_enabled ? 1 : 0, ""}));
    }

    scratch_dir scratch;
};

bool ask_cmdline(COrvexBase& base) {
    return base.is_cmdline_box_enabled();
}
bool ask_grub(COrvexBase& base) {
    return base.is_grub_box_enabled();
}

using kernel_command_line_test = boot_configuration_test;

TEST_P(kernel_command_line_test, decides) {
    const replaced_file cmdline("/proc/cmdline", scratch.write("cmdline", GetParam().content));
    expect_answer(ask_cmdline);
}

INSTANTIATE_TEST_SUITE_P(line, kernel_command_line_test, testing::ValuesIn(common_cases), name_of);
INSTANTIATE_TEST_SUITE_P(file, kernel_command_line_test,
                         testing::Values(boot_case{"empty", "", false},
                                         boot_case{"first_line_empty", "\nlsm=vemu security=box\n", false},
                                         boot_case{"only_the_first_line_is_read", "lsm=vemu\nsecurity=box\n", false}),
                         name_of);

using boot_loader_defaults_test = boot_configuration_test;

TEST_P(boot_loader_defaults_test, decide) {
    const replaced_file defaults("/etc/default/grub", scratch.write("grub", GetParam().content));
    expect_answer(ask_grub);
}

std::vector<boot_case> put_key_in_front(std::vector<boot_case> cases) {
    for (boot_case& one : cases) {
        one.content = "GRUB_TIMEOUT=5\nGRUB_CMDLINE_LINUX_SECURITY=\"" + one.content;
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(line, boot_loader_defaults_test, testing::ValuesIn(put_key_in_front(common_cases)), name_of);
INSTANTIATE_TEST_SUITE_P(
    file, boot_loader_defaults_test,
    testing::Values(
        boot_case{"empty", "", false},  //
        boot_case{"no_key", "GRUB_CMDLINE_LINUX=\"lsm=vemu security=box\"\n", false},
        boot_case{"comment_counts", "# GRUB_CMDLINE_LINUX_SECURITY=\"lsm=vemu security=box\"\n", true},
        boot_case{"parameters_in_front_of_the_key", "lsm=vemu security=box GRUB_CMDLINE_LINUX_SECURITY=\n", false},
        boot_case{"security_in_front_of_the_key", "security=box GRUB_CMDLINE_LINUX_SECURITY=lsm=vemu\n", false},
        boot_case{"longer_key", "XGRUB_CMDLINE_LINUX_SECURITY_MORE=\"lsm=vemu security=box\"\n", true},
        boot_case{"first_key_line_decides_against",
                  "GRUB_CMDLINE_LINUX_SECURITY=\nGRUB_CMDLINE_LINUX_SECURITY=\"lsm=vemu security=box\"\n", false},
        boot_case{"first_key_line_decides_for",
                  "GRUB_CMDLINE_LINUX_SECURITY=\"lsm=vemu security=box\"\nGRUB_CMDLINE_LINUX_SECURITY=\n", true},
        boot_case{"parameters_on_the_next_line", "GRUB_CMDLINE_LINUX_SECURITY=\nlsm=vemu security=box\n", false}),
    name_of);

struct missing_file {
    std::string name;
    std::string path;
    bool (*ask)(COrvexBase& base);
    std::string line;
};

void PrintTo(const missing_file& one, std::ostream* stream) {
    *stream << one.name;
}

class boot_file_test : public module_test, public testing::WithParamInterface<missing_file> {};

TEST_P(boot_file_test, missing_is_told) {
    COrvexBase base;
    const scratch_dir empty;
    const replaced_file file(GetParam().path, empty.path() + "/missing");
    EXPECT_EQ(capture([&] { return GetParam().ask(base) ? 1 : 0; }), (call_result{0, GetParam().line + "\n"}));
}

INSTANTIATE_TEST_SUITE_P(of, boot_file_test,
                         testing::Values(missing_file{"kernel_command_line", "/proc/cmdline", ask_cmdline,
                                                      "打开文件[/proc/cmdline]失败"},
                                         missing_file{"boot_loader_defaults", "/etc/default/grub", ask_grub,
                                                      "打开文件[/etc/default/grub]失败"}),
                         [](const auto& one) { return one.param.name; });

}  // namespace
