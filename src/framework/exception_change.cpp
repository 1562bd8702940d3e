// SPDX-License-Identifier: Apache-2.0
#include "framework/exception_change.h"

#include "framework/action.h"
#include "framework/failure_log.h"
#include "framework/output.h"
#include "framework/wanted_state.h"
#include "service/object_kind.h"

namespace {

/// Refuses an exception that needs no change, with a line.
bool refuse_needless_exception(const exception_words& words, const std::string& object, const std::string& exception,
                               int action, bool is_present) {
    if (!needs_no_change(action, is_present)) {
        return false;
    }
    if (action == action_add) {
        print_line(words.object_head, object, "]已添加了例外程序[", exception, "], 无需重复添加!");
    } else {
        print_line(words.object_head, object, words.absent_middle, exception, "], 无需删除!");
    }
    return true;
}

/// Returns copies of the exceptions that need a change.
text_batch choose_exceptions(const exception_words& words, const shown_object& object, const exception_request& request,
                             const std::function<bool(const std::string&)>& is_present) {
    text_batch chosen;
    for (const std::string& exception : request.exceptions) {
        if (exception.empty()) {
            continue;
        }
        if (!refuse_needless_exception(words, object.needless, exception, request.action, is_present(exception))) {
            chosen.add(copy_text(exception));
        }
    }
    return chosen;
}

void report_exception_failure(const exception_words& words, const shown_object& object,
                              const exception_request& request, int ret) {
    const bool is_add = request.action == action_add;
    // At a removal the same number is a failure like any other.
    if (is_add && ret == orvex_result_not_protected) {
        print_line("[", object.not_protected, words.not_protected_tail);
        return;
    }
    print_line(is_add ? words.add_failure_head : words.remove_failure_head, object.failure, "]的例外程序[",
               request.argument, "]失败");
    log_failure(words.source, is_add ? words.add_log : words.remove_log, object.log.c_str(), request.argument.c_str(),
                ret);
}

}  // namespace

bool refuse_missing_pkgs(COrvexBase& module, const std::vector<std::string>& pkgs) {
    for (const std::string& pkg : pkgs) {
        if (!module.is_pkg_installed(pkg)) {
            print_line("软件包[", pkg, "]未安装, 不支持设置");
            return true;
        }
    }
    return false;
}

int change_exceptions(const exception_words& words, const shown_object& object, const exception_request& request,
                      const std::function<bool(const std::string& exception)>& is_present,
                      const std::function<int(text_batch& exceptions)>& call) {
    text_batch chosen = choose_exceptions(words, object, request, is_present);
    if (chosen.empty()) {
        return 0;
    }
    const int ret = call(chosen);
    if (ret != 0) {
        report_exception_failure(words, object, request, ret);
    }
    return ret;
}
