#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtk/gtk.h>

#include "FolderBundle.h"
#include "KeyFileUserDefaults.h"
#include "contract/Fixture.h"
#include "support/MainLoop.h"
#include "support/SocketServer.h"
#include "support/TemporaryFolder.h"

#include "orivex/platform/Platform.h"

namespace orivex::gtk {

/// The real device as the contract suites see it, with a server on real sockets.
class ContractFixture {
 public:
  ContractFixture();

  const Platform& platform() const { return Platform::current(); }
  bool wait(const std::function<bool()>& condition, double seconds) { return gtk::wait(condition, seconds); }

  std::string serve(const contract::Site& site);
  std::string refusingOrigin();
  std::vector<std::string> userAgents(const std::string& target);
  std::string localPage() { return folder_.write("local.html", "<p>local"); }

  const Bundle& bundleWith(const std::map<std::string, std::string>& files);
  const Bundle& missingBundle();
  const UserDefaults& userDefaultsWith(const contract::Settings& settings);
  std::string file(const std::string& name) { return folder_.write(name, "x"); }
  std::string lostFile(const std::string& name) { return folder_.path() / "lost" / name; }

 private:
  TemporaryFolder folder_;
  std::unique_ptr<SocketServer> server_;
  std::optional<FolderBundle> bundle_;
  std::optional<KeyFileUserDefaults> defaults_;
};

/// The same with a window on the screen.
class WindowFixture : public ContractFixture {
 public:
  WindowFixture();
  WindowFixture(const WindowFixture&) = delete;
  WindowFixture& operator=(const WindowFixture&) = delete;
  ~WindowFixture();

  void pick(const std::string& path);
  void cancelPicking();
  std::optional<std::string> overlayStatus();
  bool giveUp();
  std::optional<std::string> offered();
  void answerOffer(bool retries);
  void removeWindow();

 private:
  GtkWidget* find(const char* cssClass);

  GtkWindow* window_;
};

}  // namespace orivex::gtk
