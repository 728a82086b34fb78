#pragma once

/// Everything that a host needs of the component itself; a backend's header (`orivex/gtk/Gtk.h`) goes with it.
#include "orivex/models/MessageBody.h"
#include "orivex/models/MessageModel.h"
#include "orivex/models/ShortcutsModel.h"
#include "orivex/models/UserMappingModel.h"
#include "orivex/platform/base/Language.h"
#include "orivex/sdk/Conversation.h"
#include "orivex/sdk/OVKFApi.h"
#include "orivex/sdk/Version.h"
#include "orivex/session/OVKFApiManager.h"
