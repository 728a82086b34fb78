#include <optional>

#include <adwaita.h>
#include <gtest/gtest.h>

#include "ServerProcess.h"
#include "support/LogLines.h"
#include "support/MainLoop.h"
#include "support/Processes.h"
#include "support/TemporaryFolder.h"

#include "orivex/gtk/Gtk.h"
#include "orivex/media/UploadManager.h"
#include "orivex/session/OVKFApiManager.h"

namespace orivex::gtk {
namespace {

using testing::ServerProcess;

class UploadFaultsTest : public ::testing::Test {
 protected:
  UploadFaultsTest() {
    adw_init();
    install();
    auto& store = OVKFApiManager::shared();
    store.host = server_.address();
    store.entryId = "entry";
    store.appKey = "key";
    store.guestId = "visitor";
  }

  /// Uploads the file at `path`; its text for the visitor, or "stored".
  std::string upload(const std::string& path) {
    std::optional<std::string> result;
    UploadManager().uploadFile(std::nullopt, Url::fromFilePath(path), std::nullopt, "合同 \"1\".pdf", "application/pdf",
                               std::nullopt, [&result](const UploadResult& got) {
                                 EXPECT_EQ(result, std::nullopt) << "completed twice";
                                 const auto* failure = std::get_if<UploadFailure>(&got);
                                 result = failure ? failure->message : "stored";
                               });
    EXPECT_EQ(result, std::nullopt) << "completed inside the call";
    EXPECT_TRUE(wait([&] { return result.has_value(); }, 30)) << path;
    pass(0.02);
    return result.value_or("nothing");
  }

  LogLines log_;
  TemporaryFolder folder_;
  const ServerProcess server_;
};

TEST_F(UploadFaultsTest, EndEachInTheTextThatTheVisitorShallRead) {
  constexpr std::size_t size = 400000;
  const auto path = folder_.write("file", std::string(size, 'x')).string();
  const auto fault = [](nlohmann::json more) {
    more["target"] = "upload";
    more["times"] = 1;
    return more;
  };
  std::vector<std::pair<nlohmann::json, std::string>> rows{
      {{{"kind", "brokenJson"}}, "JSON解析失败"},
      {{{"kind", "status"}, {"status", 204}, {"body", ""}}, "未知错误"},
      {{{"kind", "status"}, {"status", 308}, {"body", R"({"msg":"moved"})"}}, "moved"},
      {{{"kind", "status"}, {"status", 400}, {"msg", "不支持的文件"}}, "不支持的文件"},
      {{{"kind", "status"}, {"status", 503}, {"body", "{}"}}, "服务不可用"},
  };
  for (std::size_t quarter = 0; quarter <= 4; ++quarter) {
    rows.push_back({{{"kind", "reset"}, {"afterBytes", quarter * size / 4}}, "未知错误"});
  }
  for (const auto& [kind, expected] : rows) {
    server_.addFaults(fault(kind));
    EXPECT_EQ(upload(path), expected) << kind;
    EXPECT_EQ(upload(path), "stored") << "after " << kind;
  }
  server_.addFaults(fault({{"kind", "cut"}}));
  const auto cut = upload(path);
  EXPECT_TRUE(cut != "stored" && !cut.empty()) << cut;
  EXPECT_EQ(upload((folder_.path() / "missing").string()), "未知错误");
}

}  // namespace
}  // namespace orivex::gtk
