// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

#include <QSettings>

#include <mutex>

namespace desktop {

/// The user's settings in a text file of the INI form under the user's configuration folder. Every
/// change is on the disk when `setObject` returns; the first time that fails one line is in the
/// log.
///
/// Texts and whole numbers are kept; other kinds change nothing. The file does not tell the two
/// apart: a text that is a whole number's decimal form reads as that number.
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
