// SPDX-License-Identifier: MIT
#include "slib/SupportLibCat.h"

#include "platform/host/Files.h"

#include <fmt/format.h>

#include <utility>

namespace SupportLibCat {
namespace {

std::optional<std::string> userFolder(const platform::Host& host, int kind) {
    const auto paths = host.searchPaths.paths(kind, platform::SearchPaths::userDomain);
    return paths.empty() ? std::nullopt : std::optional(paths.front());
}

} // namespace

std::optional<platform::URL> simpleGetFile_ofThese(platform::Host& host,
                                                   const std::vector<std::string>& types) {
    return host.panels.openPanel(types);
}

std::optional<platform::URL>
getAPuttingURL(platform::Host& host,
               const std::function<std::string(const std::string&)>& writtenPath) {
    return host.panels.savePanel(writtenPath);
}

std::optional<platform::URL> urlToFileTracker(const platform::Value&) {
    return std::nullopt;
}

platform::TextAttributes slibStandardTextAttributes_andSize(const platform::Color& color,
                                                            double size) {
    return {platform::Font{"Lucida Grande", platform::Font::bold, 9, size}, color};
}

std::string fileNameInBundle(platform::Host& host, std::string_view name) {
    auto own = host.bundle.replacementOf(name);
    return own ? std::move(*own) : platform::joinedPath(host.bundle.resourcePath(), name);
}

std::optional<std::string> fileNameInDocDirectory(platform::Host& host,
                                                  const std::optional<std::string>& name) {
    auto path = userFolder(host, platform::SearchPaths::documents);
    return path && name ? platform::joinedPath(*path, *name) : path;
}

std::optional<std::string> fileNameInAppSupport(platform::Host& host, std::string_view name) {
    auto path = userFolder(host, platform::SearchPaths::applicationSupport);
    return path ? platform::joinedPath(*path, name) : path;
}

std::optional<std::string> createOrReturnAppSupportFolder(platform::Host& host,
                                                          std::string_view name) {
    auto path = fileNameInAppSupport(host, name);
    if (path && !platform::fileExists(*path)) {
        platform::createDirectory(*path, false);
    }
    return path;
}

std::optional<std::string> createOrReturnDocumentsFolder(platform::Host& host,
                                                         std::string_view name) {
    return createOrReturnAppSupportFolder(host, name);
}

void slibLogAStringAndNum_num(platform::Host& host, std::string_view text, std::int32_t number) {
    host.log.line(fmt::format("{}{}", text, number));
}

std::shared_ptr<platform::Dictionary> slibNSStringsFromFile(const platform::Value&) {
    return std::make_shared<platform::Dictionary>();
}

void slibPostNotification_object_withInfo(platform::Host& host, std::string name,
                                          platform::Value object,
                                          std::shared_ptr<const platform::Dictionary> info) {
    host.notificationCenter.post({std::move(name), std::move(object), std::move(info)});
}

std::shared_ptr<const platform::Data> slibEncryptData_secKey(const platform::Data&,
                                                             const platform::Data&) {
    return nullptr;
}

std::shared_ptr<const platform::Data> slibDecryptData_secKey(const platform::Data&,
                                                             const platform::Data&) {
    return nullptr;
}

} // namespace SupportLibCat
