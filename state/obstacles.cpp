// SPDX-License-Identifier: Apache-2.0
#include "state/obstacles.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "framework/module_base.h"
#include "framework/owned.h"
#include "service/paths.h"
#include "service/taskctl.h"
#include "state/text.h"

namespace state {
namespace {

using problem = std::optional<std::string>;

bool is_existing(const std::string& path) {
    return path_is_exist(path.c_str()) == 1;
}

bool is_directory(const std::string& path) {
    return path_is_dir(path.c_str()) == 1;
}

/// What no form of `orvex_policy` can be told.
problem check_name(const std::string& name, object_sort sort, bool takes_many) {
    if (takes_many && name.find(':') != std::string::npos) {
        return "a name with ':' cannot be told from two names";
    }
    if (sort != object_sort::file && sort != object_sort::directory) {
        return std::nullopt;
    }
    if (!name.starts_with('/')) {
        return "a relative path";
    }
    // The lists of the service library have this behind each directory.
    return sort == object_sort::file && name.ends_with("/*") ? problem("a file that cannot be told from a directory")
                                                             : std::nullopt;
}

/// Refuses a path under which the framework would keep another one.
problem check_kept_form(const std::string& path, path_form form) {
    const owned_text kept(form == path_form::real ? realpath(path.c_str(), nullptr) : get_absolute_path(path.c_str()));
    if (kept == nullptr) {
        return "where it leads cannot be found";
    }
    if (path == kept.get()) {
        return std::nullopt;
    }
    return "the framework keeps this path as " + escape_name(kept.get());
}

problem check_path(const std::string& path, object_sort sort, path_form form) {
    if (!is_existing(path)) {
        return "does not exist";
    }
    if (is_directory(path) != (sort == object_sort::directory)) {
        return sort == object_sort::directory ? "no directory" : "a directory";
    }
    return check_kept_form(path, form);
}

/// Tells what is in the way of naming an object that has to be there.
problem check_presence(const std::string& name, object_sort sort, path_form form) {
    switch (sort) {
        case object_sort::kernel_module:
            return std::nullopt;
        case object_sort::package:
            return COrvexBase().is_pkg_installed(name) ? std::nullopt : problem("a package that is not installed");
        default:
            return check_path(name, sort, form);
    }
}

problem check_removable(const std::string& name, object_sort sort, path_form form, removal_rule rule) {
    if (rule == removal_rule::nothing) {
        return std::nullopt;
    }
    if (rule == removal_rule::if_it_exists && (sort == object_sort::package || !is_existing(name))) {
        return std::nullopt;
    }
    return check_presence(name, sort, form);
}

problem check_word(const list_spec& list, const std::string& word) {
    const bool can_be_set = list.id == list_id::exec_whitelist ? word == whitelist_intact : word != unknown_word;
    return list.form != entry_form::word || can_be_set ? std::nullopt : problem("no command makes it '" + word + "'");
}

class obstacle_search {
public:
    obstacle_search(const policy& host, const policy& wanted, const differences& all)
        : host_(host), wanted_(wanted), all_(all) {}

    std::vector<std::string> run() {
        if (host_.framework == framework_disabled) {
            check_disabled_framework();
        } else {
            check_framework();
            check_modules();
        }
        for (const list_spec& list : all_lists()) {
            for (const object_change& object : all_.list(list.id)) {
                check_object(list, object);
                check_exceptions(list, object);
            }
        }
        return std::move(found_);
    }

private:
    void note(std::initializer_list<std::string> place, const problem& found) {
        if (found) {
            found_.push_back(place_of(place) + ": " + *found);
        }
    }

    /// Nothing can be changed then, and only a document that knows what the framework is to be may switch it on.
    void check_disabled_framework() {
        if (wanted_.framework) {
            return;
        }
        const std::string text = "the framework is disabled, and the document does not say what it is to be";
        if (!all_.modules.empty()) {
            note({"modules"}, text);
        }
        for (const char* section : sections) {
            if (all_.touch(section)) {
                note({section}, text);
            }
        }
    }

    void check_framework() {
        // The machine restarts then, and orvex_policy, which asks first, has nobody to ask here.
        if (all_.framework && all_.framework->wanted == framework_disabled &&
            host_.module(role_module) == module_on_word) {
            note({"framework"}, "disabling it restarts the machine at once while the roles are separated");
        }
    }

    void check_modules() {
        for (const auto& [name, change] : all_.modules) {
            if (name == role_module) {
                note({"modules", name}, "no command switches the separation of the roles");
            } else if (change.wanted == module_warning_word) {
                note({"modules", name}, "no command makes it 'warning'");
            } else if (name == exec_script_module && change.wanted == module_on_word &&
                       !is_on_at_the_end(exec_module)) {
                note({"modules", name}, "execution control is off, and script control with it");
            }
        }
        for (const char* section : sections) {
            // With a framework that is to be disabled the module is off in the end.
            const bool is_told = wanted_.module(section) || wanted_.framework == framework_disabled;
            if (all_.touch(section) && host_.module(section) == module_off_word && !is_told) {
                note({section}, "the module is off, and the document does not say what it is to be");
            }
        }
    }

