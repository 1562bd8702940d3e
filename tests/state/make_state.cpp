// SPDX-License-Identifier: Apache-2.0
// Prints a random state of a host as orvex_local loads it: one that commands of orvex_policy can bring about.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

using nlohmann::json;
using names = std::vector<std::string>;

/// What objects there are to choose from.
struct world {
    names scripts;
    names files;
    names directories;
    names packages;
    names kernel_modules;
};

names list_directory(const std::filesystem::path& directory) {
    names paths;
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
        paths.push_back(entry.path());
    }
    // The order of a directory is another one on each machine.
    std::sort(paths.begin(), paths.end());
    return paths;
}

/// A name as orvex_local writes it, all of them in the form for what is no UTF-8.
json spell(const std::string& name) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string hex;
    for (const char letter : name) {
        const auto byte = static_cast<unsigned char>(letter);
        hex.append({digits[byte / 16], digits[byte % 16]});
    }
    return {{"hex", hex}};
}

json spell_pattern(const std::string& directory) {
    return spell(directory + "/*");
}

class state_maker {
public:
    state_maker(unsigned seed, const world& objects) : random_(seed), objects_(objects) {}

    json make() {
        const bool is_disabled = chance(15);
        const std::string framework = is_disabled ? "disabled" : chance(20) ? "permissive" : "enabled";
        json state{{"version", 1}, {"framework", {{"now", framework}, {"after_restart", framework}}}};
        for (const char* module : {"exec", "exec script", "net", "file", "kmod", "proc", "box"}) {
            const bool is_on = !is_disabled && chance(50);
            state["modules"][module] = {{"now", is_on}, {"after_restart", is_on}};
        }
        for (const std::string& path : some(objects_.scripts)) {
            state["exec"]["whitelist"].push_back({{"path", spell(path)}});
        }
        state["exec"]["excepted_files"] = spell_some(objects_.files, spell);
        extend(state["exec"]["excepted_files"], spell_some(objects_.directories, spell_pattern));
        state["exec"]["excepted_packages"] = some(objects_.packages);
        state["net"] = {{"packages", net_policies("name", objects_.packages)},
                        {"programs", net_policies("path", objects_.files)}};
        make_file_protection(state["file"]);
        make_process_protection(state["proc"]);
        state["kmod"]["modules"] = spell_some(objects_.kernel_modules, spell);
        return state;
    }

private:
    bool chance(unsigned percent) { return random_() % 100 < percent; }

    names some(const names& all) {
        const auto percent = static_cast<unsigned>(random_() % 30);
        names chosen;
        std::copy_if(all.begin(), all.end(), std::back_inserter(chosen), [&](const auto&) { return chance(percent); });
        std::shuffle(chosen.begin(), chosen.end(), random_);
        return chosen;
    }

    json spell_some(const names& all, json (*form)(const std::string&)) {
        json spelled = json::array();
        for (const std::string& name : some(all)) {
            spelled.push_back(form(name));
        }
        return spelled;
    }

    static void extend(json& list, const json& more) { list.insert(list.end(), more.begin(), more.end()); }

    json net_policies(const char* field, const names& all) {
        json policies = json::array();
        for (const std::string& name : some(all)) {
            policies.push_back({{field, spell(name)}, {"status", chance(50) ? 1 : 2}, {"tag", 2}});
        }
        return policies;
    }

    json exceptions(bool has_directories) {
        json all = json::array();
        const auto add = [&](const char* kind, const json& texts) {
            for (const json& text : texts) {
                all.push_back({{"kind", kind}, {"text", text}});
            }
        };
        add("file", spell_some(objects_.files, spell));
        add("package", some(objects_.packages));
        if (has_directories) {
            add("directory", spell_some(objects_.directories, spell_pattern));
        }
        return all;
    }

    /// Gives some of `objects` exceptions, in a list of `section`; only process protection knows directories as such.
    void add_exceptions(json& section, const std::string& list, const char* field, const json& objects) {
        section[list] = json::array();
        for (const json& object : objects) {
            const json all = chance(25) ? exceptions(list == "exceptions") : json::array();
            if (!all.empty()) {
                section[list].push_back({{field, object}, {"exceptions", all}});
            }
        }
    }

    void make_file_protection(json& file) {
        file["paths"] = spell_some(objects_.files, spell);
        extend(file["paths"], spell_some(objects_.directories, spell_pattern));
        file["packages"] = some(objects_.packages);
        add_exceptions(file, "path_exceptions", "path", file["paths"]);
        add_exceptions(file, "package_exceptions", "name", file["packages"]);
    }

    void make_process_protection(json& proc) {
        proc["programs"] = spell_some(objects_.files, spell);
        add_exceptions(proc, "exceptions", "path", proc["programs"]);
    }

    std::mt19937 random_;
    const world& objects_;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::cerr << "usage: make_state SEED DIR [PACKAGE...]\n";
        return 2;
    }
    const std::filesystem::path place = argv[2];
    const world objects{list_directory(place / "scripts"),
                        list_directory(place / "files"),
                        list_directory(place / "directories"),
                        names(argv + 3, argv + argc),
                        {"ext4", "a:b", "-x", "two words", "\xff\\", "new\nline"}};
    std::cout << state_maker(static_cast<unsigned>(std::atoi(argv[1])), objects).make() << '\n';
    return 0;
}
