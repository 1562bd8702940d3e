// SPDX-License-Identifier: Apache-2.0
// How `file` resolves a protected object and its exceptions. What is done with them is in exception_change_test.cpp.

#include "modules/file/file_module.h"
#include "support/given_variable.h"
#include "unit/real_path_test.h"

namespace {

using testing::Return;

/// A module for which the test knows the installed packages and the exceptions.
class known_file : public COrvexFile {
public:
    MOCK_METHOD(bool, is_pkg_installed, (const std::string& pkg), (override));
    MOCK_METHOD(bool, is_except_in_policy, (const std::string& object, const std::string& except_object), (override));
};

class file_exceptions_test : public real_path_test {
protected:
    call_result set(std::int32_t first_kind, const std::string& first_object, std::int32_t except_kind,
                    const std::string& except_object, int action) {
        return capture(
            [&] { return file.set_file_except_policy(first_kind, first_object, except_kind, except_object, action); });
    }

    void expect_installed(const std::string& pkg, bool answer) {
        EXPECT_CALL(file, is_pkg_installed(pkg)).WillOnce(Return(answer));
    }

    /// Expects that these exceptions are looked for, need the change and go to the library.
    void expect_done(std::int32_t first_kind, const std::string& object, std::int32_t except_kind,
                     const texts& exceptions, int action) {
        for (const std::string& exception : exceptions) {
            EXPECT_CALL(file, is_except_in_policy(object, exception)).WillOnce(Return(action == remove));
        }
        if (action == add) {
            EXPECT_CALL(service, orvex_scene_filectl_exception_multi_add(first_kind, object, except_kind, exceptions))
                .WillOnce(Return(0));
        } else {
            EXPECT_CALL(service,
                        orvex_scene_filectl_exception_multi_remove(first_kind, object, except_kind, exceptions))
                .WillOnce(Return(0));
        }
    }

    testing::StrictMock<known_file> file;
};

// The protected object.

/// What differs between a protected file and a protected directory.
struct first_row {
    const char* name;
    std::int32_t kind;
    /// What `path_is_dir` may answer for an object of the kind, and for another.
    std::vector<int> right_answers;
    std::vector<int> wrong_answers;
    std::string missing_head;
    std::string no_real_path_head;
    std::string wrong_kind_tail;
    std::string gone_head;
    std::string gone_tail;
    std::string gone_advice;
};

void PrintTo(const first_row& row, std::ostream* stream) {
    *stream << row.name;
}

const first_row first_rows[] = {
    {"file",
     1,
     {0, 2, -1},
     {1},
     "文件路径[",
     "获取文件[",
     "]是目录, 请输入文件路径\n",
     "输入文件[",
     "]的相对路径时, 请确保文件存在!\n",
     "支持不存在的文件删除只读保护的例外程序, 需输入文件绝对路径!\n"},
    {"directory",
     2,
     {1},
     {0, 2, -1},
     "目录路径[",
     "获取目录[",
     "]非目录, 请输入目录路径\n",
     "输入目录[",
     "]的相对路径时, 请确保目录存在!\n",
     "支持不存在的目录删除只读保护的例外程序, 需输入目录绝对路径!\n"},
};

class file_first_path_test : public file_exceptions_test, public testing::WithParamInterface<first_row> {
protected:
    /// Sets a package, which passes, as the exception of a path.
    call_result set_first(const std::string& first_object, int action) {
        return set(GetParam().kind, first_object, 3, "p", action);
    }

