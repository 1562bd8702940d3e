// SPDX-License-Identifier: Apache-2.0
#include <rpm/rpmdb.h>
#include <rpm/rpmfi.h>
#include <rpm/rpmfiles.h>
#include <rpm/rpmlib.h>
#include <rpm/rpmtag.h>
#include <rpm/rpmts.h>
#include <rpm/rpmtypes.h>

#include <list>
#include <memory>
#include <string>
#include <type_traits>

#include "framework/on_demand.h"
#include "framework/output.h"
#include "on_demand/rpm/owned_transaction.h"
#include "on_demand/rpm/owner_query.h"

namespace {

struct iterator_deleter {
    void operator()(rpmdbMatchIterator iterator) const noexcept { rpmdbFreeIterator(iterator); }
};
using owned_iterator = std::unique_ptr<std::remove_pointer_t<rpmdbMatchIterator>, iterator_deleter>;

struct file_info_deleter {
    void operator()(rpmfi info) const noexcept { rpmfiFree(info); }
};
using owned_file_info = std::unique_ptr<std::remove_pointer_t<rpmfi>, file_info_deleter>;

/// The one look-up of a package label. Only the first header that matches is read. It is borrowed from the iterator.
class package_lookup {
public:
    explicit package_lookup(const std::string& pkg) : transaction_(create_transaction()) {
        constexpr auto label_index = static_cast<rpmDbiTagVal>(RPMDBI_LABEL);
        static_assert(label_index == 2, "the index that matches names and name-version forms");
        iterator_.reset(rpmtsInitIterator(transaction_.get(), label_index, pkg.c_str(), 0));
        header_ = rpmdbNextIterator(iterator_.get());
    }

    bool is_found() const { return header_ != nullptr; }

    std::list<std::string> get_files() const {
        // Names alone are wanted: everything else that a file list may load is left out.
        constexpr rpmfiFlags flags =
            RPMFI_NOFILECLASS | RPMFI_NOFILEDEPS | RPMFI_NOFILELANGS | RPMFI_NOFILECOLORS | RPMFI_NOFILEVERIFYFLAGS;
        static_assert(flags == 0x1800e, "the flags of a plain file list");
        std::list<std::string> files;
        const owned_file_info info(rpmfiNew(transaction_.get(), header_, RPMTAG_BASENAMES, flags));
        while (rpmfiNext(info.get()) >= 0) {
            files.emplace_back(rpmfiFN(info.get()));
        }
        return files;
    }

private:
    /// rpm's configuration is read anew for each look-up.
    static owned_transaction create_transaction() {
        rpmReadConfigFiles(nullptr, nullptr);
        return owned_transaction(rpmtsCreate());
    }

    owned_transaction transaction_;
    owned_iterator iterator_;
    Header header_ = nullptr;
};

bool is_installed(const std::string& pkg) {
    return package_lookup(pkg).is_found();
}

int get_files(const std::string& pkg, std::list<std::string>& files) {
    const package_lookup lookup(pkg);
    if (!lookup.is_found()) {
        print_line("软件包[", pkg, "]未安装!");
        return -1;
    }
    files.splice(files.end(), lookup.get_files());
    return 0;
}

}  // namespace

const package_questions orvex_package_questions_1 = {
    .is_installed = is_installed,
    .get_files = get_files,
    .print_owner = print_owner,
};
