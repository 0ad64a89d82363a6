// SPDX-License-Identifier: MIT
#include "slib/SLIB_Prefs.h"

#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"

namespace {

constexpr const char* soundKey = "SoundOn";
constexpr const char* musicKey = "MusicOn";

bool decodedFlag(platform::KeyedUnarchiver& coder, const char* key) {
    return static_cast<std::uint8_t>(coder.decodeInt32(key)) != 0;
}

} // namespace

std::shared_ptr<SLIB_Prefs> SLIB_Prefs::init() {
    return std::shared_ptr<SLIB_Prefs>(new SLIB_Prefs);
}

std::shared_ptr<SLIB_Prefs> SLIB_Prefs::initWithCoder(platform::KeyedUnarchiver& coder) {
    return std::shared_ptr<SLIB_Prefs>(new SLIB_Prefs(coder));
}

SLIB_Prefs::SLIB_Prefs(platform::KeyedUnarchiver& coder)
    : soundOn(decodedFlag(coder, soundKey)), musicOn(decodedFlag(coder, musicKey)) {}

const platform::ClassNames& SLIB_Prefs::archivedClass() const {
    static const platform::ClassNames names{"SLIB_Prefs", "NSObject"};
    return names;
}

void SLIB_Prefs::encodeWithCoder(platform::KeyedArchiver& coder) const {
    coder.encodeInteger(soundOn ? 1 : 0, soundKey);
    coder.encodeInteger(musicOn ? 1 : 0, musicKey);
}
