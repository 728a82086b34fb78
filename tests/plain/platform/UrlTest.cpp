#include <string>

#include <gtest/gtest.h>

#include "orivex/platform/base/Url.h"

namespace orivex {
namespace {

TEST(Url, ParsesWhatTheSyntaxAllowsAndKeepsItEncoded) {
  const struct {
    std::string text;
    std::string absolute;  // as the text when empty
  } rows[] = {
      {"https://chat.example/api?a=1&b=%E4%BD%A0#top", ""},
      {"HTTP://user:pa%20ss@[::1]:8080/p;q=1/@:x?/?#?/", ""},
      {"http://host:65535", ""},
      {"//host/path", ""},
      {"path/with:colon", ""},
      {"?query", ""},
      {"mailto:a.b+c@host", ""},
      {"a-b+c.d:x", ""},
      {"http://[v1.a:b]/", ""},
      {"https://例子.example/路?名=值#段",
       "https://%E4%BE%8B%E5%AD%90.example/%E8%B7%AF?%E5%90%8D=%E5%80%BC#%E6%AE%B5"},
      {"http://host/a b?My Shop#x y", "http://host/a%20b?My%20Shop#x%20y"},
      {"http://host?\"<>\\^{}|`[]'", "http://host?%22%3C%3E%5C%5E%7B%7D%7C%60%5B%5D'"},
      {"http://host/%?p=50%&q=%4#%zz%4a", "http://host/%25?p=50%25&q=%254#%25zz%4a"},
      {"http://host/a?b?c/d#e#f?#", "http://host/a?b?c/d#e%23f?%23"},
      {"weixin://host?{\"名\":1}", "weixin://host?%7B%22%E5%90%8D%22:1%7D"},
  };
  for (const auto& [text, absolute] : rows) {
    const auto url = Url::parse(text);
    ASSERT_TRUE(url) << text;
    EXPECT_EQ(url->absoluteString(), absolute.empty() ? text : absolute);
  }
}

TEST(Url, DoesNotParseWhatTheSyntaxForbids) {
  for (const char* text : {"",
                           " http://host",
                           "http://ho st/",
                           "http://host\\@other/",
                           "http://host/a\nb",
                           "mailto:a b@host",
                           "file:///a b",
                           "http:///a b",
                           "http://:80/{}",
                           "//host/a b",
                           "a?b|c",
                           "?p=50%",
                           "#a#b",
                           "http://host/\x7F",
                           "http://host/\xFF",
                           "http://host:65536/",
                           "http://host:8o/",
                           "http://host:-1/",
                           "http://[::1/",
                           "http://::1]/",
                           "http://[]/",
                           "http://[::1]x/",
                           "http://a@b@host/",
                           "1http://host",
                           ":path",
                           "路:径"}) {
    EXPECT_FALSE(Url::parse(text)) << text;
  }
  EXPECT_FALSE(Url::parse(std::string("http://host/\0", 13)));
}

TEST(Url, NamesItsSchemeAndOrigin) {
  const struct {
    const char* text;
    const char* scheme;
    const char* origin;
  } rows[] = {
      {"HTTPS://Chat.example:8443/a?b", "https", "HTTPS://Chat.example:8443"},
      {"https://chat.example?b", "https", "https://chat.example"},
      {"weixin://", "weixin", "weixin://"},
      {"mailto:a@b", "mailto", ""},
      {"//host/path", "", ""},
  };
  for (const auto& row : rows) {
    const auto url = Url::parse(row.text);
    ASSERT_TRUE(url) << row.text;
    EXPECT_EQ(url->scheme(), row.scheme) << row.text;
    EXPECT_EQ(url->origin(), row.origin) << row.text;
  }
}

TEST(Url, AFilePathComesBackFromItsAddress) {
  for (const std::string path : {"/tmp/a b", "/tmp/100% #1?.jpg", "/图片/😀;x", "/tmp/\xFF", "/"}) {
    const auto url = Url::fromFilePath(path);
    EXPECT_EQ(url.filePath(), path);
    const auto again = Url::parse(url.absoluteString());
    ASSERT_TRUE(again) << url.absoluteString();
    EXPECT_EQ(*again, url);
  }
  EXPECT_EQ(Url::parse("file://localhost/a%20b?x#y")->filePath(), "/a b");
  EXPECT_EQ(Url::parse("file:/a")->filePath(), "/a");
  EXPECT_EQ(Url::parse("file://host")->filePath(), "");
  EXPECT_EQ(Url::parse("https://host/a")->filePath(), std::nullopt);
}

TEST(Url, AQueryKeepsItsAllowedCharactersAndEncodesTheOthers) {
  const std::string allowed = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789!$&'()*+,-./:;=?@_~";
  EXPECT_EQ(percentEncodeQuery(allowed), allowed);
  std::string encoded;
  for (char c = 0; c != 0x7F; ++c) {
    if (allowed.find(c) == std::string::npos) encoded += *percentEncodeQuery(std::string(1, c));
  }
  EXPECT_EQ(encoded,
            "%00%01%02%03%04%05%06%07%08%09%0A%0B%0C%0D%0E%0F%10%11%12%13%14%15%16%17%18%19%1A%1B%1C%1D%1E%1F"
            "%20%22%23%25%3C%3E%5B%5C%5D%5E%60%7B%7C%7D");
  EXPECT_EQ(percentEncodeQuery("{\"名\":1}"), "%7B%22%E5%90%8D%22:1%7D");
  EXPECT_EQ(percentEncodeQuery("\xE5\x90"), std::nullopt);
}

}  // namespace
}  // namespace orivex
