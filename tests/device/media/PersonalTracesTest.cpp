#include <gtest/gtest.h>

#include "PersonalTraces.h"
#include "PictureFiles.h"
#include "PlainJpeg.h"
#include "support/TemporaryFolder.h"
#include "support/TestDecoder.h"
#include "support/VideoFiles.h"

namespace orivex::gtk {
namespace {

using namespace std::string_literals;

std::string number(std::size_t value, int bytes) {
  std::string text;
  while (bytes-- > 0) text.push_back(static_cast<char>(value >> (8 * bytes) & 0xFFU));
  return text;
}

std::string box(const std::string& type, const std::string& content) {
  return number(content.size() + 8, 4) + type + content;
}

// An item of a picture, with a number of two bytes or, where it `isLong`, of four.
std::string itemBox(std::size_t id, const std::string& type, bool isLong) {
  return box("infe", number(isLong ? 0x03000000 : 0x02000000, 4) + number(id, isLong ? 4 : 2) + number(0, 2) + type +
                         std::string(1, '\0'));
}

const std::string exifItem = "Exif\0\0SECRET"s;

// Its data lie behind all else, at `place`.
std::string heif(std::size_t place) {
  const auto located =
      box("iloc", number(0, 4) + number(0x44, 1) + number(0, 1) + number(2, 2) +  //
                      number(1, 2) + number(0, 2) + number(1, 2) + number(place, 4) + number(7, 4) + number(2, 2) +
                      number(0, 2) + number(1, 2) + number(place + 7, 4) + number(exifItem.size(), 4));
  return box("ftyp", "heic\0\0\0\0"s) +
         box("meta",
             number(0, 4) +
                 box("iinf", number(0, 4) + number(2, 2) + itemBox(1, "hvc1", false) + itemBox(2, "Exif", false)) +
                 located) +
         box("mdat", "PICTURE" + exifItem);
}

// Its data lie inside of the box that describes them, with indices and long numbers.
std::string heifOfOneBox() {
  const auto located = box("iloc", number(0x02000000, 4) + number(0x4404, 2) + number(2, 4) +  //
                                       number(1, 4) + number(1, 2) + number(0, 2) + number(1, 2) + number(0, 4) +
                                       number(0, 4) + number(7, 4) +  //
                                       number(2, 4) + number(1, 2) + number(0, 2) + number(1, 2) + number(0, 4) +
                                       number(7, 4) + number(exifItem.size(), 4));
  return box("ftyp", "mif1\0\0\0\0"s) +
         box("meta", number(0, 4) +
                         box("iinf", number(0x01000000, 4) + number(2, 4) + itemBox(1, "hvc1", true) +
                                         itemBox(2, "mime", true)) +
                         box("idat", "PICTURE" + exifItem) + located);
}

std::string riffChunk(const std::string& type, const std::string& content) {
  const std::string length{static_cast<char>(content.size()), 0, 0, 0};
  return type + length + content + std::string(content.size() % 2, '\0');
}

class PersonalTracesTest : public ::testing::Test {
 protected:
  // What is sent of a file.
  std::string sent(const std::string& name, const std::string& contents) {
    auto bytes = contents;
    for (const auto& change : personalTraces(folder_.write(name, contents))) {
      auto stretch = change.bytes;
      stretch.resize(static_cast<std::size_t>(change.length));
      bytes.replace(static_cast<std::size_t>(change.at), stretch.size(), stretch);
    }
    EXPECT_EQ(bytes.size(), contents.size()) << name;
    EXPECT_NE(contents.find("SECRET"), std::string::npos) << name << " has nothing to hide";
    EXPECT_EQ(bytes.find("SECRET"), std::string::npos) << name;
    return bytes;
  }
  std::string decoded(const std::string& contents) {
    const auto result =
        decoder_.decode({.kind = Decoding::picture, .width = 64, .height = 64}, folder_.write("sent", contents));
    if (const auto* failure = std::get_if<Failure>(&result)) return failure->description;
    return std::get<Decoded>(result).bytes;
  }

