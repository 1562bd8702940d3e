// SPDX-License-Identifier: Apache-2.0
// File read-only protection, and what process kill protection has in common with it.
#include <filesystem>
#include <utility>

#include "local_store.h"
#include "service/filectl.h"
#include "service/taskctl.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

using records = std::vector<std::pair<std::string, std::vector<std::string>>>;

template <class Record>
records take_records(Record* array, std::uint64_t count, void (*give_back)(Record*, std::uint64_t)) {
    records copied;
    for (std::uint64_t index = 0; index < count; ++index) {
        const Record& record = array[index];
        copied.emplace_back(record.resource,
                            std::vector<std::string>(record.exceptions, record.exceptions + record.exception_count));
    }
    give_back(array, count);
    return copied;
}

class file_protection : public local_store {
protected:
    static std::vector<std::string> paths() { return fetch_list(orvex_scene_filectl_get_policy); }
    static std::vector<std::string> packages() { return fetch_list(orvex_scene_filectl_get_pkg_policy); }
    static records exceptions() {
        std::uint64_t count = 0;
        filectl_exception_record* array = orvex_scene_filectl_exception_get_policy(&count);
        return take_records(array, count, orvex_scene_filectl_exception_policy_free);
    }
    static int protect(std::initializer_list<std::string> objects) {
        batch texts(objects);
        return orvex_scene_filectl_multi_add_by_path(texts.data(), texts.count());
    }
    static int release(std::initializer_list<std::string> objects) {
        batch texts(objects);
        return orvex_scene_filectl_multi_remove_by_path(texts.data(), texts.count());
    }
    static int protect_package(const std::string& name) {
        batch texts{name};
        return orvex_scene_filectl_multi_add_by_pkg(texts.data(), texts.count());
    }
    static int except(std::int32_t kind, const std::string& object, std::int32_t except_kind,
                      std::initializer_list<std::string> programs) {
        batch texts(programs);
        return orvex_scene_filectl_exception_multi_add(kind, object.c_str(), except_kind, texts.data(), texts.count());
    }
    static int stop_except(std::int32_t kind, const std::string& object, std::int32_t except_kind,
                           std::initializer_list<std::string> programs) {
        batch texts(programs);
        return orvex_scene_filectl_exception_multi_remove(kind, object.c_str(), except_kind, texts.data(),
                                                          texts.count());
    }
    static int clear(std::int32_t kind, const std::string& object) {
        return orvex_scene_filectl_exception_clear_resource_policy(kind, object.c_str());
    }
};

TEST_F(file_protection, is_empty_in_a_fresh_store) {
    EXPECT_THAT(paths(), IsEmpty());
    EXPECT_THAT(packages(), IsEmpty());
    EXPECT_THAT(exceptions(), IsEmpty());
}

TEST_F(file_protection, shows_a_directory_as_its_pattern) {
    const std::string dir = make_directory("dir");
    EXPECT_EQ(protect({"/b", dir, "/a"}), 0);
    EXPECT_THAT(paths(), ElementsAre("/b", dir + "/*", "/a"));
}

TEST_F(file_protection, ends_for_a_directory_that_is_gone_with_or_without_its_slash) {
    const std::string dir = make_directory("dir");
    const std::string dir2 = make_directory("dir2");
    protect({dir, dir2});
    std::filesystem::remove(dir);
    std::filesystem::remove(dir2);
    EXPECT_EQ(release({dir + "/", dir2}), 0);
    EXPECT_THAT(paths(), IsEmpty());
}

TEST_F(file_protection, tells_a_file_from_a_directory_of_the_same_name) {
    const std::string object = path("object");
    protect({object});
    make_directory("object");
    protect({object});
    EXPECT_THAT(paths(), ElementsAre(object, object + "/*"));
    EXPECT_EQ(release({object}), 0);
    EXPECT_THAT(paths(), ElementsAre(object));
    EXPECT_EQ(release({object}), 0);
    EXPECT_THAT(paths(), IsEmpty());
}

TEST_F(file_protection, takes_an_object_named_twice_once) {
    EXPECT_EQ(protect({"/a", "/a"}), 0);
    EXPECT_THAT(paths(), ElementsAre("/a"));
    EXPECT_EQ(release({"/a", "/a"}), 0);
    EXPECT_THAT(paths(), IsEmpty());
}

TEST_F(file_protection, ends_for_the_whole_batch_or_for_nothing) {
    protect({"/a"});
    EXPECT_NE(release({"/a", "/b"}), 0);
    EXPECT_THAT(paths(), ElementsAre("/a"));
}