    /// Expects the path to be resolved to `object` and the package to go to the library.
    void expect_resolved(const std::string& object, int action) {
        if (action == add) {
            expect_installed("p", true);
        }
        expect_done(GetParam().kind, object, 3, {"p"}, action);
    }
};

TEST_P(file_first_path_test, a_path_that_exists_stands_for_its_real_path) {
    for (const int action : {add, remove}) {
        for (const int answer : GetParam().right_answers) {
            expect_exists(link);
            expect_dir(a, answer);
            expect_resolved(a, action);
            EXPECT_EQ(set_first(link, action), (call_result{0, ""})) << action << answer;
        }
    }
}

TEST_P(file_first_path_test, a_path_that_does_not_exist_is_refused_at_an_add) {
    for (const int answer : {0, 2, -1}) {
        expect_exists("/gone %s", answer);
        EXPECT_EQ(set_first("/gone %s", add), (call_result{-1, GetParam().missing_head + "/gone %s]不存在!\n"}));
    }
}

TEST_P(file_first_path_test, a_path_without_a_real_path_is_refused) {
    for (const int action : {add, remove}) {
        expect_exists(gone);
        EXPECT_EQ(set_first(gone, action),
                  (call_result{-1, GetParam().no_real_path_head + gone + "]的实际路径失败!\n"}));
    }
}

TEST_P(file_first_path_test, the_wrong_kind_is_refused_with_the_real_path) {
    for (const int action : {add, remove}) {
        for (const int answer : GetParam().wrong_answers) {
            expect_exists(link);
            expect_dir(a, answer);
            EXPECT_EQ(set_first(link, action), (call_result{-1, "路径[" + a + GetParam().wrong_kind_tail}));
        }
    }
}

TEST_P(file_first_path_test, a_relative_path_that_is_gone_is_refused_at_a_removal) {
    for (const std::string path : {"gone", "./gone"}) {
        for (const int answer : {0, 2, -1}) {
            expect_exists(path, answer);
            EXPECT_EQ(set_first(path, remove),
                      (call_result{-1, GetParam().gone_head + path + GetParam().gone_tail + GetParam().gone_advice}));
        }
    }
}

TEST_P(file_first_path_test, an_absolute_path_that_is_gone_stands_for_itself_at_a_removal) {
    for (const std::string path : {"/gone", "/gone/", "/gone/../gone", "/gone/*"}) {
        expect_exists(path, 0);
        expect_resolved(path, remove);
        EXPECT_EQ(set_first(path, remove), (call_result{0, ""})) << path;
    }
}

TEST_P(file_first_path_test, the_path_is_one_object_with_its_colons_and_its_tilde) {
    const given_variable home("HOME", dir.path().c_str());
    for (const std::string& path : {a + ":" + b, std::string("~/a"), std::string()}) {
        expect_exists(path, 0);
        EXPECT_EQ(set_first(path, add), (call_result{-1, GetParam().missing_head + path + "]不存在!\n"}));
    }
    expect_exists(a + ":" + b, 0);
    expect_resolved(a + ":" + b, remove);
    EXPECT_EQ(set_first(a + ":" + b, remove), (call_result{0, ""}));

    expect_exists("~/a", 0);
    EXPECT_EQ(set_first("~/a", remove),
              (call_result{-1, GetParam().gone_head + "~/a" + GetParam().gone_tail + GetParam().gone_advice}));
}

INSTANTIATE_TEST_SUITE_P(kinds, file_first_path_test, testing::ValuesIn(first_rows),
                         [](const auto& row) { return row.param.name; });

TEST_F(file_exceptions_test, a_protected_package_has_to_be_installed_at_an_add) {
    expect_installed("hesa:guard", true);
    expect_installed("p", true);
    expect_done(3, "hesa:guard", 3, {"p"}, add);
    EXPECT_EQ(set(3, "hesa:guard", 3, "p", add), (call_result{0, ""}));

    expect_installed("nosuch", false);
    EXPECT_EQ(set(3, "nosuch", 3, "p", add), (call_result{-1, "软件包[nosuch]未安装, 不支持添加\n"}));
}

TEST_F(file_exceptions_test, nothing_is_asked_about_a_protected_package_at_a_removal) {
    for (const char* pkg : {"nosuch", "~/a", "a:b", "%s"}) {
        expect_done(3, pkg, 3, {"p"}, remove);
        EXPECT_EQ(set(3, pkg, 3, "p", remove), (call_result{0, ""})) << pkg;
    }
}

TEST_F(file_exceptions_test, any_other_kind_of_protected_object_is_refused) {
    for (const int action : {add, remove}) {
        for (const std::int32_t kind : {0, 4, -1}) {
            EXPECT_EQ(set(kind, a, 0, "p", action),
                      (call_result{-1, "添加例外程序时,只读文件可以是文件路径、目录或者软件包!\n"}));
        }
    }
}

// The exceptions. The protected object is a package that is taken as it stands, or one that is installed.

class file_exception_objects_test : public file_exceptions_test {
protected:
    call_result set_exceptions(std::int32_t kind, const std::string& exceptions, int action) {
        return set(3, "object", kind, exceptions, action);
    }

