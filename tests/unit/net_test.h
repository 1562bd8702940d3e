// SPDX-License-Identifier: Apache-2.0
// What the tests of the operations of `net` share.
#pragma once

#include <gmock/gmock.h>

#include <cstdint>
#include <optional>
#include <string>

#include "modules/net/net_module.h"
#include "service/netctl.h"
#include "support/module_test.h"

/// A module whose questions about packages are answered by the test.
class asked_net : public COrvexNet {
public:
    asked_net();
    ~asked_net() override;

    MOCK_METHOD(std::string, get_pkg_by_file, (const std::string& path), (override));
    MOCK_METHOD(std::string, get_desktop_file, (const std::string& pkg), (override));
    MOCK_METHOD(std::string, get_desktop_icon, (const std::string& pkg), (override));
    MOCK_METHOD(bool, is_pkg_installed, (const std::string& pkg), (override));
};

/// The policy of a package, as it is stored: no field of it is what this program would write today.
netctl_pkg_record stored_pkg_record();

/// The policy of a program, as it is stored: no field of it is what this program would write today.
netctl_ext_record stored_ext_record();

/// Fixture of the tests of the operations.
class net_test : public module_test {
protected:
    net_test();
    ~net_test() override;

    /// Expects the look-up of a package's policy.
    void expect_pkg_read(const std::string& pkg, const std::optional<netctl_pkg_record>& answer);

    /// Expects the look-up of a program's policy.
    void expect_ext_read(const std::string& path, const std::optional<netctl_ext_record>& answer);

    /// Expects that a package's desktop entry and its icon are asked for, and that its policy is added with them.
    void expect_pkg_add(const std::string& pkg, std::int32_t status, int result);

    /// Expects that the stored policy of a package gets another status and keeps all else.
    void expect_pkg_update(std::int32_t status, int result);

    /// Expects that the stored policy of a program gets another status and keeps all else.
    void expect_ext_update(std::int32_t status, int result);

    /// Expects the tests of a path that passes them, up to its absolute form.
    void expect_good_file(const std::string& path, const std::string& absolute_path);

    testing::StrictMock<asked_net> net;
};
