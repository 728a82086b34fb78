#include "CurlCommand.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include "Bench.h"

namespace orivex::bench {

double curlMilliseconds(const std::string& url, const std::string& file, int times) {
  const auto list = file + ".curl";
  {
    std::ofstream config(list);
    for (int time = 0; time < times; ++time) {
      if (time > 0) config << "next\n";
      config << "url = \"" << url << "\"\nform = \"file=@" << file
             << ";type=text/plain\"\nsilent\noutput = /dev/null\n";
    }
  }
  const double start = milliseconds();
  if (std::system(("curl -q --noproxy '*' -K " + list).c_str()) != 0) throw std::runtime_error("curl failed");
  return milliseconds() - start;
}

}  // namespace orivex::bench