    void expect_first_object(int action) {
        if (action == add) {
            expect_installed("object", true);
        }
    }
};

TEST_F(file_exception_objects_test, without_a_piece_nothing_is_done) {
    for (const int action : {add, remove}) {
        for (const std::int32_t kind : {1, 3}) {
            for (const char* exceptions : {"", ":", "::"}) {
                expect_first_object(action);
                EXPECT_EQ(set_exceptions(kind, exceptions, action), (call_result{0, ""})) << kind << exceptions;
            }
        }
    }
}

TEST_F(file_exception_objects_test, a_path_that_exists_stands_for_its_real_path) {
    for (const int action : {add, remove}) {
        for (const int answer : {0, 2, -1}) {
            expect_first_object(action);
            expect_exists(link);
            expect_dir(a, answer);
            expect_done(3, "object", 1, {a}, action);
            EXPECT_EQ(set_exceptions(1, link, action), (call_result{0, ""})) << action << answer;
        }
    }
}

TEST_F(file_exception_objects_test, a_path_that_does_not_exist_is_dropped_at_an_add) {
    for (const int answer : {0, 2, -1}) {
        expect_first_object(add);
        expect_exists("/gone %s", answer);
        EXPECT_EQ(set_exceptions(1, "/gone %s", add), (call_result{0, "文件路径[/gone %s]不存在!\n"})) << answer;
    }
}

TEST_F(file_exception_objects_test, a_path_without_a_real_path_and_a_directory_are_dropped) {
    for (const int action : {add, remove}) {
        expect_first_object(action);
        expect_exists(gone);
        expect_exists(link);
        expect_dir(a, 1);
        EXPECT_EQ(set_exceptions(1, gone + ":" + link, action),
                  (call_result{0, "获取文件[" + gone + "]的实际路径失败!\n路径[" + a + "]是目录, 请输入文件路径\n"}))
            << action;
    }
}

TEST_F(file_exception_objects_test, a_relative_path_that_is_gone_is_dropped_at_a_removal) {
    for (const int answer : {0, 2, -1}) {
        expect_exists("gone", answer);
        EXPECT_EQ(set_exceptions(1, "gone", remove),
                  (call_result{0,
                               "输入文件[gone]的相对路径时, 请确保文件存在!\n"
                               "支持只读文件删除不存在的例外程序, 需输入文件绝对路径!\n"}))
            << answer;
    }
}

TEST_F(file_exception_objects_test, an_absolute_path_that_is_gone_stands_for_itself_at_a_removal) {
    for (const std::string path : {"/old", "/gone/../old", "/old/"}) {
        expect_exists(path, 0);
        expect_done(3, "object", 1, {path}, remove);
        EXPECT_EQ(set_exceptions(1, path, remove), (call_result{0, ""})) << path;
    }
}

TEST_F(file_exception_objects_test, the_home_directory_stands_for_the_tilde_in_lines_and_calls) {
    const given_variable home("HOME", dir.path().c_str());
    expect_first_object(add);
    expect_exists(a);
    expect_dir(a, 0);
    expect_exists(gone, 0);
    expect_done(3, "object", 1, {a}, add);
    EXPECT_EQ(set_exceptions(1, "~/a:~/gone", add), (call_result{0, "文件路径[" + gone + "]不存在!\n"}));

    expect_exists(a);
    expect_dir(a, 0);
    expect_exists(gone, 0);
    expect_done(3, "object", 1, {a, gone}, remove);
    EXPECT_EQ(set_exceptions(1, "~/a:~/gone", remove), (call_result{0, ""}));
}

TEST_F(file_exception_objects_test, a_dropped_path_does_not_stop_the_others) {
    expect_first_object(add);
    expect_exists("/gone", 0);
    expect_exists(a);
    expect_dir(a, 1);
    expect_exists(b);
    expect_dir(b, 0);
    expect_exists(b);
    expect_dir(b, 0);
    expect_done(3, "object", 1, {b, b}, add);
    EXPECT_EQ(set_exceptions(1, "/gone:" + a + "::" + b + ":" + b, add),
              (call_result{0, "文件路径[/gone]不存在!\n路径[" + a + "]是目录, 请输入文件路径\n"}));
}

TEST_F(file_exception_objects_test, directories_get_a_line_and_go_on_as_they_stand) {
    const std::string line = "文件只读保护不支持以目录的方式添加例外程序\n";
    for (const int action : {add, remove}) {
        expect_first_object(action);
        expect_done(3, "object", 2, {"~/dir/", "gone", "/x"}, action);
        EXPECT_EQ(set_exceptions(2, "~/dir/:gone::/x", action), (call_result{0, line})) << action;

        for (const char* exceptions : {"", ":"}) {
            expect_first_object(action);
            EXPECT_EQ(set_exceptions(2, exceptions, action), (call_result{0, line})) << action;
        }
    }
}

TEST_F(file_exception_objects_test, installed_packages_go_on_at_an_add) {
    expect_first_object(add);
    expect_installed("hesa-guard", true);
    expect_installed("~", true);
    expect_done(3, "object", 3, {"hesa-guard", "~"}, add);
    EXPECT_EQ(set_exceptions(3, "hesa-guard:~", add), (call_result{0, ""}));
}

TEST_F(file_exception_objects_test, one_package_that_is_not_installed_ends_an_add) {
    expect_first_object(add);
    expect_installed("nosuchpkg", false);
    EXPECT_EQ(set_exceptions(3, "nosuchpkg:hesa-guard", add),
              (call_result{-1, "软件包[nosuchpkg]未安装, 不支持设置\n"}));

    expect_first_object(add);
    expect_installed("hesa-guard", true);
    expect_installed("no%s", false);
    EXPECT_EQ(set_exceptions(3, "hesa-guard:no%s:other", add), (call_result{-1, "软件包[no%s]未安装, 不支持设置\n"}));
}

TEST_F(file_exception_objects_test, packages_are_not_tested_at_a_removal) {
    expect_done(3, "object", 3, {"nosuchpkg", "hesa-guard"}, remove);
    EXPECT_EQ(set_exceptions(3, "nosuchpkg:hesa-guard", remove), (call_result{0, ""}));
}

TEST_F(file_exception_objects_test, any_other_kind_is_refused_without_pieces_too) {
    for (const int action : {add, remove}) {
        for (const std::int32_t kind : {0, 4, -1}) {
            for (const char* exceptions : {"/x", ""}) {
                expect_first_object(action);
                EXPECT_EQ(set_exceptions(kind, exceptions, action),
                          (call_result{-1, "添加例外程序时,例外只允许是文件路径、目录或者软件包!\n"}))
                    << kind;
            }
        }
    }
}

}  // namespace
