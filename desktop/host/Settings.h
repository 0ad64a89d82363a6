// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

#include <QSettings>

#include <mutex>

namespace desktop {

/// The user's settings, in an INI file in the user's configuration folder. Every change is on disk
/// when `setObject` returns; the first time that this fails, one line is logged.
///
/// Stores texts and whole numbers; a value of any other kind changes nothing. The file does not
/// tell the two apart: a text that is the decimal form of a whole number reads as that number.
class Settings final : public platform::UserDefaults {
public:
    explicit Settings(platform::Log* log);

    [[nodiscard]] QString fileName() const { return file_.fileName(); }
    [[nodiscard]] platform::Value objectForKey(std::string_view key) const override;
    /// An absent value removes the key.
    void setObject(const platform::Value& value, std::string_view key) override;

private:
    platform::Log* log_;
    mutable std::mutex mutex_;
    QSettings file_;
};

} // namespace desktop
