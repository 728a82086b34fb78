#include <array>
#include <csignal>
#include <filesystem>

#include <adwaita.h>

#include "glib/GRef.h"
#include "support/ScreenFixture.h"
#include "support/TemporaryFolder.h"
#include "support/Visitor.h"

namespace orivex::gtk {
namespace {

/// A session bus of the test's own, which stands still once GTK has used it.
class Bus {
 public:
  Bus() {
    const char* const command[] = {"dbus-daemon", "--session", "--nofork", "--print-address", nullptr};
    process_ = GRef<GSubprocess>::adopt(g_subprocess_newv(
        command, static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_PIPE | G_SUBPROCESS_FLAGS_STDERR_SILENCE),
        nullptr));
    std::array<char, 512> address{};
    g_input_stream_read(g_subprocess_get_stdout_pipe(process_.get()), address.data(), address.size() - 1, nullptr,
                        nullptr);
    g_setenv("DBUS_SESSION_BUS_ADDRESS", g_strchomp(address.data()), TRUE);
    adw_init();
    g_subprocess_send_signal(process_.get(), SIGSTOP);
  }
  Bus(const Bus&) = delete;
  Bus& operator=(const Bus&) = delete;
  ~Bus() { g_subprocess_force_exit(process_.get()); }

  void goOn() { g_subprocess_send_signal(process_.get(), SIGCONT); }

 private:
  GRef<GSubprocess> process_;
};

// Before GLib asks for the first time: it keeps what it finds.
struct Surrounding {
  Surrounding() {
    g_setenv("XDG_RUNTIME_DIR", (folder.path() / "gone").c_str(), TRUE);
    bus = std::make_unique<Bus>();
  }

  TemporaryFolder folder;
  std::unique_ptr<Bus> bus;
};

class EngineStart : public ScreenFixture {
 protected:
  explicit EngineStart(std::unique_ptr<Surrounding> surrounding = std::make_unique<Surrounding>())
      : surrounding_(std::move(surrounding)) {}

  /// Opens a chat and returns what the visitor reads then; the main loop never stands still meanwhile.
  std::string read(const std::string& server) {
    const auto chat = startChat(server);
    window()->rootViewController()->present(chat, false);
    gint64 last = g_get_monotonic_time();
    pass(0.5);
    hands("tap", 180, 300);
    wait(
        [&] {
          const auto now = g_get_monotonic_time();
          EXPECT_LT(now - last, 3 * G_USEC_PER_SEC) << "the host stands still";
          last = now;
          return raised("ready") || !panelText().empty();
        },
        25);
    auto text = panelText();
    wait([&] { return panelText().empty(); }, 5);
    window()->rootViewController()->dismiss(false);
    return text;
  }

  const std::unique_ptr<Surrounding> surrounding_;
};

TEST_F(EngineStart, WithoutRoomOrABusTheVisitorIsToldAndLaterTheChatOpens) {
  const SocketServer server(servePage("<script>" + raise("ready") + "</script>"));
  EXPECT_EQ(read(server.url("")), "请求失败,请稍后重试") << "there is no runtime folder";
  std::filesystem::create_directory(surrounding_->folder.path() / "gone");
  EXPECT_EQ(read(server.url("")), "请求失败,请稍后重试") << "the bus stands still";
  EXPECT_FALSE(raised("ready"));
  surrounding_->bus->goOn();
  EXPECT_EQ(read(server.url("")), "");
  EXPECT_TRUE(raised("ready"));
}

}  // namespace
}  // namespace orivex::gtk
