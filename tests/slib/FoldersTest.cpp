// SPDX-License-Identifier: MIT
#include "slib/DirectoryLocations.h"
#include "slib/SuportLib.h"
#include "slib/SupportLibCat.h"
#include "tests/support/FakeHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
namespace fs = std::filesystem;

namespace {

class Folders : public testing::Test {
protected:
    void forgetSearchPaths() { fake.searchPaths.known.clear(); }

    support::FakeHost fake;
    platform::Host& host = fake.host;
    const std::string appSupport = (fake.folder / "support").string();
    const std::string documents = (fake.folder / "documents").string();
};

TEST_F(Folders, NamesAreJoinedToTheirFolders) {
    using namespace SupportLibCat;
    EXPECT_EQ(fileNameInBundle(host, "S.STNPKG"), fake.bundle.resources + "/S.STNPKG");
    EXPECT_EQ(fileNameInDocDirectory(host, "a"), documents + "/a");
    EXPECT_EQ(fileNameInAppSupport(host, "/a"), appSupport + "/a");
    EXPECT_FALSE(fs::exists(appSupport + "/a"));
    forgetSearchPaths();
    EXPECT_EQ(fileNameInDocDirectory(host, "a"), std::nullopt);
    EXPECT_EQ(fileNameInAppSupport(host, "a"), std::nullopt);
}

TEST_F(Folders, FoldersAreMadeInApplicationSupportOnly) {
    EXPECT_EQ(SupportLibCat::createOrReturnDocumentsFolder(host, "X"), appSupport + "/X");
    EXPECT_TRUE(fs::is_directory(appSupport + "/X"));
    EXPECT_FALSE(fs::exists(documents + "/X"));

    fake.folder.write("support/file", "kept");
    EXPECT_EQ(SupportLibCat::createOrReturnAppSupportFolder(host, "file"), appSupport + "/file");
    EXPECT_EQ(fake.folder.read("support/file"), "kept");
    EXPECT_EQ(SupportLibCat::createOrReturnAppSupportFolder(host, "a/b"), appSupport + "/a/b");
    EXPECT_FALSE(fs::exists(appSupport + "/a"));
}

TEST_F(Folders, TheProgramsOwnFolderIsNamedAsItsExecutable) {
    EXPECT_EQ(DirectoryLocations::applicationSupportDirectory(host), appSupport + "/nosig");
    forgetSearchPaths();
    EXPECT_EQ(DirectoryLocations::applicationSupportDirectory(host), std::nullopt);
    EXPECT_THAT(fake.log.lines(),
                ElementsAre("Unable to find or create application support directory:\n"
                            "DirectoryLocationDomain 0: No path found for directory in domain."));
}

} // namespace
