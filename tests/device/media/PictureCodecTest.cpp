#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "PictureFiles.h"
#include "PlainJpeg.h"
#include "glib/GMemory.h"
#include "pictures/PictureCodec.h"
#include "support/Processes.h"
#include "support/TemporaryFolder.h"
#include "support/TestDecoder.h"

namespace orivex::gtk {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

constexpr RgbColor red{255, 0, 0};
constexpr RgbColor green{0, 255, 0};
constexpr RgbColor blue{0, 0, 255};
constexpr RgbColor white{255, 255, 255};

class PictureCodecTest : public ::testing::Test {
 protected:
  JpegImage jpeg(const std::string& contents, double quality = 0.7) {
    auto result = codec_.jpeg(folder_.write("picture", contents), quality);
    if (const auto* const failure = std::get_if<Failure>(&result)) {
      ADD_FAILURE() << failure->description;
      return {encodePlainJpeg(quarters(1, 1)), {}};
    }
    return std::get<JpegImage>(std::move(result));
  }

  TemporaryFolder folder_;
  TestDecoder decoder_;
  PictureCodec codec_{decoder_};
};

// What is seen near the four corners, by rows.
std::array<RgbColor, 4> cornersOf(const RgbImage& image) {
  constexpr unsigned inside = 5;
  const unsigned right = image.width - 1 - inside;
  const unsigned bottom = image.height - 1 - inside;
  return {image.at(inside, inside), image.at(right, inside), image.at(inside, bottom), image.at(right, bottom)};
}

// The first quantisation table, for luma: its first steps tell the quality.
std::string lumaSteps(const std::string& jpeg) {
  for (const auto& marker : markersOf(jpeg)) {
    if (marker.code == 0xDB) return marker.payload.substr(1, 64);
  }
  return {};
}

TEST_F(PictureCodecTest, IsUprightWhicheverWayTheCameraWasHeld) {
  const struct {
    int orientation;
    std::array<RgbColor, 4> corners;
    bool sideways;
  } rows[] = {
      {1, {red, green, blue, white}, false}, {2, {green, red, white, blue}, false},
      {3, {white, blue, green, red}, false}, {4, {blue, white, red, green}, false},
      {5, {red, blue, green, white}, true},  {6, {blue, red, white, green}, true},
      {7, {white, green, blue, red}, true},  {8, {green, white, red, blue}, true},
      {0, {red, green, blue, white}, false}, {9, {red, green, blue, white}, false},
  };
  const PlainJpegOptions kinds[] = {
      {}, {.lumaDown = 1}, {.lumaAcross = 1, .lumaDown = 1}, {.progressive = true}, {.colors = JCS_RGB}};
  for (const auto& row : rows) {
    for (auto kind : kinds) {
      for (const auto& [width, height] : {std::pair(96U, 64U), std::pair(97U, 61U)}) {
        kind.markers = {exifMarker(row.orientation, width % 2 == 0)};
        const auto image = jpeg(encodePlainJpeg(quarters(width, height), kind));
        const auto seen = decodePlainJpeg(image.bytes);
        SCOPED_TRACE(::testing::Message() << "orientation " << row.orientation << ", " << width << " wide, sampling "
                                          << kind.lumaAcross << kind.lumaDown);
        EXPECT_EQ(image.size,
                  (row.sideways ? Size{double(height), double(width)} : Size{double(width), double(height)}));
        EXPECT_EQ(seen.width, image.size.width);
        EXPECT_EQ(seen.height, image.size.height);
        for (std::size_t corner = 0; corner < 4; ++corner) {
          EXPECT_TRUE(isNear(cornersOf(seen)[corner], row.corners[corner], 40)) << "corner " << corner;
        }
      }
    }
  }
}

TEST_F(PictureCodecTest, TakesEveryKindOfPicture) {
  const auto image = quarters(64, 48);
  const std::array<RgbColor, 4> plain{red, green, blue, white};
  const std::array<RgbColor, 4> faded{{{255, 128, 128}, {128, 255, 128}, {128, 128, 255}, white}};
  const std::array<RgbColor, 4> greys{{{76, 76, 76}, {150, 150, 150}, {29, 29, 29}, white}};
  const struct {
    const char* name;
    std::optional<std::string> contents;
    std::array<RgbColor, 4> corners;
  } rows[] = {
      {"png", savedPicture(image, "png"), plain},
      {"half transparent png", savedPicture(image, "png", 127), faded},
      {"transparent png", savedPicture(image, "png", 0), {white, white, white, white}},
      {"bmp", savedPicture(image, "bmp"), plain},
      {"tiff", savedPicture(image, "tiff"), plain},
      {"webp", savedPicture(image, "webp"), plain},
      {"avif", savedPicture(image, "avif"), plain},
      {"grey jpeg", encodePlainJpeg(image, {.colors = JCS_GRAYSCALE}), greys},
      {"rgb jpeg", encodePlainJpeg(image, {.colors = JCS_RGB}), plain},
      {"cmyk jpeg", encodePlainJpeg(image, {.colors = JCS_CMYK}), plain},
      {"ycck jpeg", encodePlainJpeg(image, {.colors = JCS_YCCK}), plain},
      {"progressive jpeg", encodePlainJpeg(image, {.progressive = true}), plain},
  };
  for (const auto& row : rows) {
    if (!row.contents) continue;  // no loader of this kind on this machine
    for (const double quality : {0.7, 1.0}) {
      const auto result = jpeg(*row.contents, quality);
      EXPECT_EQ(result.size, (Size{64, 48})) << row.name;
      const auto corners = cornersOf(decodePlainJpeg(result.bytes));
      for (std::size_t corner = 0; corner < 4; ++corner) {
        EXPECT_TRUE(isNear(corners[corner], row.corners[corner], 30))
            << row.name << ", corner " << corner << ": " << ::testing::PrintToString(corners[corner]);
      }
    }
  }
}

TEST_F(PictureCodecTest, ShowsTheFirstFrameOfAMovingPicture) {
  EXPECT_TRUE(isNear(decodePlainJpeg(jpeg(movingGif()).bytes).at(0, 0), red, 10));
}

TEST_F(PictureCodecTest, TellsNothingOfTheOwner) {
  const auto profile = colorProfileWithSecrets();
  const auto wrapped = std::string("ICC_PROFILE\0\x01\x01", 14) + profile;
  const PlainJpegOptions options{.markers = {exifMarker(1),
                                             {0xE1, std::string("http://ns.adobe.com/xap/1.0/\0<SECRET/>", 38)},
                                             {0xE2, wrapped},
                                             {0xE2, std::string("MPF\0SECRET", 10)},
                                             {0xED, "Photoshop 3.0 SECRET"},
                                             {0xFE, "SECRET"}}};
  const GCharPtr profileText(g_base64_encode(reinterpret_cast<const guchar*>(profile.data()), profile.size()));
  auto inkOptions = options;
  inkOptions.colors = JCS_YCCK;
  const struct {
    const char* name;
    std::string contents;
    bool keepsColors;
  } rows[] = {
      {"jpeg", encodePlainJpeg(quarters(64, 48), options) + "SECRET", true},
      {"ycck jpeg", encodePlainJpeg(quarters(64, 48), inkOptions), false},
      {"tiff", *savedPicture(quarters(64, 48), "tiff", 255, {{"icc-profile", profileText.get()}}), true},
      {"png", *savedPicture(quarters(64, 48), "png", 255, {{"tEXt::SECRET", "here"}}), false},
  };
  for (const auto& row : rows) {
    ASSERT_THAT(row.contents, HasSubstr("SECRET")) << row.name;
    const auto result = jpeg(row.contents).bytes;
    EXPECT_THAT(result, Not(HasSubstr("SECR"))) << row.name;
    bool hasProfile = false;
    for (const auto& marker : markersOf(result)) {
      if (marker.code < 0xE0) continue;  // tables and the frame
      hasProfile = hasProfile || marker.code == 0xE2;
      EXPECT_TRUE(marker.code == 0xE0 || marker.code == 0xE2) << row.name << ": marker " << marker.code;
      if (marker.code == 0xE2) {
        EXPECT_THAT(marker.payload, HasSubstr("rXYZ"));
      }
    }
    EXPECT_EQ(hasProfile, row.keepsColors) << row.name;
  }
}

TEST_F(PictureCodecTest, SamplesThatAreNotConvertedLookAsIfTheyWere) {
  const PlainJpegOptions kinds[] = {{}, {.lumaDown = 1}, {.lumaAcross = 1, .lumaDown = 1}};
  for (unsigned seed = 1; seed <= 2; ++seed) {
    for (const auto& kind : kinds) {
      const auto stored = encodePlainJpeg(wavyPicture(800, 600, seed), kind);
      const auto original = decodePlainJpeg(stored);
      auto usual = kind;
      usual.quality = 70;
      const auto plain = decodePlainJpeg(encodePlainJpeg(original, usual));
      const auto own = decodePlainJpeg(jpeg(stored).bytes);
      EXPECT_GE(psnr(own, plain), 38) << kind.lumaAcross << kind.lumaDown;
      EXPECT_GE(psnr(own, original), psnr(plain, original) - 0.2) << kind.lumaAcross << kind.lumaDown;
    }
  }
}

TEST_F(PictureCodecTest, TheQualityIsThatOfLibjpegsScaleWhateverTheFileHad) {
  for (const int storedQuality : {50, 100}) {
    const auto stored = encodePlainJpeg(quarters(64, 48), {.quality = storedQuality});
    for (const int quality : {1, 35, 70, 100}) {
      EXPECT_EQ(lumaSteps(jpeg(stored, quality / 100.0).bytes),
                lumaSteps(encodePlainJpeg(quarters(64, 48), {.quality = quality})))
          << quality << " of " << storedQuality;
    }
  }
}

TEST_F(PictureCodecTest, WhatIsNoPictureIsTold) {
  const auto jpeg = encodePlainJpeg(quarters(64, 48));
  const auto png = savedPicture(quarters(64, 48), "png").value();
  const auto scan = jpeg.find("\xFF\xDA");
  ASSERT_EQ(mkfifo((folder_.path() / "pipe.jpg").c_str(), 0600), 0);
  const struct {
    std::filesystem::path path;
    const char* reason;
  } rows[] = {
      {folder_.write("text.jpg", "Dear diary"), "image file format"},
      {folder_.write("empty.jpg", ""), "empty"},
      {folder_.path() / "missing.jpg", "No such file"},
      {folder_.path(), "is not a file"},
      {folder_.path() / "pipe.jpg", "is not a file"},
      {folder_.write("start.jpg", jpeg.substr(0, 3)), "JPEG"},
      {folder_.write("header.jpg", jpeg.substr(0, scan)), "JPEG"},
      {folder_.write("nothing.jpg", jpeg.substr(0, scan + 16)), "Premature end"},
      {folder_.write("junk.jpg", jpeg.substr(0, 20) + std::string(500, 'x')), "cannot be shown"},
      {folder_.write("header.png", png.substr(0, png.find("IDAT") + 6)), "not a picture"},
      {folder_.write("bomb.jpg", withClaimedSize(jpeg, 65000, 65000)), "too large"},
      {folder_.write("turned.jpg",
                     withClaimedSize(encodePlainJpeg(quarters(64, 48),
                                                     {.lumaAcross = 1, .lumaDown = 1, .markers = {exifMarker(6)}}),
                                     14000, 14000)),
       "too large"},
      {folder_.write("bomb.ppm", "P6\n60000 60000\n255\n" + std::string(4096, 'x')), "too large"},
  };
  for (const auto& row : rows) {
    const auto result = codec_.jpeg(row.path, 0.7);
    const auto* const failure = std::get_if<Failure>(&result);
    ASSERT_TRUE(failure) << row.path;
    EXPECT_THAT(failure->description, HasSubstr(row.reason));
    EXPECT_THAT(failure->description, HasSubstr(row.path.string()));
    EXPECT_THAT(failure->description, Not(HasSubstr("\n")));
  }
}

TEST_F(PictureCodecTest, ALargeTurnedPictureTakesLessMemoryThanItsPixels) {
  constexpr unsigned side = 6000;
  [[maybe_unused]] constexpr long pixelsKiB = long{side} * side * 3 / 1024;
  EXPECT_EQ(jpeg(encodePlainJpeg(quarters(side, side), {.markers = {exifMarker(6)}})).size, (Size{side, side}));
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
  EXPECT_LT(std::stol(figureOf(decoderProcesses().at(0), "VmHWM:\t")), pixelsKiB + 32L * 1024);
#endif
}

}  // namespace
}  // namespace orivex::gtk
