// SPDX-License-Identifier: Apache-2.0
#include "families/log_message.h"

#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string_view>

namespace local_service {
namespace {

constexpr std::size_t message_limit = 65536;
/// A wider field says nothing more and costs memory.
constexpr int width_limit = 4096;

/// One conversion of a format, between its '%' and its letter.
struct conversion {
    std::string flags;
    std::string width;
    std::optional<std::string> precision;
    std::string length;
    char letter = '\0';
};

/// The arguments, so that they can be passed on by reference on every machine.
struct argument_source {
    std::va_list list;
};

/// Takes the next argument. A format that asks for more than there are gets what lies behind them on the stack, as it
/// would from printf, and the address sanitizer is to let it.
template <class Value>
[[gnu::no_sanitize_address]] Value take(argument_source& arguments) {
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): render_message has copied the list.
    return va_arg(arguments.list, Value);
}

std::string take_while(std::string_view& rest, std::string_view allowed) {
    const std::size_t count = std::min(rest.find_first_not_of(allowed), rest.size());
    std::string taken(rest.substr(0, count));
    rest.remove_prefix(count);
    return taken;
}

std::string take_number_or_star(std::string_view& rest) {
    if (!rest.empty() && rest.front() == '*') {
        rest.remove_prefix(1);
        return "*";
    }
    return take_while(rest, "0123456789");
}

/// Takes the conversion at the start of `rest`, whose '%' is gone already.
conversion take_conversion(std::string_view& rest) {
    conversion taken;
    taken.flags = take_while(rest, "-+ #0");
    taken.width = take_number_or_star(rest);
    if (!rest.empty() && rest.front() == '.') {
        rest.remove_prefix(1);
        taken.precision = take_number_or_star(rest);
    }
    taken.length = take_while(rest, "hljztLq");
    if (!rest.empty()) {
        taken.letter = rest.front();
        rest.remove_prefix(1);
    }
    return taken;
}

bool is_length_one_of(const conversion& asked, std::initializer_list<std::string_view> allowed) {
    return std::find(allowed.begin(), allowed.end(), asked.length) != allowed.end();
}

bool is_known(const conversion& asked) {
    switch (asked.letter) {
        case 'd':
        case 'i':
        case 'u':
        case 'o':
        case 'x':
        case 'X':
            return is_length_one_of(asked, {"", "hh", "h", "l", "ll", "q", "j", "z", "t"});
        case 'e':
        case 'E':
        case 'f':
        case 'F':
        case 'g':
        case 'G':
        case 'a':
        case 'A':
            return is_length_one_of(asked, {"", "l", "L"});
        case 'c':
        case 's':
        case 'p':
            return asked.length.empty();
        default:
            return false;
    }
}

/// Replaces a star by the argument that it stands for, and keeps every field within bounds.
void settle_number(std::string& digits, argument_source& arguments) {
    if (digits == "*") {
        digits = std::to_string(take<int>(arguments));
    }
    if (digits.size() > 5) {
        digits = std::to_string(width_limit);
    } else if (!digits.empty()) {
        digits = std::to_string(std::clamp(std::stoi(digits), -width_limit, width_limit));
    }
}

void settle_fields(conversion& asked, argument_source& arguments) {
    settle_number(asked.width, arguments);
    if (asked.precision) {
        settle_number(*asked.precision, arguments);
        if (asked.precision->rfind('-', 0) == 0) {
            asked.precision.reset();
        }
    }
}

// The format is put together here from parts that were checked, so that it fits the one argument.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
template <class Value>
std::string print(const conversion& asked, const char* length, Value argument) {
    const std::string format =
        "%" + asked.flags + asked.width + (asked.precision ? "." + *asked.precision : "") + length + asked.letter;
    const int size = std::snprintf(nullptr, 0, format.c_str(), argument);
    if (size < 0) {
        return {};
    }
    std::string text(static_cast<std::size_t>(size) + 1, '\0');
    const int written = std::snprintf(text.data(), text.size(), format.c_str(), argument);
    text.resize(static_cast<std::size_t>(written));
    return text;
}
#pragma GCC diagnostic pop

std::intmax_t take_signed(const std::string& length, argument_source& arguments) {
    if (length == "l") {
        return take<long>(arguments);
    }
    if (length == "ll" || length == "q") {
        return take<long long>(arguments);
    }
    if (length == "j") {
        return take<std::intmax_t>(arguments);
    }
    if (length == "z" || length == "t") {
        return take<std::ptrdiff_t>(arguments);
    }
    const int plain = take<int>(arguments);
    if (length == "hh") {
        return static_cast<signed char>(plain);
    }
    return length == "h" ? static_cast<short>(plain) : plain;
}

/// Cuts the number that was taken with its sign to its own width.
std::uintmax_t take_unsigned(const std::string& length, argument_source& arguments) {
    const std::intmax_t taken = take_signed(length, arguments);
    if (length == "hh") {
        return static_cast<unsigned char>(taken);
    }
    if (length == "h") {
        return static_cast<unsigned short>(taken);
    }
    return length.empty() ? static_cast<unsigned>(taken) : static_cast<std::uintmax_t>(taken);
}

/// Copies what can be read at `address` up to the end of its page, `size` bytes at the most. An address that cannot be
/// read gives nothing, and no signal either.
std::string_view read_page(std::uintptr_t address, char* buffer, std::size_t size) {
    static const auto page_size = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const std::size_t wanted = std::min<std::size_t>(size, page_size - address % page_size);
    iovec target{buffer, wanted};
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the number is only asked whether it is an address.
    iovec source{reinterpret_cast<void*>(address), wanted};
    const ssize_t got = process_vm_readv(getpid(), &target, 1, &source, 1, 0);
    return {buffer, got < 0 ? 0 : static_cast<std::size_t>(got)};
}

/// Returns the C string at `address`, its first `limit` bytes at the most, or nothing where there is none.
std::optional<std::string> read_text(std::uintptr_t address, std::size_t limit) {
    std::string text;
    std::array<char, 4096> buffer{};
    while (text.size() < limit) {
        const std::string_view piece =
            read_page(address + text.size(), buffer.data(), std::min(buffer.size(), limit - text.size()));
        if (piece.empty()) {
            return std::nullopt;
        }
        const std::size_t end = piece.find('\0');
        text.append(piece.substr(0, end));
        if (end != std::string_view::npos) {
            break;
        }
    }
    return text;
}

std::string render_text(conversion asked, argument_source& arguments) {
    const auto address = reinterpret_cast<std::uintptr_t>(take<void*>(arguments));
    std::size_t limit = message_limit;
    if (asked.precision) {
        limit = static_cast<std::size_t>(asked.precision->empty() ? 0 : std::stoi(*asked.precision));
    }
    asked.precision.reset();
    asked.flags.erase(std::remove_if(asked.flags.begin(), asked.flags.end(), [](char flag) { return flag != '-'; }),
                      asked.flags.end());
    if (address == 0) {
        return print(asked, "", "(null)");
    }
    // A number in the place of a text fills the lower half of the word; the upper half may hold anything.
    const std::string text =
        read_text(address, limit).value_or(std::to_string(static_cast<std::int32_t>(address & 0xFFFFFFFFU)));
    return print(asked, "", text.c_str());
}

std::string render(conversion asked, argument_source& arguments) {
    settle_fields(asked, arguments);
    switch (asked.letter) {
        case 'd':
        case 'i':
            return print(asked, "j", take_signed(asked.length, arguments));
        case 'u':
        case 'o':
        case 'x':
        case 'X':
            return print(asked, "j", take_unsigned(asked.length, arguments));
        case 'c':
            return print(asked, "", take<int>(arguments));
        case 'p':
            return print(asked, "", take<void*>(arguments));
        case 's':
            return render_text(std::move(asked), arguments);
        default:
            if (asked.length == "L") {
                return print(asked, "L", take<long double>(arguments));
            }
            return print(asked, "", take<double>(arguments));
    }
}

}  // namespace

std::string render_message(const std::string& format, std::va_list arguments) {
    argument_source source{};
    va_copy(source.list, arguments);
    std::string message;
    std::string_view rest = format;
    while (!rest.empty() && message.size() < message_limit) {
        const std::size_t percent = std::min(rest.find('%'), rest.size());
        message.append(rest.substr(0, percent));
        rest.remove_prefix(percent);
        if (rest.empty()) {
            break;
        }
        std::string_view behind = rest.substr(1);
        conversion asked = take_conversion(behind);
        if (asked.letter == '%') {
            message += '%';
        } else if (is_known(asked)) {
            message += render(std::move(asked), source);
        } else {
            message.append(rest.substr(0, rest.size() - behind.size()));
        }
        rest = behind;
    }
    va_end(source.list);
    message.resize(std::min(message.size(), message_limit));
    return message;
}

}  // namespace local_service