TEST_F(file_protection, knows_packages_by_name) {
    EXPECT_EQ(protect_package("bash"), 0);
    EXPECT_THAT(packages(), ElementsAre("bash"));
    EXPECT_THAT(paths(), IsEmpty());
    batch texts{"bash"};
    EXPECT_EQ(orvex_scene_filectl_multi_remove_by_pkg(texts.data(), texts.count()), 0);
    EXPECT_NE(orvex_scene_filectl_multi_remove_by_pkg(texts.data(), texts.count()), 0);
    EXPECT_THAT(packages(), IsEmpty());
}

TEST_F(file_protection, excepts_programs_and_packages_from_each_kind_of_object) {
    const std::string dir = make_directory("dir");
    protect({"/a", dir});
    protect_package("bash");
    EXPECT_EQ(except(orvex_kind_pkg, "bash", orvex_kind_file, {"/p"}), 0);
    EXPECT_EQ(except(orvex_kind_dir, dir, orvex_kind_pkg, {"vim"}), 0);
    EXPECT_EQ(except(orvex_kind_file, "/a", orvex_kind_file, {"/y", "/x"}), 0);
    EXPECT_EQ(except(orvex_kind_file, "/a", orvex_kind_pkg, {"vim"}), 0);
    EXPECT_THAT(exceptions(), ElementsAre(Pair(dir + "/*", ElementsAre("vim")),
                                          Pair("/a", ElementsAre("/y", "/x", "vim")), Pair("bash", ElementsAre("/p"))));
}

TEST_F(file_protection, shows_an_excepted_directory_as_its_pattern) {
    protect({"/a"});
    EXPECT_EQ(except(orvex_kind_file, "/a", orvex_kind_dir, {"/usr/bin/"}), 0);
    EXPECT_THAT(exceptions(), ElementsAre(Pair("/a", ElementsAre("/usr/bin/*"))));
    EXPECT_EQ(stop_except(orvex_kind_file, "/a", orvex_kind_dir, {"/usr/bin"}), 0);
    EXPECT_THAT(exceptions(), IsEmpty());
}

TEST_F(file_protection, excepts_nothing_from_what_is_not_protected) {
    protect({"/a", make_directory("dir")});
    EXPECT_EQ(except(orvex_kind_file, "/b", orvex_kind_file, {"/x"}), -3);
    EXPECT_EQ(last_error(), "/b is not protected");
    EXPECT_EQ(except(orvex_kind_dir, "/a", orvex_kind_file, {"/x"}), -3);
    EXPECT_EQ(except(orvex_kind_file, path("dir"), orvex_kind_file, {"/x"}), -3);
    EXPECT_EQ(except(orvex_kind_pkg, "bash", orvex_kind_file, {"/x"}), -3);
    EXPECT_EQ(stop_except(orvex_kind_file, "/b", orvex_kind_file, {"/x"}), -3);
    EXPECT_THAT(exceptions(), IsEmpty());
}

TEST_F(file_protection, takes_an_exception_named_twice_once) {
    protect({"/a"});
    EXPECT_EQ(except(orvex_kind_file, "/a", orvex_kind_file, {"/x", "/x"}), 0);
    EXPECT_EQ(except(orvex_kind_file, "/a", orvex_kind_file, {"/x"}), 0);
    EXPECT_THAT(exceptions(), ElementsAre(Pair("/a", ElementsAre("/x"))));
    EXPECT_EQ(stop_except(orvex_kind_file, "/a", orvex_kind_file, {"/x", "/x"}), 0);
}

TEST_F(file_protection, drops_the_record_of_an_object_with_its_last_exception) {
    protect({"/a"});
    except(orvex_kind_file, "/a", orvex_kind_file, {"/x", "/y"});
    EXPECT_EQ(stop_except(orvex_kind_file, "/a", orvex_kind_file, {"/x"}), 0);
    EXPECT_THAT(exceptions(), ElementsAre(Pair("/a", ElementsAre("/y"))));
    EXPECT_EQ(stop_except(orvex_kind_file, "/a", orvex_kind_file, {"/y"}), 0);
    EXPECT_THAT(exceptions(), IsEmpty());
    EXPECT_EQ(clear(orvex_kind_file, "/a"), -3);
}

TEST_F(file_protection, makes_no_record_of_an_object_for_no_exception) {
    protect({"/a"});
    EXPECT_EQ(except(orvex_kind_file, "/a", orvex_kind_file, {}), 0);
    EXPECT_THAT(exceptions(), IsEmpty());
    EXPECT_EQ(clear(orvex_kind_file, "/a"), -3);
}

