#include <chrono>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include "PictureFiles.h"
#include "PlainJpeg.h"
#include "support/MainLoop.h"
#include "support/Processes.h"
#include "support/SocketServer.h"
#include "support/TemporaryFolder.h"
#include "support/TestDecoder.h"

namespace orivex::gtk {
namespace {

using ::testing::HasSubstr;

constexpr DecodingRequest asThumbnail{.kind = Decoding::picture, .width = 256, .height = 256};
constexpr DecodingRequest asPhoto{.kind = Decoding::recode, .quality = 0.7};
constexpr DecodingRequest asVideo{.kind = Decoding::video, .quality = 0.7};

/// Files that cost a decoder all it may have.
class Bombs {
 public:
  std::filesystem::path webp() const {
    std::string file("RIFF\x1a\0\0\0WEBPVP8L\x0d\0\0\0\x2f", 21);
    file.append("\xfe\xbf\xff\x0f", 4).append(9, '\0');  // 16,383 pixels across and down
    return folder_.write("bomb.webp", file);
  }
  std::filesystem::path progressiveJpeg() const {
    const auto small = encodePlainJpeg(quarters(64, 48), {.lumaAcross = 1, .lumaDown = 1, .progressive = true});
    return folder_.write("bomb.jpg", withClaimedSize(small, 13000, 13000));
  }
  std::filesystem::path manyScans() const {
    auto jpeg = encodePlainJpeg(quarters(64, 48), {.lumaAcross = 1, .lumaDown = 1, .progressive = true});
    jpeg.resize(jpeg.size() - 2);                                // the mark of the end
    const std::string scan("\xFF\xDA\0\x08\1\1\0\0\0\x10", 10);  // one more bit of the first colour's average
    for (int index = 0; index < 20'000; ++index) jpeg += scan;
    return folder_.write("bomb-of-scans.jpg", withClaimedSize(jpeg + "\xFF\xD9", 7000, 7000));
  }
  std::filesystem::path endlessDrawing() const {
    std::string drawing =
        "<svg xmlns='http://www.w3.org/2000/svg' width='4000' height='4000'><filter id='f'>"
        "<feTurbulence baseFrequency='.1' numOctaves='9'/></filter>";
    for (int index = 0; index < 500; ++index) drawing += "<rect width='4000' height='4000' filter='url(#f)'/>";
    return folder_.write("bomb.svg", drawing + "</svg>");
  }

 private:
  const TemporaryFolder folder_;
};

/// Decodes files that must be refused, and after each a good one.
void expectRefusals(const Decoder& decoder,
                    const std::vector<std::pair<std::filesystem::path, DecodingRequest>>& bombs) {
  const TemporaryFolder folder;
  const auto good = folder.write("good.jpg", encodePlainJpeg(quarters(64, 48)));
  for (const auto& [path, request] : bombs) {
    const auto started = std::chrono::steady_clock::now();
    const auto result = decoder.decode(request, path);
    EXPECT_TRUE(std::holds_alternative<Failure>(result)) << path;
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(11)) << path;
    EXPECT_TRUE(std::holds_alternative<Decoded>(decoder.decode(asThumbnail, good))) << "after " << path;
  }
}

TEST(DecoderTest, NoFileTakesMoreThanItsShareOfMemoryAndTheNextOneIsDecoded) {
  const Bombs bombs;
  {
    const TestDecoder decoder;
    expectRefusals(decoder, {{bombs.webp(), asThumbnail}, {bombs.webp(), asPhoto}});
// Only the limit of memory refuses this one, and decoders have none under the sanitizers, which take much themselves.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    expectRefusals(decoder, {{bombs.progressiveJpeg(), asThumbnail}, {bombs.progressiveJpeg(), asPhoto}});
#endif
  }
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
  rusage usage{};
  getrusage(RUSAGE_CHILDREN, &usage);
  EXPECT_LT(usage.ru_maxrss, 700 * 1024);
#endif
}

TEST(DecoderTest, NoFileTakesMoreThanItsShareOfTimeAndTheNextOneIsDecoded) {
  const Bombs bombs;
  expectRefusals(TestDecoder(),
                 {{bombs.endlessDrawing(), asPhoto}, {bombs.manyScans(), asThumbnail}, {bombs.manyScans(), asPhoto}});
}

TEST(DecoderTest, AManifestIsNoVideoWhateverItsNameAndNobodyIsCalled) {
  SocketServer server([](const std::string&) { return SocketServer::Answer{}; });
  const TemporaryFolder folder;
  const TestDecoder decoder;
  for (const auto& manifest : {"<?xml version='1.0'?><MPD xmlns='urn:mpeg:dash:schema:mpd:2011' type='static' "
                               "mediaPresentationDuration='PT9S'>"
                               "<BaseURL>" +
                                   server.url("/") +
                                   "</BaseURL><Period><AdaptationSet mimeType='video/mp4'><SegmentTemplate "
                                   "media='$Number$.mp4' initialization='i.mp4' duration='9'/><Representation id='1' "
                                   "bandwidth='9' codecs='avc1'/>"
                                   "</AdaptationSet></Period></MPD>",
                               "#EXTM3U\n#EXTINF:9,\n" + server.url("/a.ts") + "\n#EXT-X-ENDLIST\n",
                               std::string("RTSPtext\n") + server.url("/")}) {
    const auto result = decoder.decode(asVideo, folder.write("holiday.mp4", manifest));
    ASSERT_TRUE(std::holds_alternative<Failure>(result));
    EXPECT_THAT(std::get<Failure>(result).description, HasSubstr("is not a video"));
  }
  EXPECT_EQ(server.connections(), 0);
}

TEST(DecoderTest, ADecoderHasNoNetworkAndEndsWhenItIsIdle) {
  const TemporaryFolder folder;
  const auto good = folder.write("good.jpg", encodePlainJpeg(quarters(64, 48)));
  const TestDecoder decoder;
  ASSERT_TRUE(std::holds_alternative<Decoded>(decoder.decode(asThumbnail, good)));
  const auto running = decoderProcesses();
  ASSERT_EQ(running.size(), 1U);
  EXPECT_EQ(figureOf(running[0], "Seccomp:\t"), "2");
  EXPECT_TRUE(wait([] { return decoderProcesses().empty(); }, 20));
}

}  // namespace
}  // namespace orivex::gtk
