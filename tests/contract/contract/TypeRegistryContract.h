#pragma once

#include "contract/Fixture.h"

#include "orivex/platform/ports/TypeRegistry.h"

namespace orivex::contract {

template <FileFixture Fixture>
class TypeRegistryContract : public Suite<Fixture> {
 protected:
  const TypeRegistry& registry() { return this->fixture_.platform().typeRegistry; }
};
TYPED_TEST_SUITE_P(TypeRegistryContract);

TYPED_TEST_P(TypeRegistryContract, ExtensionsInAnyCaseHaveTheirUsualType) {
  struct Row {
    const char* extension;
    const char* type;
  };
  for (const Row& row :
       {Row{"jpg", "image/jpeg"}, Row{"JPG", "image/jpeg"}, Row{"jpeg", "image/jpeg"}, Row{"Png", "image/png"},
        Row{"mp4", "video/mp4"}, Row{"pdf", "application/pdf"}, Row{"txt", "text/plain"}}) {
    EXPECT_EQ(this->registry().mimeType(row.extension), row.type) << row.extension;
  }
  EXPECT_TRUE(this->registry().mimeType("wav").value_or("").starts_with("audio/"));
  for (const char* unknown : {"", "unheard", ".jpg/", "j pg", "x/y.jpg"}) {
    EXPECT_EQ(this->registry().mimeType(unknown), std::nullopt) << unknown;
  }
}

TYPED_TEST_P(TypeRegistryContract, AFilesTypeTellsWhetherItIsAPicture) {
  struct Row {
    const char* name;
    const char* type;
    bool isImage;
  };
  for (const Row& row : {Row{"photo.jpg", "image/jpeg", true}, Row{"two.dots.PNG", "image/png", true},
                         Row{"film.mp4", "video/mp4", false}, Row{"image.pdf", "application/pdf", false}}) {
    const auto type = this->registry().typeIdentifier(this->fixture_.file(row.name));
    ASSERT_TRUE(std::holds_alternative<std::string>(type)) << row.name;
    EXPECT_EQ(std::get<std::string>(type), row.type);
    EXPECT_EQ(this->registry().conformsToImage(std::get<std::string>(type)), row.isImage) << row.name;
  }
  EXPECT_FALSE(this->registry().conformsToImage(""));
  EXPECT_FALSE(this->registry().conformsToImage("imaged/png"));
  for (const char* type : {"image/heif", "image/unheard"}) EXPECT_TRUE(this->registry().conformsToImage(type)) << type;
}

TYPED_TEST_P(TypeRegistryContract, AFileThatCannotBeReadFailsWithTheReason) {
  const auto outcome = this->registry().typeIdentifier(this->fixture_.lostFile("photo.png"));
  ASSERT_TRUE(std::holds_alternative<Failure>(outcome));
  EXPECT_FALSE(std::get<Failure>(outcome).description.empty());
}

REGISTER_TYPED_TEST_SUITE_P(TypeRegistryContract, ExtensionsInAnyCaseHaveTheirUsualType,
                            AFilesTypeTellsWhetherItIsAPicture, AFileThatCannotBeReadFailsWithTheReason);

}  // namespace orivex::contract
