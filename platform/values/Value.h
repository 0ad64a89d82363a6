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

/// The values in archives, notifications, settings and marks.
namespace platform {

class Archivable;
struct Array;
struct Set;
struct Dictionary;

/// An explicit null that a container may hold, unlike an absent value.
struct Null {
    friend bool operator==(const Null&, const Null&) = default;
};

using Data = std::vector<std::byte>;

/// An instant in UTC. Microseconds represent every date that archives hold in practice.
using Date = std::chrono::sys_time<std::chrono::microseconds>;

/// An address as text (RFC 3986); whoever opens one decides which schemes to trust.
struct URL {
    std::string text;

    /// The address of a file, in which all bytes of the path but the unreserved ones are
    /// percent-escaped. Empty if the text is not a path: if it is empty or contains a NUL.
    [[nodiscard]] static URL file(const std::string& path);
    /// The unescaped path of a "file:" address on this machine; empty for any other address.
    [[nodiscard]] std::string path() const;
    /// Resolves this reference against `base`; returns it unchanged if that is impossible.
    [[nodiscard]] URL relativeTo(const URL& base) const;

    friend bool operator==(const URL&, const URL&) = default;
};

struct UUID {
    std::array<std::byte, 16> bytes{};

    friend bool operator==(const UUID&, const UUID&) = default;
};

/// A boxed number that remembers whether it was a boolean, an integer or a real. Reading it as
/// another kind converts it: reals are truncated towards zero and saturate, NaN becomes 0; integers
/// lose their high bits if the requested type is narrower. As a boolean, everything but 0 and NaN
/// is true.
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
    /// Whether it is a `float` or a `double`; booleans and integers are exact.
    [[nodiscard]] bool isReal() const;
    /// An unsigned value is stored as such only if it exceeds the signed range.
    [[nodiscard]] const Storage& storage() const { return storage_; }

    friend bool operator==(const Number&, const Number&) = default;

private:
    Storage storage_;
};

/// Any value; `std::monostate` is the absent one. Containers and objects are shared by reference.
using Value = std::variant<std::monostate, Null, std::string, Number, Data, Date, URL, UUID,
                           std::shared_ptr<Array>, std::shared_ptr<Set>,
                           std::shared_ptr<Dictionary>, std::shared_ptr<Archivable>>;

/// `isMutable` says whether the owner may change a container, and so does the archived class name.
/// Nothing enforces it: check it before changing a container.
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

/// Whether it is the absent value, or a null container or object, which archives do not distinguish
/// from it.
[[nodiscard]] bool isAbsent(const Value& value);

/// Truncates towards zero; saturates at the ends of the 64-bit range; NaN gives 0.
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
