// SPDX-License-Identifier: Apache-2.0
#include "on_demand/rpm/owner_query.h"

#include <popt.h>
#include <rpm/argv.h>
#include <rpm/rpmcli.h>
#include <rpm/rpmts.h>
#include <rpm/rpmtypes.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <type_traits>

#include "framework/output.h"
#include "framework/owned.h"
#include "on_demand/rpm/owned_transaction.h"

namespace {

struct option_context_deleter {
    void operator()(poptContext context) const noexcept { rpmcliFini(context); }
};
using owned_option_context = std::unique_ptr<std::remove_pointer_t<poptContext>, option_context_deleter>;

poptOption include_table(poptOption* table, const char* description) {
    return {
        .longName = nullptr,
        .shortName = '\0',
        .argInfo = POPT_ARG_INCLUDE_TABLE,
        .arg = table,
        .val = 0,
        .descrip = description,
        .argDescrip = nullptr,
    };
}

/// Points standard error to `path`. The text of a failure goes the way of all the child's output.
void redirect_standard_error(const char* path) {
    if (std::freopen(path, "w", stderr) == nullptr) {
        print_line("重定向stderr错误");
    }
}

/// Runs the query proper; its answer goes to standard output. Returns what the library's query returned.
int query(rpmts transaction, poptContext context, QVA_t arguments) {
    redirect_standard_error("/dev/null");
    const int ret = rpmcliQuery(transaction, arguments, const_cast<ARGV_const_t>(poptGetArgs(context)));
    redirect_standard_error("/dev/tty");
    return ret;
}

/// Lets rpm print the owner of `path`. Returns the text of what went wrong, or nothing; by then all is given back.
std::optional<std::string> ask_rpm(std::string path) {
    const owned_memory<rpmQVKArguments_s> arguments(static_cast<QVA_t>(std::calloc(1, sizeof(rpmQVKArguments_s))));
    arguments->qva_source = RPMQV_PATH;
    arguments->qva_mode = 'q';

    std::array<poptOption, 7> options = {
        include_table(rpmQVSourcePoptTable, "Query/Verify package selection options:"),
        include_table(rpmcliAllPoptTable, "common options for all rpm modes and executables:"),
        // The misspelt word is the table's own.
        include_table(rpmQueryPoptTable, "Query optinos(with -q or --query):"),
        include_table(rpmVerifyPoptTable, "Verify options(with -V or --verify):"),
        include_table(poptAliasOptions, "Options implemented via popt alias/exec:"),
        include_table(poptHelpOptions, "Help options:"),
        poptOption{},
    };
    std::string program = "rpm";
    std::string query_file = "-qf";
    const std::array<char*, 4> argv = {program.data(), query_file.data(), path.data(), nullptr};
    const owned_option_context context(rpmcliInit(3, argv.data(), options.data()));
    if (context == nullptr) {
        return "错误: rpmcliInit 执行失败";
    }
    const owned_transaction transaction(rpmtsCreate());
    if (transaction == nullptr) {
        return "错误: 创建rpm查询事务失败!";
    }
    const int ret = query(transaction.get(), context.get(), arguments.get());
    return ret == 0 ? std::nullopt : std::optional("错误: 查询失败, ret=" + std::to_string(ret) + "!");
}

}  // namespace

int print_owner(const std::string& path) {
    const std::optional<std::string> complaint = ask_rpm(path);
    if (!complaint) {
        return 0;
    }
    print_line(*complaint);
    return 1;
}
