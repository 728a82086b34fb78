#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "PictureFiles.h"
#include "PlainJpeg.h"
#include "pictures/PictureCodec.h"
#include "support/Processes.h"
#include "support/TemporaryFolder.h"
#include "support/TestDecoder.h"

namespace orivex::gtk {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

TEST(PictureFailure, WhatIsNoPictureIsTold) {
  const TemporaryFolder folder;
  const TestDecoder decoder;
  const auto jpeg = encodePlainJpeg(quarters(64, 48));
  const auto png = savedPicture(quarters(64, 48), "png").value();
  const auto scan = jpeg.find("\xFF\xDA");
  ASSERT_EQ(mkfifo((folder.path() / "pipe.jpg").c_str(), 0600), 0);
  const struct {
    std::filesystem::path path;
    const char* reason;
  } rows[] = {
      {folder.write("text.jpg", "Dear diary"), "image file format"},
      {folder.write("empty.jpg", ""), "empty"},
      {folder.path() / "missing.jpg", "No such file"},
      {folder.path(), "is not a file"},
      {folder.path() / "pipe.jpg", "is not a file"},
      {folder.write("start.jpg", jpeg.substr(0, 3)), "JPEG"},
      {folder.write("header.jpg", jpeg.substr(0, scan)), "JPEG"},
      {folder.write("nothing.jpg", jpeg.substr(0, scan + 16)), "Premature end"},
      {folder.write("junk.jpg", jpeg.substr(0, 20) + std::string(500, 'x')), "cannot be shown"},
      {folder.write("header.png", png.substr(0, png.find("IDAT") + 6)), "not a picture"},
      {folder.write("bomb.jpg", withClaimedSize(jpeg, 65000, 65000)), "too large"},
      {folder.write("turned.jpg",
                    withClaimedSize(
                        encodePlainJpeg(quarters(64, 48), {.lumaAcross = 1, .lumaDown = 1, .markers = {exifMarker(6)}}),
                        14000, 14000)),
       "too large"},
      {folder.write("bomb.ppm", "P6\n60000 60000\n255\n" + std::string(4096, 'x')), "too large"},
  };
  for (const auto& row : rows) {
    const auto result = PictureCodec(decoder).jpeg(row.path, 0.7);
    const auto* const failure = std::get_if<Failure>(&result);
    ASSERT_TRUE(failure) << row.path;
    EXPECT_THAT(failure->description, HasSubstr(row.reason));
    EXPECT_THAT(failure->description, HasSubstr(row.path.string()));
    EXPECT_THAT(failure->description, Not(HasSubstr("\n")));
  }
}

TEST(PictureFailure, OfAFileThatWasCutOffThePartThatIsThereIsShown) {
  const TemporaryFolder folder;
  const TestDecoder decoder;
  for (const bool progressive : {false, true}) {
    const auto photo = naturalPhoto(640, 480, 3);
    const auto whole = encodePlainJpeg(photo, {.progressive = progressive});
    const auto path = folder.write("cut.jpg", whole.substr(0, whole.size() * 7 / 10));
    const auto result = PictureCodec(decoder).jpeg(path, 0.7);
    ASSERT_TRUE(std::holds_alternative<JpegImage>(result)) << progressive;
    auto shown = decodePlainJpeg(std::get<JpegImage>(result).bytes);
    ASSERT_EQ(shown.height, 480U);
    auto original = photo;
    for (auto* image : {&shown, &original}) {
      image->height = 240;
      image->samples.resize(std::size_t{640} * 240 * 3);
    }
    EXPECT_GT(psnr(shown, original), 24) << progressive;
  }
}

TEST(PictureFailure, ALargeTurnedPictureTakesLessMemoryThanItsPixels) {
  constexpr unsigned side = 6000;
  [[maybe_unused]] constexpr long pixelsKiB = long{side} * side * 3 / 1024;
  const TemporaryFolder folder;
  const auto path = folder.write("large.jpg", encodePlainJpeg(quarters(side, side), {.markers = {exifMarker(6)}}));
  const TestDecoder decoder;
  const auto result = PictureCodec(decoder).jpeg(path, 0.7);
  ASSERT_TRUE(std::holds_alternative<JpegImage>(result));
  EXPECT_EQ(std::get<JpegImage>(result).size, (Size{side, side}));
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
  EXPECT_LT(std::stol(figureOf(decoderProcesses().at(0), "VmHWM:\t")), pixelsKiB + 32L * 1024);
#endif
}

}  // namespace
}  // namespace orivex::gtk