    bool is_on_at_the_end(const std::string& module) const {
        return wanted_.module(module).value_or(host_.modules.at(module)) != module_off_word;
    }

    void check_object(const list_spec& list, const object_change& object) {
        const std::string name = escape_name(object.name);
        if (object.is_removed()) {
            note({list.section, list.field}, name_host_object(object.name, check_removal(list, object)));
        } else if (object.host != object.wanted) {
            note({list.section, list.field, name}, check_addition(list, object));
        }
    }

    static problem check_addition(const list_spec& list, const object_change& object) {
        if (problem found = check_name(object.name, list.sort, list.takes_many)) {
            return found;
        }
        // The policy of a package is changed without a look at the package.
        if (object.is_added() || list.sort == object_sort::file) {
            if (problem found = check_presence(object.name, list.sort, list.path)) {
                return found;
            }
        }
        if (problem found = check_word(list, *object.wanted)) {
            return found;
        }
        if (list.id == list_id::net_programs) {
            const std::string owner = COrvexBase().get_pkg_by_file(object.name);
            return owner.empty() ? std::nullopt : problem("the package " + owner + " owns it, and is what counts");
        }
        return list.id == list_id::proc_programs ? check_blacklist(object.name) : std::nullopt;
    }

    problem check_removal(const list_spec& list, const object_change& object) const {
        if (problem found = check_name(object.name, list.sort, list.takes_many)) {
            return found;
        }
        if (problem found = check_removable(object.name, list.sort, list.path, list.removal)) {
            return found;
        }
        if (list.id == list_id::net_programs && !is_existing(object.name) && is_taken_over(host_, all_, object.name)) {
            return "it is gone, and the policy of the package that owned it would go with its own";
        }
        return list.id == list_id::proc_programs ? check_blacklist(object.name) : std::nullopt;
    }

    static problem check_blacklist(const std::string& path) {
        return ppro_path_in_blacklist(path.c_str()) == 1 ? problem("on the framework's blacklist") : std::nullopt;
    }

    static problem name_host_object(const std::string& name, const problem& found) {
        return found ? problem("the host's " + escape_name(name) + ": " + *found) : std::nullopt;
    }

    void check_exceptions(const list_spec& list, const object_change& object) {
        const std::string name = escape_name(object.name);
        bool is_any = false;
        for (std::size_t index = 0; index < exception_specs.size(); ++index) {
            const exception_spec& spec = exception_specs[index];
            const set_change& change = object.exceptions[index];
            is_any = is_any || !change.empty();
            if (spec.sort == object_sort::directory && list.id != list_id::proc_programs && !change.empty()) {
                note({list.section, list.field, name, spec.field}, "file protection knows no such exceptions");
                continue;
            }
            for (const std::string& added : change.added) {
                note({list.section, list.field, name, spec.field, escape_name(added)},
                     check_exception(added, spec, removal_rule::as_for_add));
            }
            for (const std::string& removed : change.removed) {
                note({list.section, list.field, name, spec.field},
                     name_host_object(removed, check_exception(removed, spec, list.removal)));
            }
        }
        // An object that is added has been looked at.
        if (is_any && !object.is_added()) {
            note({list.section, list.field, name}, check_owner(list, object));
        }
    }

    /// The list of protected packages has no rule for paths: that of file protection's other lists holds.
    static problem check_exception(const std::string& name, const exception_spec& spec, removal_rule rule) {
        if (problem found = check_name(name, spec.sort, true)) {
            return found;
        }
        const removal_rule rule_of_paths = rule == removal_rule::nothing ? removal_rule::if_it_exists : rule;
        return check_removable(name, spec.sort, path_form::real, rule_of_paths);
    }

    /// Only a file that is gone is found by its name alone, and only for what is taken from it.
    static problem check_owner(const list_spec& list, const object_change& object) {
        bool is_adding = false;
        for (const set_change& change : object.exceptions) {
            is_adding = is_adding || !change.added.empty();
        }
        const bool has_to_exist = is_adding || list.sort == object_sort::directory;
        return check_removable(object.name, list.sort, list.path,
                               has_to_exist ? removal_rule::as_for_add : list.removal);
    }

    const policy& host_;
    const policy& wanted_;
    const differences& all_;
    std::vector<std::string> found_;
};

}  // namespace

bool is_taken_over(const policy& host, const differences& all, const std::string& path) {
    const std::string owner = COrvexBase().get_pkg_by_file(path);
    if (!host.list(list_id::net_packages)->contains(owner)) {
        return false;
    }
    const std::vector<object_change>& packages = all.list(list_id::net_packages);
    return std::none_of(packages.begin(), packages.end(),
                        [&](const object_change& package) { return package.name == owner && package.is_removed(); });
}

std::vector<std::string> find_obstacles(const policy& host, const policy& wanted, const differences& all) {
    return obstacle_search(host, wanted, all).run();
}

}  // namespace state