  const TemporaryFolder folder_;
  const TestDecoder decoder_;
};

TEST_F(PersonalTracesTest, APictureIsSentAsItLooksWithoutWhatItTells) {
  const auto jpeg = [](bool progressive) {
    return encodePlainJpeg(quarters(64, 48), {.progressive = progressive,
                                              .markers = {exifMarker(6, progressive),
                                                          {0xE1, "http://ns.adobe.com/xap/1.0/\0SECRET"s},
                                                          {0xED, "Photoshop 3.0\0SECRET"s},
                                                          {0xE2, "MPF\0SECRET"s},
                                                          {0xFE, "SECRET"}}}) +
           "a film with a SECRET of its own";
  };
  for (const auto& [name, contents] :
       {std::pair{"baseline.jpg", jpeg(false)}, std::pair{"progressive.jpg", jpeg(true)},
        std::pair{"a.png", *savedPicture(quarters(64, 48), "png", 255, {{"tEXt::Comment", "SECRET"}})}}) {
    EXPECT_EQ(decoded(sent(name, contents)), decoded(contents)) << name;
  }
  const auto upright = decoded(encodePlainJpeg(quarters(64, 48)));
  EXPECT_NE(decoded(sent("turned.jpg", jpeg(false))), upright) << "it lies on its side";
}

TEST_F(PersonalTracesTest, AFilmIsSentWithoutItsPlace) {
  const auto path = folder_.path() / "film";
  for (const std::string muxer : {"qtmux", "mp4mux"}) {
    writeMedia(path,
               "videotestsrc num-buffers=5 ! videoconvert ! x264enc ! taginject tags=\"title=SECRET\" ! " + muxer);
    folder_.write("sent", sent(muxer, contentsOf(path)));
    const auto video = decoder_.decode({.kind = Decoding::video, .quality = 0.7}, folder_.path() / "sent");
    EXPECT_TRUE(std::holds_alternative<Decoded>(video)) << muxer;
  }
}

TEST_F(PersonalTracesTest, KindsThatNobodyHereWritesLoseNothingElse) {
  const auto placeOfData = heif(0).find("PICTURE");
  const auto webp =
      riffChunk("RIFF", "WEBP" + riffChunk("VP8X", "\x2c\0\0\0\0\0\0\0\0\0"s) + riffChunk("VP8 ", "PICTURE") +
                            riffChunk("EXIF", exifItem) + riffChunk("XMP ", "SECRET"));
  const auto mp4 = box("ftyp", "isom\0\0\0\0"s) +
                   box("moov", box("mvhd", "PICTURE") + box("trak", box("tkhd", "") + box("meta", "SECRET")) +
                                   box("udta", box("\xa9xyz", "SECRET") + box("loci", "SECRET"))) +
                   number(1, 4) + "uuid" + number(22, 8) + "SECRET";
  for (const auto& [name, contents] : {std::pair{"a.heic"s, heif(placeOfData)}, std::pair{"b.heic"s, heifOfOneBox()},
                                       std::pair{"a.webp"s, webp}, std::pair{"a.mp4"s, mp4}}) {
    EXPECT_NE(sent(name, contents).find("PICTURE"), std::string::npos) << name;
  }
}

TEST_F(PersonalTracesTest, DamagedFilesAreSentAsTheyAre) {
  for (const auto& contents : {""s, "\xFF\xD8\xFF"s, "\xFF\xD8\xFF\xE1\0\0"s, "\xFF\xD8\xFF\xE1\xFF"s,
                               "\x89PNG\r\n\x1a\n\xFF\xFF\xFF\xFFtEXt"s, "RIFF\0\0\0\0WEBPEXIF\xFF\xFF\xFF\xFF"s,
                               "\0\0\0\x08moov\0\0\0\x01udta\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s,
                               box("ftyp", "") + box("meta", number(0, 4) + box("iloc", "\1"))}) {
    EXPECT_EQ(personalTraces(folder_.write("damaged", contents)), std::vector<Overwrite>());
  }
  EXPECT_EQ(personalTraces(folder_.path() / "missing"), std::vector<Overwrite>());
}

TEST_F(PersonalTracesTest, WhateverIsCutOrBentNothingOutsideOfTheFileIsChanged) {
  const auto exif = "II\x2a\0\x08\0\0\0\x02\0\x0f\x01\x02\0\x04\0\0\0ABC\0\x12\x01\x03\0\x01\0\0\0\x06\0\0\0"s;
  const auto segment = [](const std::string& marker, const std::string& content) {
    return "\xFF" + marker + number(content.size() + 2, 2) + content;
  };
  const auto jpeg = "\xFF\xD8" + segment("\xE0", "JFIF\0"s) + "\xFF" + segment("\xE1", "Exif\0\0"s + exif) +
                    segment("\xFE", "a comment") + segment("\xDB", "table") + segment("\xDA", "scan") +
                    "data\xFF\0more\xFF\xD0"
                    "data\xFF\xFF"s +
                    segment("\xDA", "scan") + "data\xFF\xD9" + "a film"s;
  const auto png = *savedPicture(quarters(2, 2), "png", 255, {{"tEXt::Comment", "SECRET"}});
  const auto webp = riffChunk("RIFF", "WEBP" + riffChunk("VP8X", "\x2c\0\0\0\0\0\0\0\0\0"s) + riffChunk("EXIF", exif));
  const auto mp4 = box("wide", "") + box("moov", box("trak", box("uuid", "A") + box("meta", "B"))) + box("udta", "C") +
                   number(0, 4) + "uuid to the end";
  for (const auto& whole : {jpeg, png, webp, mp4, heif(heif(0).find("PICTURE")), heifOfOneBox()}) {
    const auto staysInside = [&](const std::string& contents, std::size_t at) {
      for (const auto& change : personalTraces(folder_.write("bent", contents))) {
        ASSERT_TRUE(change.at >= 0 && change.at <= static_cast<std::int64_t>(contents.size())) << at;
        ASSERT_TRUE(change.length >= 0 && static_cast<std::int64_t>(change.bytes.size()) <= change.length) << at;
      }
    };
    for (std::size_t at = 0; at < whole.size(); ++at) {
      staysInside(whole.substr(0, at), at);
      for (const char bent : {'\0', '\1', '\x7f', '\xff'}) {
        auto contents = whole;
        contents[at] = bent;
        staysInside(contents, at);
      }
    }
  }
}

}  // namespace
}  // namespace orivex::gtk
