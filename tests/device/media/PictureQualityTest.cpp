#include <gtest/gtest.h>

#include "PlainJpeg.h"
#include "pictures/PictureCodec.h"
#include "support/TemporaryFolder.h"
#include "support/TestDecoder.h"

namespace orivex::gtk {
namespace {

class PictureQualityTest : public ::testing::Test {
 protected:
  std::string recode(const std::string& jpeg, double quality) {
    return std::get<JpegImage>(PictureCodec(decoder_).jpeg(folder_.write("photo.jpg", jpeg), quality)).bytes;
  }

  TemporaryFolder folder_;
  TestDecoder decoder_;
};

// The first quantisation table, for luma: its first steps tell the quality.
std::string lumaSteps(const std::string& jpeg) {
  for (const auto& marker : markersOf(jpeg)) {
    if (marker.code == 0xDB) return marker.payload.substr(1, 64);
  }
  return {};
}

TEST_F(PictureQualityTest, SamplesThatAreNotConvertedLookAsIfTheyWere) {
  const PlainJpegOptions kinds[] = {{}, {.lumaDown = 1}, {.lumaAcross = 1, .lumaDown = 1}};
  for (unsigned seed = 1; seed <= 2; ++seed) {
    for (const auto& kind : kinds) {
      const auto stored = encodePlainJpeg(naturalPhoto(800, 600, seed), kind);
      const auto original = decodePlainJpeg(stored);
      auto usual = kind;
      usual.quality = 70;
      const auto plain = decodePlainJpeg(encodePlainJpeg(original, usual));
      const auto own = decodePlainJpeg(recode(stored, 0.7));
      EXPECT_GE(psnr(own, plain), 38) << kind.lumaAcross << kind.lumaDown;
      EXPECT_GE(psnr(own, original), psnr(plain, original) - 0.2) << kind.lumaAcross << kind.lumaDown;
    }
  }
}

TEST_F(PictureQualityTest, TheQualityIsThatOfLibjpegsScaleWhateverTheFileHad) {
  for (const int storedQuality : {50, 100}) {
    const auto stored = encodePlainJpeg(quarters(64, 48), {.quality = storedQuality});
    for (const int quality : {1, 35, 70, 100}) {
      EXPECT_EQ(lumaSteps(recode(stored, quality / 100.0)),
                lumaSteps(encodePlainJpeg(quarters(64, 48), {.quality = quality})))
          << quality << " of " << storedQuality;
    }
  }
}

}  // namespace
}  // namespace orivex::gtk
