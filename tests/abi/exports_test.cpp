// The exports of the built library against the library's list.
#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "abi/library_symbols.h"
#include "support/export_list.h"
#include "vyra/notify.h"
#include "vyra/vyra.h"

namespace {

using test_support::listed_exports;
using ::testing::ContainerEq;

std::string exported_name(const test_support::Listed_export& listed)
{
    return binary::has_ordinals ? listed.name : listed.symbol;
}

class Exports_test : public ::testing::Test {
protected:
    void SetUp() override { VyraBreakEnable(); }  // the program is linked with the library
};

TEST_F(Exports_test, are_those_of_the_list_and_nothing_else)
{
    std::vector<std::string> expected;
    std::transform(std::begin(listed_exports), std::end(listed_exports), std::back_inserter(expected), exported_name);
    if (!binary::has_ordinals) {
        std::sort(expected.begin(), expected.end());
    }
    std::vector<std::string> found;
    for (const auto& each : binary::library_exports()) {
        found.push_back(each.name);
    }
    EXPECT_EQ(found.size(), 59U);
    EXPECT_THAT(found, ContainerEq(expected));
}

// The list is data of the library's own: what hosts have linked with must not change with it.
TEST_F(Exports_test, have_the_ordinals_that_hosts_are_linked_with)
{
    ASSERT_EQ(std::size(listed_exports), 59U);
    EXPECT_STREQ(listed_exports[0].name, "VyraBreakEnable");
    EXPECT_STREQ(listed_exports[16].name, "VyraInitialize_N");
    EXPECT_STREQ(listed_exports[35].name, "VyraBrenvoZultaOpenDevice");
    EXPECT_STREQ(listed_exports[52].name, "VyraTerminate");
    EXPECT_STREQ(listed_exports[53].name, "?InitUsbNotifier@@YA_NPEAD@Z");
    EXPECT_STREQ(listed_exports[54].name, "?TerminateUsbNotifier@@YA_NPEAD@Z");
    EXPECT_STREQ(listed_exports[55].name, "?SubscribeToUsbEvent@@YA_NHHP6AXHHW4UsbPlugEventType@@@Z@Z");
    EXPECT_STREQ(listed_exports[56].name, "?UnSubscribeToUsbEvent@@YA_NHH@Z");
    EXPECT_STREQ(listed_exports[57].name, "?SubscribeToPowerEvent@@YA_NP6AXW4SysPowerEventType@@@Z@Z");
    EXPECT_STREQ(listed_exports[58].name, "?UnsubscribeToPowerEvent@@YA_NP6AXW4SysPowerEventType@@@Z@Z");
    const auto found = binary::library_exports();
    for (std::size_t i = 0; binary::has_ordinals && i < found.size(); ++i) {
        EXPECT_EQ(found[i].ordinal, i + 1);
    }
}

TEST_F(Exports_test, are_found_by_the_loader_under_their_names)
{
    std::set<void*> addresses;
    for (const auto& listed : listed_exports) {
        void* const address = binary::address_of(exported_name(listed));
        EXPECT_NE(address, nullptr) << exported_name(listed);
        addresses.insert(address);
    }
    EXPECT_GT(addresses.size(), 35U);  // the compiler may fold those of fixed result
    EXPECT_EQ(binary::address_of("VyraNothing"), nullptr);
}

// The header's names lead to the decorated exports.
TEST_F(Exports_test, notification_service_is_reached_through_its_header)
{
    const auto on_usb = [](int, int, UsbPlugEventType) {};
    const auto on_power = [](SysPowerEventType) {};
    EXPECT_TRUE(SubscribeToUsbEvent(0x1234, 0x5678, on_usb));
    EXPECT_FALSE(SubscribeToUsbEvent(0x1234, 0x5678, on_usb));
    EXPECT_TRUE(UnSubscribeToUsbEvent(0x1234, 0x5678));
    EXPECT_FALSE(UnSubscribeToUsbEvent(0x1234, 0x5678));
    EXPECT_TRUE(SubscribeToPowerEvent(on_power));
    EXPECT_TRUE(UnsubscribeToPowerEvent(on_power));
    EXPECT_FALSE(UnsubscribeToPowerEvent(on_power));
    char window_class[] = "ABI TEST";
    EXPECT_TRUE(InitUsbNotifier(window_class));
    EXPECT_TRUE(TerminateUsbNotifier(window_class));
}

}  // namespace
