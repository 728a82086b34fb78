#include "Options.h"

#include <charconv>
#include <limits>

namespace orivex::devserver {
namespace {

template <typename Number>
Number wholeNumber(const std::string& option, const std::string& text) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value < Number{0})
    throw UsageError(option + " needs a whole number, not \"" + text + "\"");
  return value;
}

void checkTls(const Options& options) {
  if (options.tlsCertificate.empty() != options.tlsKey.empty())
    throw UsageError("--tls-certificate and --tls-key go together");
}

Fault faultOption(const std::string& text) {
  try {
    auto fault = parseFault(text);
    if (fault.kind == FaultKind::Drop) throw FaultError("nothing is open yet that could be dropped");
    return fault;
  } catch (const FaultError& error) {
    throw UsageError("--fault: " + std::string(error.what()));
  }
}

/// Options that stand alone. False when `name` is none of them.
bool setSwitch(Options& options, const std::string& name) {
  if (name == "--help")
    options.help = true;
  else if (name == "--exit-with-stdin")
    options.exitWithStdin = true;
  else
    return false;
  return true;
}

void setValue(Options& options, const std::string& name, const std::string& value) {
  if (name == "--host")
    options.host = value;
  else if (name == "--port")
    options.port = wholeNumber<std::uint16_t>(name, value);
  else if (name == "--tls-certificate")
    options.tlsCertificate = value;
  else if (name == "--tls-key")
    options.tlsKey = value;
  else if (name == "--token")
    options.tokens.push_back(value);
  else if (name == "--files")
    options.files = value;
  else if (name == "--page")
    options.page = value;
  else if (name == "--max-upload")
    options.maxUpload = wholeNumber<std::int64_t>(name, value);
  else if (name == "--agent-delay")
    options.agentDelay = wholeNumber<unsigned>(name, value);
  else if (name == "--fault")
    options.faults.push_back(faultOption(value));
  else
    throw UsageError("unknown option " + name);
}

}  // namespace

Options parseOptions(const std::vector<std::string>& arguments) {
  Options options;
  for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
    if (setSwitch(options, *argument)) continue;
    const auto equals = argument->find('=');
    if (argument->starts_with("--") && equals != std::string::npos) {
      setValue(options, argument->substr(0, equals), argument->substr(equals + 1));
      continue;
    }
    const std::string& name = *argument;
    if (std::next(argument) == arguments.end()) throw UsageError(name + " is unknown or lacks its value");
    setValue(options, name, *++argument);
  }
  checkTls(options);
  return options;
}

std::string usage() {
  return R"(orivex-devserver: a chat server and chat page to develop against, without a network

Usage: orivex-devserver [OPTION]...

  --host ADDRESS            address to listen on (127.0.0.1)
  --port PORT               port to listen on; 0 lets the system choose (8700)
  --tls-certificate FILE    serve https with this PEM certificate ...
  --tls-key FILE            ... and this PEM key
  --token TOKEN             accept only this access token; may be repeated. Without it any token
                            passes that is not "expired" and does not begin with "expired-"
  --page FOLDER             serve this folder's index.html as the chat page, its files beside it and from
                            the root, and print what the page posts to the native side
  --files FOLDER            keep uploaded files here (a fresh folder, removed at the end)
  --max-upload BYTES        answer 413 to a larger file (268435456)
  --agent-delay MS          how long the agent types before each answer (900)
  --fault FAULT             let something go wrong from the start; may be repeated
  --exit-with-stdin         end when standard input ends
  --help                    show this text

A FAULT is TARGET:KIND[=VALUE][,KEY=VALUE]... with TARGET page, upload or socket:
  latency=MS                wait before answering
  status=CODE               answer with a status; ,msg=TEXT or ,body=TEXT say what the body holds
  msg=TEXT                  answer 400 (or ,status=CODE) with {"msg": TEXT}
  silence                   take the request and never answer
  reset                     reset the connection; ,afterBytes=N after N bytes of an upload
  cut                       close in the middle of the reply
  brokenJson                answer 200 with JSON that breaks off
  redirect                  answer 302 to the same address, which then works
  ,times=N                  only for the next N requests

The page and its agent speak Chinese where the browser, or the application with the chat, does, and English
elsewhere: start that with LANG=zh_CN.UTF-8 or LANG=en_US.UTF-8 to choose.

At run time POST /_dev/faults adds faults (an object or an array of objects such as
{"target":"upload","kind":"status","status":503,"times":1}), GET shows them, DELETE clears them.
{"target":"socket","kind":"drop"} breaks the open web sockets off, once.
GET /_dev/log lists the recent requests, DELETE empties the list.
)";
}

}  // namespace orivex::devserver
