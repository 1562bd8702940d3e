// SPDX-License-Identifier: Apache-2.0
#include "state/plan.h"

#include <cstddef>
#include <iterator>
#include <sstream>
#include <utility>

#include "state/obstacles.h"
#include "state/text.h"

namespace state {
namespace {

using enum list_id;

/// What Linux allows one argument of a program, its NUL left out.
constexpr std::size_t longest_argument = std::size_t{128} * 1024 - 1;

/// The names of objects as the values of as few options as hold them.
std::vector<std::string> join_names(const std::vector<std::string>& names) {
    std::vector<std::string> values;
    for (const std::string& name : names) {
        if (values.empty() || values.back().size() + 1 + name.size() > longest_argument) {
            values.push_back(name);
        } else {
            values.back() += ":" + name;
        }
    }
    return values;
}

command make_command(std::initializer_list<std::string> words, const std::vector<std::string>& more = {}) {
    command all(words);
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

/// The module's word and state as the words of a command: the name of script control is two words.
command switch_command(const std::string& module, const std::string& state) {
    std::istringstream words(module);
    command all{std::istream_iterator<std::string>(words), {}};
    all.push_back(state);
    return all;
}

class planner {
public:
    planner(const policy& host, const policy& wanted, const differences& all)
        : host_(host), wanted_(wanted), all_(all) {}

    plan run() {
        if (all_.empty()) {
            return {};
        }
        if (host_.framework == framework_disabled) {
            return start_framework();
        }
        // What loosens comes first, what tightens last.
        if (all_.framework && all_.framework->wanted == framework_permissive) {
            add({"permissive"});
        }
        for (const char* section : sections) {
            change_section(section);
        }
        if (const auto box = all_.modules.find("box"); box != all_.modules.end()) {
            add(switch_command("box", box->second.wanted));
        }
        if (all_.framework && all_.framework->wanted != framework_permissive) {
            add({all_.framework->wanted == framework_enabled ? "enable" : "disable"});
        }
        return {std::move(commands_), false};
    }

private:
    void add(command words) { commands_.push_back(std::move(words)); }

    /// A disabled framework takes no policies. One that is to stay disabled is let run without enforcing anything.
    plan start_framework() const {
        const bool is_enabled = wanted_.framework == framework_enabled;
        return {{{is_enabled ? "enable" : "permissive"}}, true};
    }

    /// A module takes policies only while it is on, so that one which is to be off may be on for the time between.
    void change_section(const std::string& section) {
        const std::string now = host_.module(section).value();
        const std::string target = wanted_.module(section).value_or(now);
        const bool is_changed = all_.touch(section);
        const bool is_switched_on =
            (target == module_on_word && now != module_on_word) || (is_changed && now == module_off_word);
        if (is_switched_on) {
            add(switch_command(section, module_on_word));
        }
        if (section == exec_module && target != module_off_word) {
            switch_scripts(now);
        }
        if (section == "net") {
            change_net();
        } else {
            change_lists(section);
        }
        if (target == module_off_word && (is_switched_on || now != module_off_word)) {
            add(switch_command(section, module_off_word));
        }
    }

    void switch_scripts(const std::string& exec_now) {
        const std::optional<std::string> target = wanted_.module(exec_script_module);
        const std::string now =
            exec_now == module_off_word ? host_.remembered_script : host_.module(exec_script_module).value();
        if (target && target != now) {
            add(switch_command(exec_script_module, *target));
        }
    }

    /// What is added comes before what goes, so that no list is shorter in between than it is before or afterwards.
    void change_lists(const std::string& section) {
        for (const list_spec& list : all_lists()) {
            if (section == list.section) {
                change_objects("-A", list, added_names(list.id));
                change_exceptions(list);
            }
        }
        for (const list_spec& list : all_lists()) {
            if (section == list.section) {
                change_objects("-D", list, removed_names(list.id));
            }
        }
    }

    /// The names of the objects that pass `test`.
    template <class Test>
    std::vector<std::string> names_of(list_id id, Test test) const {
        std::vector<std::string> names;
        for (const object_change& object : all_.list(id)) {
            if (test(object)) {
                names.push_back(object.name);
            }
        }
        return names;
    }

    /// A file whose state on the whitelist is another one is added anew.
    std::vector<std::string> added_names(list_id id) const {
        return names_of(id, [](const object_change& object) { return object.is_added() || object.is_updated(); });
    }

    std::vector<std::string> removed_names(list_id id) const {
        return names_of(id, [](const object_change& object) { return object.is_removed(); });
    }

    void change_objects(const char* action, const list_spec& list, const std::vector<std::string>& names) {
        for (const std::string& value : list.takes_many ? join_names(names) : names) {
            command words = make_command({list.section, action}, list.options);
            words.push_back(value);
            add(std::move(words));
        }
    }

    void change_exceptions(const list_spec& list) {
        for (const object_change& object : all_.list(list.id)) {
            for (std::size_t index = 0; index < exception_specs.size(); ++index) {
                const set_change& change = object.exceptions[index];
                const char* option = exception_specs[index].option;
                change_exceptions_of(object.name, "-A", list, option, change.added);
                change_exceptions_of(object.name, "-D", list, option, change.removed);
            }
        }
    }

    void change_exceptions_of(const std::string& object, const char* action, const list_spec& list, const char* option,
                              const std::set<std::string>& names) {
        for (const std::string& value : join_names({names.begin(), names.end()})) {
            add(make_command({list.section, action, list.options.front(), object, "-e", option, value}));
        }
    }

    /// A program is taken off before the package that owns it gets a policy and after one loses its own: in between
    /// "-D" takes both away.
    void change_net() {
        change_objects("-D", list_of(net_packages), removed_names(net_packages));
        for (const std::string& program : removed_names(net_programs)) {
            // With a policy of its package in force, asking for that one again takes the program's away.
            add({"net", is_taken_over(host_, all_, program) ? "-A" : "-D", "-f", program});
        }
        change_net_policies(list_of(net_packages));
        change_net_policies(list_of(net_programs));
    }

    /// A new policy denies.
    void change_net_policies(const list_spec& list) {
        for (const object_change& object : all_.list(list.id)) {
            if (object.is_added()) {
                change_objects("-A", list, {object.name});
            }
            if (object.is_updated() || (object.is_added() && object.wanted != net_deny)) {
                add(make_command({list.section, "-U", list.options.front(), object.name, "-v", *object.wanted}));
            }
        }
    }

    static const list_spec& list_of(list_id id) { return all_lists()[static_cast<std::size_t>(id)]; }

    const policy& host_;
    const policy& wanted_;
    const differences& all_;
    std::vector<command> commands_;
};

}  // namespace

plan make_plan(const policy& host, const policy& wanted, const differences& all) {
    return planner(host, wanted, all).run();
}

std::string tell_command(const command& words) {
    std::string line = "orvex_policy";
    for (const std::string& word : words) {
        line += " " + quote_word(word);
    }
    return line;
}

}  // namespace state
