// SPDX-License-Identifier: Apache-2.0
#include "families/exceptions.h"

#include "core/failure.h"
#include "core/store.h"
#include "families/batch.h"
#include "service/object_kind.h"

namespace local_service {
namespace {

std::string stored_form(const named_object& object) {
    switch (object.kind) {
        case orvex_kind_file:
        case orvex_kind_pkg:
            return object.name;
        case orvex_kind_dir:
            return directory_pattern(object.name);
        default:
            throw failure("unknown kind of object: " + std::to_string(object.kind));
    }
}

const entry_list& objects_with_exceptions(const protection& family, const named_object& object) {
    return object.kind == orvex_kind_pkg ? family.excepted_packages : family.excepted_paths;
}

void require_protection(const protection& family, const named_object& object) {
    const entry_list& list = object.kind == orvex_kind_pkg ? family.packages : family.paths;
    if (!list.contains(stored_form(object))) {
        throw failure(object.name + " is not protected", orvex_result_not_protected);
    }
}

bool has_exception(std::int64_t object, const named_object& exception) {
    query rows("SELECT 1 FROM exception WHERE object = ? AND kind = ? AND text = ?",
               {object, std::int64_t{exception.kind}, stored_form(exception)});
    return rows.next();
}

std::vector<named_object> objects_of(const given_exceptions& given) {
    std::vector<named_object> objects;
    for (std::string& text : given_texts(given.texts, given.count)) {
        objects.push_back({given.kind, std::move(text)});
    }
    return objects;
}

}  // namespace

void add_exceptions(const protection& family, const named_object& object, const given_exceptions& added) {
    require_protection(family, object);
    std::vector<stored_exception> exceptions;
    for (const named_object& exception : objects_of(added)) {
        exceptions.push_back({exception.kind, stored_form(exception)});
    }
    put_exceptions(objects_with_exceptions(family, object), {stored_form(object), exceptions});
}

void remove_exceptions(const protection& family, const named_object& object, const given_exceptions& removed) {
    require_protection(family, object);
    const std::vector<named_object> exceptions = objects_of(removed);
    const entry_list& excepted = objects_with_exceptions(family, object);
    const std::int64_t owner = excepted.find(stored_form(object)).value_or(0);
    // An exception may be named twice, so all are looked for before the first is gone.
    for (const named_object& exception : exceptions) {
        if (!has_exception(owner, exception)) {
            throw failure(exception.name + " is not an exception of " + object.name);
        }
    }
    for (const named_object& exception : exceptions) {
        change("DELETE FROM exception WHERE object = ? AND kind = ? AND text = ?",
               {owner, std::int64_t{exception.kind}, stored_form(exception)});
    }
    change("DELETE FROM entry WHERE id = ?1 AND NOT EXISTS (SELECT 1 FROM exception WHERE object = ?1)", {owner});
}

void clear_exceptions(const protection& family, const named_object& object) {
    if (!objects_with_exceptions(family, object).remove(stored_form(object))) {
        throw failure(object.name + " has no exceptions", orvex_result_not_protected);
    }
}

std::vector<excepted_object> read_exceptions(const protection& family) {
    std::vector<excepted_object> objects = read_exceptions(family.excepted_paths);
    for (excepted_object& object : read_exceptions(family.excepted_packages)) {
        objects.push_back(std::move(object));
    }
    return objects;
}

std::vector<std::string> texts_of(const excepted_object& object) {
    std::vector<std::string> texts;
    for (const stored_exception& exception : object.exceptions) {
        texts.push_back(exception.text);
    }
    return texts;
}

}  // namespace local_service
