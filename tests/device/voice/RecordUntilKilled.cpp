#include <thread>

#include "GlibMainQueue.h"
#include "av/GstAudioRecorder.h"

// record-until-killed FILE
int main(int argc, char** argv) {
  if (argc != 2) return 2;
  orivex::gtk::GlibMainQueue queue;
  orivex::gtk::WorkerPool workers(1, std::chrono::seconds(1));
  orivex::gtk::GstAudioRecorder recorder({queue, workers}, argv[1], {});
  if (!recorder.record()) return 1;
  std::this_thread::sleep_for(std::chrono::minutes(1));
  return 1;
}
