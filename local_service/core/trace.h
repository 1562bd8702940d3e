// SPDX-License-Identifier: Apache-2.0
// What `orvex_local trace` shows of each call of the service library. Nothing is written, and nothing is made of what
// could be written, in a process that is not traced.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <type_traits>

namespace local_service {

/// The environment variable that asks for a trace: "text:" or "json:" and the number of the descriptor to write to.
inline constexpr const char* trace_variable = "ORVEX_LOCAL_TRACE";

/// An array of `count` texts or numbers as a caller gives it.
template <class Value>
struct borrowed_array {
    const Value* values;
    std::int64_t count;
};
template <class Value>
borrowed_array(Value* values, std::int64_t count) -> borrowed_array<Value>;

class argument;

/// Writes values as JSON, one behind the other.
class value_writer {
public:
    template <class Number, std::enable_if_t<std::is_integral_v<Number>, int> = 0>
    void write(Number number) {
        text_ += std::to_string(number);
    }
    /// A text; null is null.
    void write(const char* text);
    /// The texts up to the null behind the last.
    void write(char* const* texts);
    /// What a call has counted into the caller's variable.
    void write(const std::uint64_t* count);
    void write(const std::int32_t* count);

    template <class Value>
    void write(const borrowed_array<Value>& array) {
        write_array(array.values, array.count, [&](const Value& value) { write(value); });
    }

    /// An array, its values written by `write_one`; null is null.
    template <class Value, class Write>
    void write_array(const Value* values, std::int64_t count, Write write_one) {
        if (values == nullptr) {
            write_plain("null");
        } else {
            write_list(count, [&](std::int64_t index) { write_one(values[index]); });
        }
    }

    /// A list of `count` values, of which `write_one` writes the one with a number counted from 0.
    template <class Write>
    void write_list(std::int64_t count, Write write_one) {
        text_ += '[';
        for (std::int64_t index = 0; index < count; ++index) {
            text_ += index == 0 ? "" : ", ";
            write_one(index);
        }
        text_ += ']';
    }

    /// An object.
    void write_object(std::initializer_list<argument> fields);

    /// The arguments of a call as people write them.
    void write_arguments(std::initializer_list<argument> arguments);

    /// A piece between values.
    void write_plain(const char* piece) { text_ += piece; }

    const std::string& text() const { return text_; }

private:
    std::string text_;
};

/// A value with its name, in sight for as long as the call lasts. A callable writes the value itself.
class argument {
public:
    template <class Value>
    argument(const char* name, const Value& value)
        : name_(name), value_(&value), write_([](value_writer& out, const void* shown) {
              const Value& plain = *static_cast<const Value*>(shown);
              if constexpr (std::is_invocable_v<const Value&, value_writer&>) {
                  plain(out);
              } else {
                  out.write(plain);
              }
          }) {}

    const char* name() const { return name_; }
    void write(value_writer& out) const { write_(out, value_); }

private:
    const char* name_;
    const void* value_;
    void (*write_)(value_writer& out, const void* shown);
};

/// Tells whether this process is traced.
bool is_traced() noexcept;

/// Writes the line of the call `function`. `result` stands under its only name.
void write_trace(const char* function, std::initializer_list<argument> arguments, const argument& result) noexcept;

/// The line of a call without a result, where this process is traced.
void trace(const char* function, std::initializer_list<argument> arguments) noexcept;

}  // namespace local_service
