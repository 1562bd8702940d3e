// SPDX-License-Identifier: Apache-2.0
#include <map>
#include <string>
#include <vector>

#include "framework/module_base.h"

void COrvexBase::init_module_table() {
    module_names = {
        {module_exec, "exec"},
        {module_net, "net"},
        {module_file, "file"},
        {module_kmod, "kmod"},
        {module_3adm, "3adm"},
        {module_proc, "proc"},
        {module_exec_script, "exec script"},
        {module_box, "box"},
    };
    // Deliberately not the order of the numbers: the rows of the status report and the switching of modules come in
    // this one, and the report needs exec before exec script.
    module_types = {module_exec, module_exec_script, module_net,  module_kmod,
                    module_file, module_proc,        module_3adm, module_box};
}

std::map<orvex_module_type, std::string>& COrvexBase::get_module_names() {
    return module_names;
}

std::vector<orvex_module_type>& COrvexBase::get_module_types() {
    return module_types;
}
