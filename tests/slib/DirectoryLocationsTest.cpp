// SPDX-License-Identifier: MIT
#include "slib/DirectoryLocations.h"

#include "tests/support/FakeHost.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

TEST(DirectoryLocations, MakesFoldersOrSaysWhyNot) {
    using DirectoryLocations::Error;
    support::FakeHost fake;
    constexpr int kind = 7;
    const std::string base = fake.folder / "missing/base";
    fake.searchPaths.known[{kind, 1}] = {base, fake.folder / "second"};
    fake.folder.write("wall", "");
    fake.searchPaths.known[{kind, 2}] = {fake.folder / "wall"};
    std::optional<Error> error;
    const auto find = [&](int domain, const std::optional<std::string>& component) {
        return DirectoryLocations::findOrCreateDirectory_inDomain_appendPathComponent_error(
            fake.host, kind, domain, component, &error);
    };
    EXPECT_FALSE(find(3, "a"));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->description(),
              "DirectoryLocationDomain 0: No path found for directory in domain.");
    EXPECT_EQ(error->userInfo.at("NSSearchPathDirectory"), platform::Value(platform::Number(kind)));
    EXPECT_EQ(error->userInfo.at("NSSearchPathDomainMask"), platform::Value(platform::Number(3)));
    EXPECT_EQ(find(1, "a"), base + "/a");
    EXPECT_FALSE(error);
    EXPECT_TRUE(fs::is_directory(base + "/a"));
    EXPECT_FALSE(fs::exists(fake.folder / "second"));
    EXPECT_EQ(find(1, {}), base);
    EXPECT_FALSE(find(2, "a"));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->description(), "NSPOSIXErrorDomain 20: Not a directory");
}

TEST(DirectoryLocations, TheProgramsFolderBearsItsNameOrALineIsLogged) {
    support::FakeHost fake;
    const auto path = DirectoryLocations::applicationSupportDirectory(fake.host);
    EXPECT_EQ(path, (fake.folder / "support/nosig").string());
    EXPECT_TRUE(fs::is_directory(*path));
    fake.searchPaths.known.clear();
    EXPECT_FALSE(DirectoryLocations::applicationSupportDirectory(fake.host));
    EXPECT_EQ(fake.log.lines().size(), 1U);
}

} // namespace
