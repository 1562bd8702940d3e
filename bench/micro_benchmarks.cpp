// SPDX-License-Identifier: Apache-2.0
// The pieces of the program that have loops of their own: splitting a list, looking a record up, printing rows. Time
// for each of `items` pieces, records or rows.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <streambuf>
#include <string>
#include <vector>

#include "framework/exception_records.h"
#include "framework/module_base.h"
#include "framework/output.h"
#include "framework/owned.h"
#include "service/filectl.h"

namespace {

/// Takes all bytes and keeps none.
class bottomless : public std::streambuf {
    int_type overflow(int_type character) override { return traits_type::not_eof(character); }
    std::streamsize xsputn(const char* /*text*/, std::streamsize size) override { return size; }
};

/// Standard output goes nowhere in its lifetime.
class silence {
public:
    silence() : shown_(std::cout.rdbuf(&bottomless_)) {}
    silence(const silence&) = delete;
    silence& operator=(const silence&) = delete;
    ~silence() { std::cout.rdbuf(shown_); }

private:
    bottomless bottomless_;
    std::streambuf* shown_;
};

std::string name_of(std::int64_t number) {
    return "/srv/data/object-" + std::to_string(number);
}

/// Records of objects with one exception each.
class made_records {
public:
    explicit made_records(std::int64_t count) {
        for (std::int64_t number = 0; number < count; ++number) {
            names_.push_back(name_of(number));
        }
        for (std::string& name : names_) {
            records_.push_back({name.data(), exceptions_.data(), exceptions_.size()});
        }
    }

    filectl_exception_record* lend(std::uint64_t* count) {
        *count = records_.size();
        return records_.data();
    }

private:
    std::string exception_ = "/usr/bin/editor";
    std::array<char*, 1> exceptions_ = {exception_.data()};
    std::vector<std::string> names_;
    std::vector<filectl_exception_record> records_;
};

void keep(filectl_exception_record* /*records*/, std::uint64_t /*count*/) {}
using lent_records = exception_records<filectl_exception_record, keep>;

owned_list make_objects(std::int64_t count) {
    return owned_list([&](std::uint64_t* made) {
        auto** const objects = static_cast<char**>(std::calloc(static_cast<std::size_t>(count), sizeof(char*)));
        for (std::int64_t number = 0; number < count; ++number) {
            objects[number] = copy_text(name_of(number)).release();
        }
        *made = static_cast<std::uint64_t>(count);
        return objects;
    });
}

void split_list(benchmark::State& state) {
    std::string list;
    for (std::int64_t number = 0; number < state.range(0); ++number) {
        list += name_of(number) + ":";
    }
    COrvexBase base;
    for ([[maybe_unused]] auto round : state) {
        benchmark::DoNotOptimize(base.split_string(list, ':'));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void look_one_record_up(benchmark::State& state) {
    made_records made(state.range(0));
    const lent_records records([&](std::uint64_t* count) { return made.lend(count); });
    const std::string last = name_of(state.range(0) - 1);
    for ([[maybe_unused]] auto round : state) {
        benchmark::DoNotOptimize(records.hold(last, "/usr/bin/editor"));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void print_rows_of_records(benchmark::State& state) {
    const silence quiet;
    made_records made(state.range(0));
    const lent_records records([&](std::uint64_t* count) { return made.lend(count); });
    for ([[maybe_unused]] auto round : state) {
        state.PauseTiming();
        owned_list objects = make_objects(state.range(0));
        state.ResumeTiming();
        records.print_rows({&objects, 1});
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void print_plain_lines(benchmark::State& state) {
    const silence quiet;
    const std::string name = name_of(0);
    for ([[maybe_unused]] auto round : state) {
        for (std::int64_t number = 0; number < state.range(0); ++number) {
            print_line("   ", name);
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(split_list)->Arg(1000)->Arg(50000);
BENCHMARK(look_one_record_up)->Arg(1000)->Arg(50000);
BENCHMARK(print_rows_of_records)->Arg(1000)->Arg(50000);
BENCHMARK(print_plain_lines)->Arg(1000)->Arg(50000);

}  // namespace

BENCHMARK_MAIN();
