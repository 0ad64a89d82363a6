// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

/// The values that cross the program's borders: archives, notifications, settings and marks.
namespace platform {

class Archivable;
struct Array;
struct Set;
struct Dictionary;

/// The explicit "nothing" that may stand in a container, unlike an absent value.
struct Null {
    friend bool operator==(const Null&, const Null&) = default;
};

using Data = std::vector<std::byte>;

/// An instant, UTC. Microseconds keep every date that archives hold in practice.
using Date = std::chrono::sys_time<std::chrono::microseconds>;

/// An address as text (RFC 3986); whoever opens one decides which schemes it trusts.
struct URL {
    std::string text;

    /// The address of a file; the path's bytes beyond the unreserved ones are percent-escaped.
    /// Empty for text that is no path: the empty one, and one with a NUL.
    [[nodiscard]] static URL file(const std::string& path);
    /// The path of a "file:" address on this machine, unescaped; empty for any other.
    [[nodiscard]] std::string path() const;
    /// What this reference means within `base`; itself where that cannot be told.
    [[nodiscard]] URL relativeTo(const URL& base) const;

    friend bool operator==(const URL&, const URL&) = default;
};

struct UUID {
    std::array<std::byte, 16> bytes{};

    friend bool operator==(const UUID&, const UUID&) = default;
};

/// A boxed number that remembers whether it was a boolean, an integer or a real. Reading it as
/// another kind converts: reals are cut toward zero and saturate, NaN reads as 0; integers lose
/// their high bits where the asked-for width is smaller. As a boolean all but 0 and NaN is true.
class Number {
public:
    using Storage = std::variant<bool, std::int64_t, std::uint64_t, float, double>;

    explicit Number(bool value) : storage_(value) {}
    explicit Number(std::int32_t value) : storage_(std::int64_t{value}) {}
    explicit Number(std::int64_t value) : storage_(value) {}
    explicit Number(std::uint64_t value);
    explicit Number(float value) : storage_(value) {}
    explicit Number(double value) : storage_(value) {}

    [[nodiscard]] bool boolValue() const;
    [[nodiscard]] std::int64_t integerValue() const;
    [[nodiscard]] std::uint64_t unsignedValue() const;
    [[nodiscard]] double doubleValue() const;
    /// Booleans and integers are exact; "real" tells the kinds that are not.
    [[nodiscard]] bool isReal() const;
    /// An unsigned value is stored as such only when it exceeds the signed range.
    [[nodiscard]] const Storage& storage() const { return storage_; }

    friend bool operator==(const Number&, const Number&) = default;

private:
    Storage storage_;
};

/// Any value; `std::monostate` is the absent one. Containers and objects are shared by reference.
using Value = std::variant<std::monostate, Null, std::string, Number, Data, Date, URL, UUID,
                           std::shared_ptr<Array>, std::shared_ptr<Set>,
                           std::shared_ptr<Dictionary>, std::shared_ptr<Archivable>>;

/// Whether the owner may change a container; its archived class name tells it too. Nothing here
/// enforces it: whoever changes a container asks first.
struct Array {
    bool isMutable = true;
    std::vector<Value> elements;
};

struct Set {
    bool isMutable = true;
    std::vector<Value> elements;
};

struct Dictionary {
    bool isMutable = true;
    std::map<std::string, Value, std::less<>> entries;
};

/// Whether it is the absent value, or a null container or object, which archives do not tell from
/// it.
[[nodiscard]] bool isAbsent(const Value& value);

/// Truncates toward zero; saturates at the ends of the 64-bit range; NaN gives 0.
[[nodiscard]] std::int64_t wholeNumber(double value);
/// The same for the 32-bit range.
[[nodiscard]] std::int32_t wholeNumber32(double value);

/// A setting read as an integer: a number, or text that begins with one; anything else is 0.
[[nodiscard]] std::int64_t integerOf(const Value& value);

/// The object of class T in `value`, or null when it is absent or something else.
template <typename T>
[[nodiscard]] std::shared_ptr<T> objectOf(const Value& value) {
    const auto* object = std::get_if<std::shared_ptr<Archivable>>(&value);
    return object ? std::dynamic_pointer_cast<T>(*object) : nullptr;
}

} // namespace platform
