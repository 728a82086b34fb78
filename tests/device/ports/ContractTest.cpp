#include <gtest/gtest.h>

#include "ContractFixture.h"
#include "contract/AnimatorContract.h"
#include "contract/DocumentPickerContract.h"
#include "contract/HttpClientContract.h"
#include "contract/MainQueueContract.h"
#include "contract/ProgressOverlayContract.h"
#include "contract/StoredDataContract.h"
#include "contract/TypeRegistryContract.h"
#include "contract/UserScriptContract.h"
#include "contract/WebEngineContract.h"
#include "contract/WebsiteDataContract.h"

namespace orivex::contract {

using gtk::ContractFixture;
using gtk::WindowFixture;

INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, MainQueueContract, ContractFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, AnimatorContract, WindowFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, HttpClientContract, ContractFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, BundleContract, ContractFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, UserDefaultsContract, ContractFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, DeviceContract, ContractFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, TypeRegistryContract, ContractFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, DocumentPickerContract, WindowFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, ProgressOverlayContract, WindowFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, WebEngineContract, ContractFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, UserScriptContract, ContractFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, WebsiteDataContract, ContractFixture);

}  // namespace orivex::contract
