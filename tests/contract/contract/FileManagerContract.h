#pragma once

#include "contract/Fixture.h"

#include "orivex/platform/ports/FileManager.h"

namespace orivex::contract {

template <DeviceFixture Fixture>
class FileManagerContract : public Suite<Fixture> {
 protected:
  FileManager& files() { return this->fixture_.platform().fileManager; }
};
TYPED_TEST_SUITE_P(FileManagerContract);

TYPED_TEST_P(FileManagerContract, HasOneFolderForDocumentsToWhichANameCanBeAdded) {
  const auto folder = this->files().documentDirectory();
  ASSERT_TRUE(folder);
  const auto path = folder->filePath();
  ASSERT_TRUE(path);
  EXPECT_TRUE(path->starts_with('/'));
  EXPECT_FALSE(path->ends_with('/'));
  EXPECT_EQ(this->files().documentDirectory(), folder);
}

TYPED_TEST_P(FileManagerContract, RemovesOnlyFilesOfThisDevice) {
  EXPECT_TRUE(this->files().removeItem(*Url::parse("https://a.example/a.wav")));
}

REGISTER_TYPED_TEST_SUITE_P(FileManagerContract, HasOneFolderForDocumentsToWhichANameCanBeAdded,
                            RemovesOnlyFilesOfThisDevice);

}  // namespace orivex::contract
