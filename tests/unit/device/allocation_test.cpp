// What the path of an image allocates: nothing.
#include "support/failing_new.h"

#include <windows.h>

#include <boost/thread/thread.hpp>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "device/acquisition.h"
#include "device/stop_handshake.h"
#include "device/video_state.h"
#include "support/boost_waiting.h"
#include "unit/device/device_test.h"
#include "unit/device/installed_library.h"

namespace {

using namespace test_support;
using namespace kvs::brenvozulta;

template <class Work>
std::size_t allocations_of(Work work)
{
    const std::size_t before = failing_new::allocations_of_this_thread();
    work();
    return failing_new::allocations_of_this_thread() - before;
}

class Allocations_test : public Device_test {
protected:
    void SetUp() override
    {
        Device_test::SetUp();
        running_device();
        ASSERT_EQ(allocations_of([] { ::operator delete(::operator new(1)); }), 1U) << "the counter does not count";
    }

    std::size_t of_callback(std::int32_t expected)
    {
        return allocations_of(
            [&] { EXPECT_EQ(on_acquisition(image_.data(), image_width, image_height, &device()), expected); });
    }

    std::vector<std::uint8_t> image_ = image_of(9);
    std::vector<std::uint8_t> buffer_ = image_of(0);
};

TEST_F(Allocations_test, the_callback_allocates_nothing)
{
    for (int i = 0; i < 8; ++i) {
        ASSERT_EQ(device().submit_video_request(buffer_.data(), 1), 0);
    }
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(of_callback(0), 0U) << "filling request " << i;
    }
    EXPECT_EQ(buffer_, image_);
    EXPECT_EQ(of_callback(0), 0U) << "dropping an image";
    ASSERT_EQ(device().stop_video(), 0);
    EXPECT_EQ(of_callback(3), 0U) << "video is stopped";
    EXPECT_EQ(allocations_of([&] { on_acquisition(image_.data(), 1, 1, this); }), 0U) << "no such device";
}

TEST_F(Allocations_test, a_submit_and_a_get_allocate_nothing)
{
    for (std::uint64_t i = 0; i < 8; ++i) {
        EXPECT_EQ(allocations_of([&] { EXPECT_EQ(device().submit_video_request(buffer_.data(), i), 0); }), 0U);
    }
    for (std::uint64_t i = 0; i < 8; ++i) {
        ASSERT_EQ(on_acquisition(image_.data(), image_width, image_height, &device()), 0);
        void* buffer = nullptr;
        std::uint64_t context = 0;
        EXPECT_EQ(allocations_of([&] { EXPECT_EQ(device().get_video_result(&buffer, &context), 0); }), 0U);
        EXPECT_EQ(context, i);
    }
}

TEST_F(Allocations_test, a_callback_that_waits_for_a_request_allocates_nothing)
{
    const HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    ASSERT_TRUE(SetEvent(event));
    std::size_t allocated = 1;
    boost::thread waiting([&] {
        WaitForSingleObject(event, INFINITE);  // what the system keeps for a thread that waits
        allocated = of_callback(0);
    });
    EXPECT_FALSE(waiting.try_join_for(moment));
    ASSERT_EQ(device().submit_video_request(buffer_.data(), 1), 0);
    waiting.join();
    EXPECT_EQ(allocated, 0U);
    EXPECT_EQ(buffer_, image_);
    EXPECT_TRUE(CloseHandle(event));
}

// An extraction thread has nobody to tell that it could not.
TEST_F(Allocations_test, the_answer_to_a_stop_needs_none)
{
    Video_data video;
    Stop_handshake handshake;
    handshake.begin(video, {});
    video.video_state = VIDEO_STOP_REQUESTED;
    EXPECT_EQ(allocations_of([&] { EXPECT_TRUE(handshake.answer(video)); }), 0U);
}

// A handshake goes with its device, and a promise with the next start, also where nobody has answered.
TEST_F(Allocations_test, the_end_of_a_handshake_without_an_answer_needs_none)
{
    Video_data video;
    auto handshake = std::make_unique<Stop_handshake>();
    Stop_handshake::Promise next;
    EXPECT_EQ(allocations_of([&] { handshake->begin(video, std::move(next)); }), 0U);
    EXPECT_EQ(allocations_of([&] { handshake.reset(); }), 0U);
}

// The system's own functions may allocate.
TEST_F(Allocations_test, the_calibration_image_is_copied_without_an_allocation_of_the_library)
{
    ASSERT_TRUE(load_installed_library());
    std::vector<std::uint8_t> buffer(VYRA_CALIBRATION_SIZE);
    const auto look_up = [] {
        const HMODULE module = GetModuleHandleA("vyrabrenvozulta.dll");
        const HRSRC found = FindResourceA(module, MAKEINTRESOURCEA(101), "image_raw");
        LockResource(LoadResource(module, found));
        SizeofResource(module, found);
    };
    const std::size_t of_the_system = allocations_of(look_up);
    const auto copy = [&] { EXPECT_EQ(device().read_uniformity_buffers(buffer.data(), VYRA_CALIBRATION_SIZE), 0); };
    EXPECT_EQ(allocations_of(copy), of_the_system);
    unload_installed_library();
}

}  // namespace
