// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Value.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

class KeyedArchiver;
class KeyedUnarchiver;

/// A class's name in archives, followed by the names of its base classes, "NSObject" last.
using ClassNames = std::vector<std::string>;

/// An object that a keyed archive can hold under a class name of its own. It is read back by the
/// factory that a `ClassTable` has for that name.
class Archivable {
public:
    virtual ~Archivable() = default;

    /// The result must live as long as the program: the archiver keeps references to it.
    [[nodiscard]] virtual const ClassNames& archivedClass() const = 0;
    virtual void encodeWithCoder(KeyedArchiver& coder) const = 0;

protected:
    Archivable() = default;
    Archivable(const Archivable&) = default;
    Archivable& operator=(const Archivable&) = default;
};

/// The classes that a reader knows. No object is ever made from a class name that is not in it.
class ClassTable {
public:
    /// Makes an object from the unarchiver's current record; returns null if it cannot.
    using Factory = std::function<std::shared_ptr<Archivable>(KeyedUnarchiver&)>;

    void add(std::string name, Factory factory) {
        factories_[std::move(name)] = std::move(factory);
    }
    /// Null for a name that was not added; valid until the table changes.
    [[nodiscard]] const Factory* find(std::string_view name) const {
        const auto found = factories_.find(name);
        return found == factories_.end() ? nullptr : &found->second;
    }

private:
    std::map<std::string, Factory, std::less<>> factories_;
};

} // namespace platform
