#include "TlsServer.h"

#include <stdexcept>
#include <vector>

#include "glib/GMemory.h"

namespace orivex::gtk {
namespace {

GRef<GSubprocess> start(const std::vector<std::string>& words) {
  std::vector<const char*> arguments;
  arguments.reserve(words.size() + 1);
  for (const auto& word : words) arguments.push_back(word.c_str());
  arguments.push_back(nullptr);
  GError* raised = nullptr;
  auto process = GRef<GSubprocess>::adopt(g_subprocess_newv(
      arguments.data(),
      static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_PIPE | G_SUBPROCESS_FLAGS_STDERR_SILENCE), &raised));
  if (const GErrorPtr error(raised); error) throw std::runtime_error(error->message);
  return process;
}

// The server tells where it listens in a line such as "ACCEPT 127.0.0.1:40123".
std::string portFrom(GSubprocess* process) {
  const auto lines = GRef<GDataInputStream>::adopt(g_data_input_stream_new(g_subprocess_get_stdout_pipe(process)));
  while (const GCharPtr line{g_data_input_stream_read_line(lines.get(), nullptr, nullptr, nullptr)}) {
    const std::string text = line.get();
    if (text.starts_with("ACCEPT")) return text.substr(text.rfind(':') + 1);
  }
  throw std::runtime_error("the TLS server did not start");
}

}  // namespace

TlsServer::TlsServer() {
  const GCharPtr folder(g_dir_make_tmp("orivex-tls-XXXXXX", nullptr));
  folder_ = folder.get();
  const std::string key = folder_ / "key.pem";
  const std::string certificate = folder_ / "certificate.pem";
  const auto maker =
      start({"openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", "/CN=localhost",
             "-addext", "subjectAltName=DNS:localhost", "-keyout", key, "-out", certificate});
  if (!g_subprocess_wait_check(maker.get(), nullptr, nullptr)) throw std::runtime_error("no certificate was made");
  process_ = start({"openssl", "s_server", "-accept", "127.0.0.1:0", "-www", "-key", key, "-cert", certificate});
  port_ = portFrom(process_.get());
}

TlsServer::~TlsServer() {
  g_subprocess_force_exit(process_.get());
  g_subprocess_wait(process_.get(), nullptr, nullptr);
  std::filesystem::remove_all(folder_);
}

}  // namespace orivex::gtk
