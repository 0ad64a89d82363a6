// SPDX-License-Identifier: MIT
#include "browser/FavoritesFile.h"

#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"
#include "platform/host/Files.h"
#include "slib/SupportLibCat.h"

#include <filesystem>
#include <memory>
#include <utility>
#include <variant>

namespace {

constexpr const char* fileName = "kzrfavorites.kzrfv";
constexpr const char* draftName = "kzrfavorites.draft.kzrfv";

bool write(const FavoritesFile::Identifiers& identifiers, const std::string& path) {
    auto array = std::make_shared<platform::Array>();
    array->isMutable = false;
    array->elements.assign(identifiers.begin(), identifiers.end());
    return platform::KeyedArchiver::archiveRootObject(array, path);
}

} // namespace

FavoritesFile::Identifiers FavoritesFile::load() {
    isLoaded_ = true;
    auto saved = read(path(fileName));
    auto draft = read(path(draftName));
    return draft ? std::move(*draft) : std::move(saved).value_or(Identifiers());
}

void FavoritesFile::keep(const Identifiers& identifiers) {
    const std::string draft = path(draftName);
    if (!isLoaded_) {
        return;
    }
    const bool wasKept = std::exchange(isKept_, !isBarred_ && write(identifiers, draft));
    if (wasKept && !isKept_ && !isBarred_) {
        host_.log.line(draft + " cannot be written");
    }
}

void FavoritesFile::save(const Identifiers& identifiers) {
    if (isLoaded_ && !isBarred_ && write(identifiers, path(fileName))) {
        std::error_code ignored;
        std::filesystem::remove(path(draftName), ignored);
    }
}

std::string FavoritesFile::path(const char* name) const {
    const auto program = host_.bundle.infoValue("CFBundleExecutable");
    const auto folder = SupportLibCat::createOrReturnAppSupportFolder(host_, program.value_or(""));
    return folder ? *folder + "/" + name : std::string();
}

std::optional<FavoritesFile::Identifiers> FavoritesFile::read(const std::string& path) {
    if (!platform::fileExists(path)) {
        return {};
    }
    const platform::Unarchived file = platform::KeyedUnarchiver::unarchiveFile(path, {});
    const auto* array = std::get_if<std::shared_ptr<platform::Array>>(&file.root);
    Identifiers identifiers;
    if (array && file.misreadFields == 0) {
        for (const platform::Value& element : (*array)->elements) {
            if (const auto* text = std::get_if<std::string>(&element)) {
                identifiers.push_back(*text);
            }
        }
        if (identifiers.size() == (*array)->elements.size()) {
            return identifiers;
        }
    }
    setAside(path);
    return {};
}

void FavoritesFile::setAside(const std::string& path) {
    isBarred_ |= !platform::setAside(path, host_.log);
}
