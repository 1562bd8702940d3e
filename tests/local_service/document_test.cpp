// SPDX-License-Identifier: Apache-2.0
// A store as a document: shown, loaded, and refused with the place of the fault.
#include <nlohmann/json.hpp>

#include "core/states.h"
#include "core/store.h"
#include "service/exectl.h"
#include "service/kmodctl.h"
#include "service/log.h"
#include "service/status.h"
#include "tool_run.h"

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class document : public tool {
protected:
    /// Loads the text `content` and returns the exit value.
    int load(const std::string& content) {
        write("document", content);
        return run("load '" + path("document") + "'");
    }

    std::string shown() {
        EXPECT_EQ(run("show --json"), 0);
        return output();
    }
};

TEST_F(document, of_a_store_has_its_version_and_all_of_it) {
    fill_store();
    const json shown_store = json::parse(shown());
    EXPECT_EQ(shown_store["version"], 1);
    EXPECT_EQ(shown_store["framework"]["now"], "disabled");
    EXPECT_EQ(shown_store["modules"].size(), 8U);
    EXPECT_EQ(shown_store["exec"]["whitelist"][0]["path"], path("tool"));
    EXPECT_EQ(shown_store["exec"]["whitelist"][0]["sha256"].get<std::string>().size(), 64U);
    EXPECT_EQ(shown_store["exec"]["whitelist"][0]["state"], "intact");
    EXPECT_EQ(shown_store["exec"]["whitelist"][1]["state"], "changed");
    EXPECT_EQ(shown_store["net"]["packages"], json::parse(R"(
        [{"name": "bash", "uid": 0, "status": 2, "tag": 2, "icon": "an icon", "desktop": ""}])"));
    EXPECT_EQ(shown_store["net"]["programs"], json::parse(R"(
        [{"path": "/opt/fetch", "uid": 7, "status": 1, "tag": -1, "label": "la\nbel", "text1": "", "text2": "two"}])"));
    EXPECT_EQ(shown_store["file"]["paths"], json::parse(R"(["/etc/hosts", "/etc/new\nline", {"hex": "2fff"}])"));
    EXPECT_EQ(shown_store["file"]["path_exceptions"], json::parse(R"(
        [{"path": "/etc/hosts", "exceptions": [{"kind": "file", "text": "/usr/bin/vi"},
                                               {"kind": "package", "text": "vim"}]}])"));
    EXPECT_EQ(shown_store["proc"]["exceptions"], json::parse(R"(
        [{"path": "/usr/sbin/server", "exceptions": [{"kind": "directory", "text": "/opt/*"}]}])"));
    EXPECT_EQ(shown_store["labels"], json::parse(R"({"root": ["/etc/one"], "secadm": [], "auditadm": ["/etc/two"]})"));
}

TEST_F(document, tells_of_each_module_its_own_states) {
    orvex_scene_set_multi_module_status(2, 1, 1);
    enable_framework();
    orvex_scene_set_module_status(5, 1);
    setModuleStatusReboot_dbus(1, orvex_state_disable, 11, 0, 1, 0);
    const json modules = json::parse(shown())["modules"];
    for (const auto& [name, states] : modules.items()) {
        EXPECT_EQ(states["now"], false) << name;
        EXPECT_EQ(states["after_restart"], name == "file" || name == "proc") << name;
    }
}

TEST_F(document, of_a_new_store_has_every_field_in_its_place) {
    EXPECT_EQ(run("reset"), 0);
    EXPECT_EQ(shown(), R"({
  "version": 1,
  "framework": {
    "now": "disabled",
    "after_restart": "disabled",
    "secret_scene": false,
    "restarts": 0,
    "requested_restarts": 0
  },
  "modules": {
    "exec": {
      "now": false,
      "after_restart": false
    },
    "net": {
      "now": false,
      "after_restart": false
    },
    "file": {
      "now": false,
      "after_restart": false
    },
    "kmod": {
      "now": false,
      "after_restart": false
    },
    "3adm": {
      "now": false,
      "after_restart": false
    },
    "proc": {
      "now": false,
      "after_restart": false
    },
    "exec script": {
      "now": false,
      "after_restart": false
    },
    "box": {
      "now": false,
      "after_restart": false
    }
  },
  "exec": {
    "whitelist": [],
    "excepted_files": [],
    "excepted_packages": []
  },
  "net": {
    "packages": [],
    "programs": []
  },
  "file": {
    "paths": [],
    "packages": [],
    "path_exceptions": [],
    "package_exceptions": []
  },
  "proc": {
    "programs": [],
    "blacklist": [],
    "exceptions": []
  },
  "kmod": {
    "modules": []
  },
  "labels": {
    "root": [],
    "secadm": [],
    "auditadm": []
  }
}
)");
}

TEST_F(document, that_tells_the_present_state_alone_means_it_for_later_as_well) {
    EXPECT_EQ(load(R"({"version": 1, "framework": {"now": "permissive"}})"), 0);
    EXPECT_EQ(json::parse(shown())["framework"]["after_restart"], "permissive");
    EXPECT_EQ(load(R"({"version": 1, "framework": {"now": "permissive", "after_restart": "disabled"}})"), 0);
    EXPECT_EQ(json::parse(shown())["framework"]["after_restart"], "disabled");
}

TEST_F(document, that_tells_a_module_to_be_on_later_turns_it_on_by_the_restart) {
    EXPECT_EQ(load(R"({"version": 1, "framework": {"now": "enabled"},
                       "modules": {"kmod": {"now": false, "after_restart": true}}})"),
              0);
    EXPECT_EQ(orvex_scene_get_module_status(3), 0);
    EXPECT_EQ(run("restart"), 0);
    EXPECT_EQ(orvex_scene_get_module_status(3), 1);
}

TEST_F(document, that_was_shown_brings_an_equal_store_back) {
    fill_store();
    enable_framework();
    orvex_scene_set_module_status(3, 1);
    local_service::set_secret_scene(true);
    const std::string before = shown();
    write("document", before);
    setenv("ORVEX_LOCAL_STATE", path("other").c_str(), 1);
    EXPECT_EQ(run("load - <'" + path("document") + "'"), 0);
    EXPECT_EQ(errors(), "");
    EXPECT_EQ(shown(), before);
    EXPECT_EQ(load(before), 0) << "in place of the same";
    EXPECT_EQ(shown(), before);
}

TEST_F(document, takes_the_place_of_everything_but_the_log) {
    fill_store();
    enable_framework();
    orvex_log(18, "tag", "function", "kept");
    EXPECT_EQ(load(R"({"version": 1, "kmod": {"modules": ["xfs"]}})"), 0);
    EXPECT_THAT(fetch_list(orvex_scene_kmodctl_get_policy), ElementsAre("xfs"));
    EXPECT_EQ(orvex_scene_getstatus(), 0);
    EXPECT_THAT(log_messages(), ElementsAre("kept"));
    const json shown_store = json::parse(shown());
    EXPECT_EQ(shown_store["exec"]["whitelist"], json::array());
    EXPECT_EQ(shown_store["proc"]["exceptions"], json::array());
}

TEST_F(document, may_leave_a_digest_to_the_file_as_it_is) {
    write("program", "content");
    EXPECT_EQ(load(R"({"version": 1, "exec": {"whitelist": [{"path": ")" + path("program") + R"("}]}})"), 0);
    const json shown_store = json::parse(shown());
    EXPECT_EQ(shown_store["exec"]["whitelist"][0]["sha256"],
              "ed7002b439e9ac845f22357d822bac1444730fbdb6016d3ec9432297b9ec9f73");
}

TEST_F(document, is_refused_with_the_place_of_the_fault_and_nothing_changes) {
    fill_store();
    const std::string before = shown();
    const std::vector<std::pair<std::string, std::string>> cases{
        {"",
         "line 1, column 1: syntax error while parsing value - unexpected end of input; expected '[', '{', or a "
         "literal"},
        {"{\n \"version\": 1,\n}",
         "line 3, column 1: syntax error while parsing object key - unexpected '}'; expected "
         "string literal"},
        {"[]", "the document: an object is needed here, found: []"},
        {"{}", "the document: the field 'version' is missing"},
        {R"({"version": 2, "later": 1})", "/version: unknown, as only version 1 can be read"},
        {R"({"version": "1"})", "/version: a whole number is needed here, found: \"1\""},
        {R"({"version": 1, "kmods": {}})", "/kmods: unknown field 'kmods', did you mean 'kmod'?"},
        {R"({"version": 1, "exec": {"black": []}})", "/exec/black: unknown field 'black'"},
        {R"({"version": 1, "exec": []})", "/exec: an object is needed here, found: []"},
        {R"({"version": 1, "kmod": {"modules": {}}})", "/kmod/modules: a list is needed here, found: {}"},
        {R"({"version": 1, "kmod": {"modules": ["a", 3]}})", "/kmod/modules/1: a text is needed here, found: 3"},
        {R"({"version": 1, "kmod": {"modules": [""]}})", "/kmod/modules/0: an empty text"},
        {R"({"version": 1, "kmod": {"modules": ["a\u0000"]}})", "/kmod/modules/0: a text cannot hold a byte 0"},
        {R"({"version": 1, "kmod": {"modules": ["a"], "modules": []}})",
         "the field 'modules' stands twice in one object"},
        {R"({"version": 1, "kmod": {}, "kmod": {}})", "the field 'kmod' stands twice in one object"},
        {R"({"version": 1, "net": {"packages": [{"name": ")" + std::string(4096, 'x') + R"(", "status": 1}]}})",
         "/net/packages/0/name: longer than 4095 bytes"},
        {R"({"version": 1, "file": {"paths": ["/a", "b"]}})", "/file/paths/1: a relative path"},
        {R"({"version": 1, "file": {"paths": ["/a", "/a"]}})", "/file/paths/1: stands on the list already"},
        {R"({"version": 1, "file": {"paths": [{"hex": "2f6"}]}})",
         "/file/paths/0/hex: two hexadecimal digits are needed for each byte"},
        {R"({"version": 1, "file": {"paths": [{"hex": "2fzz"}]}})",
         "/file/paths/0/hex: two hexadecimal digits are needed for each byte"},
        {R"({"version": 1, "framework": {"now": "on"}})", "/framework/now: not one of disabled, enabled, permissive"},
        {R"({"version": 1, "framework": {"secret_scene": 1}})",
         "/framework/secret_scene: true or false is needed here, found: 1"},
        {R"({"version": 1, "modules": {"exec": {"now": true, "after_restart": true}}})",
         "/modules/exec/now: no module is on while the framework is disabled"},
        {R"({"version": 1, "exec": {"whitelist": [{"path": "/gone/away"}]}})",
         "/exec/whitelist/0/path: /gone/away cannot be read as a file"},
        {R"({"version": 1, "exec": {"whitelist": [{"path": "/a", "sha256": "x"}]}})",
         "/exec/whitelist/0/sha256: no SHA-256, which has 64 hexadecimal digits in lower case"},
        {R"({"version": 1, "net": {"programs": [{"path": "/a"}]}})", "/net/programs/0: the field 'status' is missing"},
        {R"({"version": 1, "net": {"programs": [{"path": "a", "status": 1}]}})",
         "/net/programs/0/path: a relative path"},
        {R"({"version": 1, "net": {"packages": [{"name": "a", "status": 1.5}]}})",
         "/net/packages/0/status: a whole number is needed here, found: 1.5"},
        {R"({"version": 1, "net": {"packages": [{"name": "a", "status": 1, "uid": -1}]}})",
         "/net/packages/0/uid: a number from 0 to 4294967295 is needed here"},
        {R"({"version": 1, "net": {"programs": [{"path": "/a", "status": 1, "label": ")" + std::string(256, 'x') +
             R"("}]}})",
         "/net/programs/0/label: longer than 255 bytes"},
        {R"({"version": 1, "proc": {"exceptions": [{"path": "/a", "exceptions": []}]}})",
         "/proc/exceptions/0: an object without exceptions"},
        {R"({"version": 1, "proc": {"exceptions": [{"path": "/a", "exceptions": [{"kind": "dir", "text": "/"}]}]}})",
         "/proc/exceptions/0/exceptions/0/kind: not one of file, directory, package"},
        {R"({"version": 1, "proc": {"exceptions": [{"path": "/a", "exceptions": [{"kind": "directory", "text": "/b"}]}]}})",
         "/proc/exceptions/0/exceptions/0/text: a directory stands with a '/*' behind it"},
    };
    for (const auto& [content, complaint] : cases) {
        EXPECT_EQ(load(content), 1) << content;
        EXPECT_EQ(errors(), "orvex_local: " + path("document") + ": " + complaint + "\n");
    }
    EXPECT_EQ(shown(), before);
}

TEST_F(document, that_is_not_there_is_told) {
    EXPECT_EQ(run("load /gone/document"), 1);
    EXPECT_EQ(errors(), "orvex_local: /gone/document: No such file or directory\n");
}

TEST_F(document, survives_any_damage_of_its_text) {
    fill_store();
    const std::string whole = shown();
    unsigned random = 16;
    for (int round = 0; round < 40; ++round) {
        std::string damaged = whole;
        for (int fault = 0; fault < 3; ++fault) {
            random = random * 1103515245 + 12345;
            damaged[(random >> 8U) % damaged.size()] = static_cast<char>(random >> 4U);
        }
        EXPECT_LE(load(damaged), 1) << damaged;
    }
}

}  // namespace
