#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "MultipartParser.h"

namespace orivex::devserver {
namespace {

struct Part {
  std::string name;
  std::string fileName;
  std::string contentType;
  std::string data;
  bool ended = false;
  bool operator==(const Part&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Part& part) {
  return stream << part.name << '|' << part.fileName << '|' << part.contentType << '|' << part.data << '|'
                << part.ended;
}

struct Outcome {
  std::vector<Part> parts;
  bool wellFormed = true;
  bool complete = false;
};

/// Parses the pieces in their order.
Outcome parse(const std::vector<std::string>& pieces, const char* boundary = "xYz") {
  Outcome outcome;
  MultipartParser parser(
      boundary,
      {.begin =
           [&](const PartHeaders& headers) {
             outcome.parts.push_back({headers.name, headers.fileName.value_or("-"), headers.contentType, "", false});
           },
       .data = [&](std::string_view bytes) { outcome.parts.back().data += bytes; },
       .end = [&] { outcome.parts.back().ended = true; }});
  for (const auto& piece : pieces) outcome.wellFormed = parser.feed(piece);
  outcome.complete = parser.isComplete();
  return outcome;
}

const std::string trickyData = "\r\n-\r\n--xY\r\r\n--\r\n--xY--xYz\n--xYz\r\n";
const std::string body =
    "a preamble\r\n--xYz \t\r\nContent-Disposition: form-data; name=\"file\"; filename=\"a.bin\"\r\n"
    "content-TYPE: image/png\r\n\r\n" +
    trickyData +
    "\r\n--xYz\r\nContent-Disposition: form-data; name=empty\r\n\r\n\r\n--xYz\r\n\r\nbare\r\n--xYz--\r\nepilogue";
const std::vector<Part> expected{
    {"file", "a.bin", "image/png", trickyData, true}, {"empty", "-", "", "", true}, {"", "-", "", "bare", true}};

TEST(MultipartParser, FindsTheSamePartsWhereverTheBodyIsCut) {
  for (std::size_t cut = 0; cut <= body.size(); ++cut) {
    const auto outcome = parse({body.substr(0, cut), body.substr(cut)});
    ASSERT_EQ(outcome.parts, expected) << "cut at " << cut;
    ASSERT_TRUE(outcome.wellFormed && outcome.complete) << "cut at " << cut;
  }
  std::vector<std::string> bytes;
  for (const char byte : body) bytes.emplace_back(1, byte);
  EXPECT_EQ(parse(bytes).parts, expected);
}

TEST(MultipartParser, TakesABodyForCompleteOnlyAfterItsClosingDelimiter) {
  const auto closing = body.rfind("--\r\nepilogue");
  for (std::size_t length = 0; length < body.size(); ++length)
    ASSERT_EQ(parse({body.substr(0, length)}).complete, length >= closing + 2) << "length " << length;
}

TEST(MultipartParser, RefusesWhatIsNoForm) {
  const std::string head = "--xYz\r\nContent-Disposition: form-data; name=\"file\"\r\n\r\n";
  struct Case {
    const char* name;
    std::string body;
  };
  const std::vector<Case> cases{
      {"a boundary inside the data", head + "data\r\n--xYzz\r\nmore\r\n--xYz--"},
      {"a delimiter that one hyphen follows", head + "data\r\n--xYz-\r\n"},
      {"headers without an end", "--xYz\r\nX: " + std::string(20'000, 'x')},
  };
  for (const auto& testCase : cases) {
    EXPECT_FALSE(parse({testCase.body}).wellFormed) << testCase.name;
    EXPECT_FALSE(parse({testCase.body, head, "--xYz--"}).complete) << testCase.name;
  }
}

TEST(PartHeaders, ReadsNamesAsBrowsersAndCurlWriteThem) {
  struct Case {
    const char* line;
    const char* name;
    const char* fileName;
  };
  const Case cases[] = {
      {R"(form-data; name="file"; filename="a.txt")", "file", "a.txt"},
      {R"(form-data; name="file"; filename="say \"hi\".txt")", "file", "say \"hi\".txt"},
      {R"(form-data; name="file"; filename="say %22hi%22.txt")", "file", "say \"hi\".txt"},
      {R"(form-data; name="fi%0D%0Ale"; filename="")", "fi\r\nle", ""},
      {R"(form-data; name="file"; filename="C:\new\a.txt")", "file", R"(C:\new\a.txt)"},
      {R"(form-data; name="file"; filename="C:\\new\\a.txt")", "file", R"(C:\new\a.txt)"},
      {R"(form-data; name="file"; filename="你好;name=x.txt")", "file", "你好;name=x.txt"},
      {R"(form-data; filename=plain.txt ; name=file)", "file", "plain.txt"},
      {R"(form-data; name="file"; filename*=UTF-8''%E4%BD%A0.txt; filename="x.txt")", "file", "你.txt"},
      {R"(form-data; name="file"; filename="x.txt"; filename*=latin1''%E4.txt)", "file", "x.txt"},
      {R"(form-data; NAME="file"; FileName="unclosed)", "file", "unclosed"},
      {R"(form-data; name="file"; filename="ends with \)", "file", R"(ends with \)"},
      {"form-data", "", "-"},
      {"form-data;;; =; name", "", "-"},
  };
  for (const auto& testCase : cases) {
    const auto part = parsePartHeaders(std::string("Content-Disposition:") + testCase.line + "\r\n");
    EXPECT_EQ(part.name, testCase.name) << testCase.line;
    EXPECT_EQ(part.fileName.value_or("-"), testCase.fileName) << testCase.line;
  }
}

}  // namespace
}  // namespace orivex::devserver
