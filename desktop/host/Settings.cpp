// SPDX-License-Identifier: MIT
#include "desktop/host/Settings.h"

#include "desktop/text/Text.h"

#include <utility>

namespace desktop {

Settings::Settings(platform::Log* log)
    : log_(log),
      file_(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("nosig"),
            QStringLiteral("nosig")) {
    file_.setFallbacksEnabled(false);
}

platform::Value Settings::objectForKey(std::string_view key) const {
    const std::scoped_lock lock(mutex_);
    const QVariant stored = file_.value(exactText(key));
    if (!stored.isValid()) {
        return {};
    }
    const QString text = stored.toString();
    bool isNumber = false;
    const std::int64_t number = text.toLongLong(&isNumber);
    if (isNumber && QString::number(number) == text) {
        return platform::Number(number);
    }
    return text.toStdString();
}

void Settings::setObject(const platform::Value& value, std::string_view key) {
    const std::scoped_lock lock(mutex_);
    const QString name = exactText(key);
    if (const auto* text = std::get_if<std::string>(&value)) {
        file_.setValue(name, exactText(*text));
    } else if (const auto* number = std::get_if<platform::Number>(&value);
               number && !number->isReal()) {
        file_.setValue(name, qlonglong{number->integerValue()});
    } else if (std::holds_alternative<std::monostate>(value)) {
        file_.remove(name);
    } else {
        return;
    }
    file_.sync();
    if (file_.status() != QSettings::NoError && log_ != nullptr) {
        std::exchange(log_, nullptr)
            ->line("Settings cannot be written to " + file_.fileName().toStdString());
    }
}

} // namespace desktop
