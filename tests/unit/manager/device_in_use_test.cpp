// A device whose host calls back from inside one of its operations, and thereby makes the device leave the table: it
// lives until the outermost operation has ended, and no longer.
#include <stdexcept>

#include "manager_test.h"

using namespace manager_tests;

namespace {

using Device_watch = boost::weak_ptr<kvs::brenvozulta::brenvozulta_device>;

Device_watch watch(std::uint32_t handle)
{
    return access::open_devices().look_up(handle);
}

class Device_in_use_test : public Manager_test {
protected:
    // The status of an operation of the scanner, inside which the host does something.
    static std::int32_t during_an_operation(std::uint32_t handle, std::function<void()> inside)
    {
        const auto call = [](void* context) { (*static_cast<std::function<void()>*>(context))(); };
        EXPECT_EQ(VyraBrenvoSetUICallBack(handle, call, &inside), VYRA_OK);
        return show_something(handle);
    }
};

}  // namespace

TEST_F(Device_in_use_test, lives_until_its_operation_ends_although_it_is_closed)
{
    open_scanners(1);
    const Device_watch device = watch(0);
    EXPECT_EQ(during_an_operation(0,
                                  [&] {
                                      EXPECT_EQ(VyraCloseDevice_N(0), VYRA_OK);
                                      EXPECT_FALSE(device.expired());
                                  }),
              VYRA_OK);
    EXPECT_TRUE(device.expired());
}

TEST_F(Device_in_use_test, lives_until_its_operation_ends_although_another_one_gets_its_handle)
{
    open_scanners(3);
    EXPECT_EQ(VyraCloseDevice_N(0), VYRA_OK);
    const Device_watch device = watch(2);
    EXPECT_EQ(during_an_operation(2,
                                  [&] {
                                      std::uint32_t handle = 0;
                                      EXPECT_EQ(VyraOpenDevice(scanner_1, &handle), VYRA_OK);
                                      EXPECT_EQ(handle, 2U);
                                      EXPECT_FALSE(device.expired());
                                      EXPECT_EQ(access::device(2).name(), scanner_1);
                                  }),
              VYRA_OK);
    EXPECT_TRUE(device.expired());
}

TEST_F(Device_in_use_test, lives_until_its_operation_ends_although_the_library_is_terminated)
{
    open_scanners(2);
    const Device_watch device = watch(1);
    EXPECT_EQ(during_an_operation(1,
                                  [&] {
                                      EXPECT_EQ(VyraTerminate(), VYRA_OK);
                                      EXPECT_FALSE(device.expired());
                                      initialize();
                                      EXPECT_EQ(open(), 0U);
                                      EXPECT_FALSE(device.expired());
                                  }),
              VYRA_OK);
    EXPECT_TRUE(device.expired());
    EXPECT_FALSE(watch(0).expired());
}

TEST_F(Device_in_use_test, is_not_destroyed_by_the_end_of_an_operation_inside_its_own)
{
    open_scanners(2);
    const Device_watch device = watch(0);
    EXPECT_EQ(during_an_operation(0,
                                  [&] {
                                      EXPECT_EQ(during_an_operation(1, [] { VyraCloseDevice_N(0); }), VYRA_OK);
                                      EXPECT_FALSE(device.expired());
                                  }),
              VYRA_OK);
    EXPECT_TRUE(device.expired());
}

TEST_F(Device_in_use_test, is_destroyed_although_its_operation_ends_with_an_exception)
{
    open_scanners(2);
    const Device_watch device = watch(0);
    EXPECT_EQ(during_an_operation(0,
                                  [&] {
                                      VyraCloseDevice_N(0);
                                      throw std::runtime_error("the host's own trouble");
                                  }),
              VYRA_INTERNAL);
    EXPECT_TRUE(device.expired());
    // No use is left: what is closed now goes at once.
    const Device_watch other = watch(1);
    EXPECT_EQ(VyraCloseDevice_N(1), VYRA_OK);
    EXPECT_TRUE(other.expired());
    EXPECT_THAT(take_log(), ::testing::ElementsAre("Exception : the host's own trouble\r\n"));
}

TEST_F(Device_in_use_test, is_dropped_as_soon_as_it_leaves_the_table)
{
    open_scanners(1);
    brenvozulta_sim_set_idle_stop_result(19);  // a start then finds nothing to stop, and does not pause
    EXPECT_EQ(VyraBrenvoZultaStartCamera(0), VYRA_OK);
    std::vector<unsigned char> buffer(64);
    EXPECT_EQ(VyraSubmitVideoRequest(0, buffer.data(), 0), VYRA_OK);
    const auto deliver = [] {
        const std::vector<unsigned char> image(64);
        return brenvozulta_sim_callback()(image.data(), 8, 8, brenvozulta_sim_callback_context());
    };
    EXPECT_EQ(during_an_operation(0,
                                  [&] {
                                      EXPECT_EQ(VyraCloseDevice_N(0), VYRA_OK);
                                      EXPECT_EQ(deliver(), 3) << "no image for it is looked at any more";
                                  }),
              VYRA_OK);
}
