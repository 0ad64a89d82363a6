// SPDX-License-Identifier: MIT
#pragma once

#include "platform/archive/Archivable.h"

#include <memory>

/// A program's sound settings, archived as the integers "SoundOn" and "MusicOn".
class SLIB_Prefs : public platform::Archivable {
public:
    [[nodiscard]] static std::shared_ptr<SLIB_Prefs> init();
    /// Reads the low 8 bits of each integer; a missing one reads as false.
    [[nodiscard]] static std::shared_ptr<SLIB_Prefs>
    initWithCoder(platform::KeyedUnarchiver& coder);

    bool soundOn = false;
    bool musicOn = false;

    [[nodiscard]] const platform::ClassNames& archivedClass() const override;
    void encodeWithCoder(platform::KeyedArchiver& coder) const override;

protected:
    SLIB_Prefs() = default;
    explicit SLIB_Prefs(platform::KeyedUnarchiver& coder);
};