TEST_F(file_protection, takes_exceptions_off_all_or_none_and_by_kind) {
    protect({"/a"});
    except(orvex_kind_file, "/a", orvex_kind_file, {"/x"});
    EXPECT_EQ(stop_except(orvex_kind_file, "/a", orvex_kind_file, {"/x", "/z"}), -1);
    EXPECT_EQ(last_error(), "/z is not an exception of /a");
    EXPECT_EQ(stop_except(orvex_kind_file, "/a", orvex_kind_pkg, {"/x"}), -1);
    EXPECT_THAT(exceptions(), ElementsAre(Pair("/a", ElementsAre("/x"))));
}

TEST_F(file_protection, refuses_an_unknown_kind) {
    protect({"/a"});
    EXPECT_EQ(except(4, "/a", orvex_kind_file, {"/x"}), -1);
    EXPECT_EQ(except(orvex_kind_file, "/a", 0, {"/x"}), -1);
    EXPECT_EQ(clear(0, "/a"), -1);
    EXPECT_THAT(exceptions(), IsEmpty());
}

TEST_F(file_protection, keeps_exceptions_past_its_end_until_they_are_cleared) {
    const std::string dir = make_directory("dir");
    protect({"/a", dir});
    protect_package("bash");
    except(orvex_kind_file, "/a", orvex_kind_file, {"/x"});
    except(orvex_kind_dir, dir, orvex_kind_file, {"/x"});
    except(orvex_kind_pkg, "bash", orvex_kind_file, {"/x"});
    release({"/a", dir});
    EXPECT_EQ(exceptions().size(), 3U);
    EXPECT_EQ(clear(orvex_kind_file, "/a"), 0);
    EXPECT_EQ(clear(orvex_kind_dir, dir + "/"), 0);
    EXPECT_EQ(clear(orvex_kind_pkg, "bash"), 0);
    EXPECT_THAT(exceptions(), IsEmpty());
}

TEST_F(file_protection, has_nothing_to_clear_where_nothing_is_excepted) {
    protect({"/a"});
    EXPECT_EQ(clear(orvex_kind_file, "/a"), -3);
    EXPECT_EQ(clear(orvex_kind_file, "/never"), -3);
    EXPECT_EQ(last_error(), "/never has no exceptions");
}

TEST_F(file_protection, takes_null_records_and_no_null_object) {
    orvex_scene_filectl_exception_policy_free(nullptr, 0);
    orvex_scene_filectl_exception_policy_free(nullptr, 5);
    orvex_scene_taskctl_exception_policy_free(nullptr, 5);
    EXPECT_EQ(orvex_scene_filectl_exception_clear_resource_policy(orvex_kind_file, nullptr), -1);
    EXPECT_EQ(orvex_scene_filectl_exception_multi_add(orvex_kind_file, nullptr, orvex_kind_file, nullptr, 0), -1);
}

TEST_F(file_protection, is_changed_by_root_and_the_security_administrator_alone) {
    protect({"/a"});
    except(orvex_kind_file, "/a", orvex_kind_file, {"/x"});
    become(1000);
    EXPECT_EQ(protect({"/b"}), -4);
    EXPECT_EQ(release({"/a"}), -4);
    EXPECT_EQ(protect_package("bash"), -4);
    EXPECT_EQ(except(orvex_kind_file, "/a", orvex_kind_file, {"/y"}), -4);
    EXPECT_EQ(stop_except(orvex_kind_file, "/a", orvex_kind_file, {"/x"}), -4);
    EXPECT_EQ(clear(orvex_kind_file, "/a"), -4);
    EXPECT_THAT(paths(), ElementsAre("/a"));
    EXPECT_THAT(exceptions(), ElementsAre(Pair("/a", ElementsAre("/x"))));
    become(600);
    EXPECT_EQ(clear(orvex_kind_file, "/a"), 0);
}

TEST_F(file_protection, is_apart_from_process_protection) {
    protect({"/a"});
    except(orvex_kind_file, "/a", orvex_kind_file, {"/x"});
    batch program{"/a"};
    EXPECT_THAT(fetch_list(orvex_scene_taskctl_get_policy), IsEmpty());
    EXPECT_EQ(orvex_scene_taskctl_exception_multi_add(orvex_kind_file, "/a", orvex_kind_file, program.data(), 1), -3);
    EXPECT_EQ(orvex_scene_taskctl_exception_clear_resource_policy("/a"), -3);
}

}  // namespace
