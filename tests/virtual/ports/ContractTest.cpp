#include <gtest/gtest.h>

#include "VirtualFixture.h"
#include "contract/AnimatorContract.h"
#include "contract/DocumentPickerContract.h"
#include "contract/HttpClientContract.h"
#include "contract/MainQueueContract.h"
#include "contract/ProgressOverlayContract.h"
#include "contract/StoredDataContract.h"
#include "contract/TypeRegistryContract.h"
#include "contract/WebEngineContract.h"
#include "contract/WebsiteDataContract.h"

namespace orivex::contract {

using Virtual = testing::VirtualFixture;

INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, MainQueueContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, AnimatorContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, HttpClientContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, BundleContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, UserDefaultsContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, DeviceContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, TypeRegistryContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, DocumentPickerContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, ProgressOverlayContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, WebEngineContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, WebsiteDataContract, Virtual);

}  // namespace orivex::contract
