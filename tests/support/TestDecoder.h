#pragma once

#include "Bundles.h"
#include "GlibMainQueue.h"
#include "decoding/Decoder.h"

#include "orivex/gtk/Gtk.h"

namespace orivex::gtk {

struct OwnQueue {
  GlibMainQueue queue;
};

/// Decoders of a test's own, by the program of the build.
struct TestDecoder : private OwnQueue, Decoder {
  TestDecoder()
      : Decoder(queue,
                FolderBundle::besideLibrary(reinterpret_cast<const void*>(&install)).pathOf("decoder/OrivexDecoder")) {}
};

}  // namespace orivex::gtk
