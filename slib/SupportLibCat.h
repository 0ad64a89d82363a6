// SPDX-License-Identifier: MIT
#pragma once

#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"
#include "platform/host/Host.h"
#include "platform/views/Drawing.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Helpers that any object may use: panels, file names, short texts, hex, small integers in
/// archives. All run on the caller's thread, the panels on the main thread only.
namespace SupportLibCat {

/// A range of text or elements, in units that its user defines.
struct Range {
    std::uint64_t location = 0;
    std::uint64_t length = 0;
};

/// Lets the user choose a file of one of the types (extensions without dots); absent if cancelled.
[[nodiscard]] std::optional<platform::URL>
simpleGetFile_ofThese(platform::Host& host, const std::vector<std::string>& types);
/// Lets the user choose a file to write, with no type forced and no name proposed; absent if
/// cancelled. A caller that alters the chosen path says with `writtenPath` what it will write, so
/// that the user is asked about that file.
[[nodiscard]] std::optional<platform::URL>
getAPuttingURL(platform::Host& host,
               const std::function<std::string(const std::string&)>& writtenPath = {});
/// Kept: other programs call it. Always absent.
[[nodiscard]] std::optional<platform::URL> urlToFileTracker(const platform::Value& url);

/// A colour and a bold font of the given size in points.
[[nodiscard]] platform::TextAttributes
slibStandardTextAttributes_andSize(const platform::Color& color, double size);

/// Paths in the resource folder, the documents folder and the application support folder of the
/// user. Nothing is created or looked up; absent if the host has no such folder.
[[nodiscard]] std::string fileNameInBundle(platform::Host& host, std::string_view name);
/// Without a name, the documents folder itself.
[[nodiscard]] std::optional<std::string>
fileNameInDocDirectory(platform::Host& host, const std::optional<std::string>& name);
[[nodiscard]] std::optional<std::string> fileNameInAppSupport(platform::Host& host,
                                                              std::string_view name);
/// The path of a folder in application support, created if nothing is there. Its parent is never
/// created. The path is returned even if creating the folder fails; absent if the host has no
/// application support folder.
std::optional<std::string> createOrReturnAppSupportFolder(platform::Host& host,
                                                          std::string_view name);
/// Kept: other programs find their files there. The same folder, in application support rather than
/// documents.
std::optional<std::string> createOrReturnDocumentsFolder(platform::Host& host,
                                                         std::string_view name);

/// In decimal digits.
[[nodiscard]] std::string numToNSString(std::int32_t number);
/// The first `maximum` UTF-16 units of a text, or more if a user-perceived character would be cut;
/// followed by "..." if `ellipsis` is set and the text is longer than the maximum.
[[nodiscard]] std::string slibReturnTrucatedNSString_maxLen_withElip(std::string_view text,
                                                                     std::int64_t maximum,
                                                                     bool ellipsis);
/// Kept: other programs call it. Always absent.
[[nodiscard]] std::optional<std::string> stripAlphaCharsFromString(std::string_view text);
/// Logs one line, with the number directly after the text.
void slibLogAStringAndNum_num(platform::Host& host, std::string_view text, std::int32_t number);
/// Kept: other programs call it. Always a new, empty dictionary, whatever the file.
[[nodiscard]] std::shared_ptr<platform::Dictionary>
slibNSStringsFromFile(const platform::Value& file);

/// The byte that the hex digits `2 * index` and `2 * index + 1` of a text spell. A character that
/// is missing or no digit counts as "0"; an index that is negative, or not below the number of
/// characters, gives 0.
[[nodiscard]] std::int8_t slibhexByteFromString_atIndex(std::string_view text, std::int64_t index);
/// The bytes of all pairs of digits, half as many as the text has UTF-16 units; an odd last digit
/// is ignored. The count is the size of the result.
[[nodiscard]] platform::Data slibextractAllHexBytes_count(std::string_view text);
/// The first `length` bytes in lower-case hex digits.
/// Kept: other programs have stored such texts. Digits have no leading zeros, so that 0x0A gives
/// "a"; the first byte is written even for a length below 1. Missing bytes are not written.
[[nodiscard]] std::string makeStringOfHexValues_ofLength(std::span<const std::byte> bytes,
                                                         std::int64_t length);

/// Small integers without a key; they are read back in the order of writing. A stored value that is
/// too wide loses its high bits.
void encodeSInt16_value(platform::KeyedArchiver& coder, std::int16_t value);
[[nodiscard]] std::int16_t decodeSInt16(platform::KeyedUnarchiver& coder);
void encodeSInt32_value(platform::KeyedArchiver& coder, std::int32_t value);
[[nodiscard]] std::int32_t decodeSInt32(platform::KeyedUnarchiver& coder);
/// A small integer as two bytes, low byte first; reads as 0 if fewer are stored.
void encodeSInt16_value_forKey(platform::KeyedArchiver& coder, std::int16_t value,
                               std::string_view key);
[[nodiscard]] std::int16_t decodeSInt16_forKey(platform::KeyedUnarchiver& coder,
                                               std::string_view key);
/// Kept: archives of other programs lack the key. Writes nothing.
void encodeNSRange_value_forKey(platform::KeyedArchiver& coder, const Range& range,
                                std::string_view key);

/// Posts on the host's notification centre.
void slibPostNotification_object_withInfo(platform::Host& host, std::string name,
                                          platform::Value object,
                                          std::shared_ptr<const platform::Dictionary> info);

/// Kept: other programs call it. Nothing is ever encrypted or decrypted; always null.
[[nodiscard]] std::shared_ptr<const platform::Data>
slibEncryptData_secKey(const platform::Data& data, const platform::Data& key);
[[nodiscard]] std::shared_ptr<const platform::Data>
slibDecryptData_secKey(const platform::Data& data, const platform::Data& key);

} // namespace SupportLibCat
