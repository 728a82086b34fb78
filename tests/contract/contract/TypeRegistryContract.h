#pragma once

#include <tuple>
#include <utility>

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
  for (const auto& [extension, type] : {std::pair{"jpg", "image/jpeg"},
                                        {"JPG", "image/jpeg"},
                                        {"Png", "image/png"},
                                        {"mp4", "video/mp4"},
                                        {"pdf", "application/pdf"},
                                        {"txt", "text/plain"}}) {
    EXPECT_EQ(this->registry().mimeType(extension), type) << extension;
  }
  EXPECT_TRUE(this->registry().mimeType("wav").value_or("").starts_with("audio/"));
  for (const char* unknown : {"", "unheard", ".jpg/", "j pg", "x/y.jpg"}) {
    EXPECT_EQ(this->registry().mimeType(unknown), std::nullopt) << unknown;
  }
}

TYPED_TEST_P(TypeRegistryContract, AFilesTypeTellsWhetherItIsAPicture) {
  for (const auto& [name, expected, isImage] : {std::tuple{"photo.jpg", "image/jpeg", true},
                                                {"two.dots.PNG", "image/png", true},
                                                {"film.mp4", "video/mp4", false},
                                                {"image.pdf", "application/pdf", false}}) {
    const auto type = this->registry().typeIdentifier(this->fixture_.file(name));
    ASSERT_TRUE(std::holds_alternative<std::string>(type)) << name;
    EXPECT_EQ(std::get<std::string>(type), expected);
    EXPECT_EQ(this->registry().conformsToImage(std::get<std::string>(type)), isImage) << name;
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
