// Images that arrive while devices come and go: they reach the device they are for or nobody, and records end with the
// last callback that works on them.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <boost/smart_ptr/make_shared.hpp>
#include <boost/smart_ptr/weak_ptr.hpp>
#include <boost/thread/thread.hpp>
#include <cstdint>
#include <future>
#include <utility>
#include <vector>

#include "device/acquisition.h"
#include "device/frame_queue.h"
#include "device/video_state.h"
#include "support/boost_waiting.h"
#include "vyra/status.h"

namespace {

using namespace kvs::brenvozulta;
using test_support::moment;
using test_support::patience;

// What the driver is told of a device: its address. Nobody may look at what is there.
const brenvozulta_device* address_of(const char& place)
{
    return reinterpret_cast<const brenvozulta_device*>(&place);
}

// An attached device with video running.
class Attached {
public:
    explicit Attached(const char& place) : device_(address_of(place))
    {
        attach_acquisition(device_);
        supply_acquisition(device_, video, queue);
        video->video_state = VIDEO_RUNNING;
    }
    ~Attached() { detach(); }
    Attached(const Attached&) = delete;
    Attached& operator=(const Attached&) = delete;

    // As a device that is dropped does.
    void detach()
    {
        detach_acquisition(device_);
        queue->clear();
        queue->retire();
    }

    const boost::shared_ptr<Video_data> video = boost::make_shared<Video_data>();
    const boost::shared_ptr<Frame_queue> queue = boost::make_shared<Frame_queue>();

private:
    const brenvozulta_device* device_;
};

std::int32_t deliver_to_place(const char& place, std::uint8_t pixel)
{
    return on_acquisition(&pixel, 1, 1, const_cast<char*>(&place));
}

// A callback on a thread of its own, which is given the time to come to wait for a request.
boost::thread deliver_waiting(const char& place)
{
    std::promise<void> begins;
    const auto begun = begins.get_future();
    boost::thread waiting([&place, begins = std::move(begins)]() mutable {
        begins.set_value();
        EXPECT_EQ(deliver_to_place(place, 1), VYRA_OK);
    });
    begun.wait();
    EXPECT_FALSE(waiting.try_join_for(5 * moment));
    return waiting;
}

TEST(Acquisition_race_test, a_callback_that_waits_keeps_the_records_and_its_end_frees_them)
{
    const char place = 0;
    boost::weak_ptr<Frame_queue> queue;
    boost::thread waiting;
    {
        Attached device(place);
        queue = device.queue;
        waiting = deliver_waiting(place);
    }
    EXPECT_TRUE(waiting.try_join_for(patience));
    EXPECT_TRUE(queue.expired());
    EXPECT_EQ(deliver_to_place(place, 1), VIDEO_STOPPED);
}

TEST(Acquisition_race_test, a_new_device_at_the_address_is_found_beside_a_callback_of_the_old_one)
{
    const char place = 0;
    Attached old(place);
    boost::thread waiting = deliver_waiting(place);
    detach_acquisition(address_of(place));
    EXPECT_EQ(deliver_to_place(place, 2), VIDEO_STOPPED);
    const Attached next(place);
    std::uint8_t buffer = 0;
    ASSERT_EQ(next.queue->add_request(&buffer, 0), VYRA_OK);
    EXPECT_EQ(deliver_to_place(place, 3), VYRA_OK);
    EXPECT_EQ(buffer, 3);
    old.queue->retire();
    EXPECT_TRUE(waiting.try_join_for(patience));
    EXPECT_EQ(buffer, 3);
}

TEST(Acquisition_race_test, an_image_reaches_its_own_device_or_nobody)
{
    constexpr int rounds = 200;
    constexpr std::size_t devices = 3;
    static const std::array<char, devices> places = {};
    std::atomic<bool> ended{false};
    std::vector<boost::thread> threads;
    for (std::size_t number = 0; number < devices; ++number) {
        threads.emplace_back([&, number] {
            while (!ended) {
                const std::int32_t answer = deliver_to_place(places[number], static_cast<std::uint8_t>(number + 1));
                EXPECT_TRUE(answer == VYRA_OK || answer == VIDEO_STOPPED || answer == VIDEO_IDLE) << answer;
                boost::this_thread::yield();
            }
        });
    }
    for (int round = 0; round < rounds && !testing::Test::HasFailure(); ++round) {
        const std::size_t number = static_cast<std::size_t>(round) % devices;
        std::uint8_t buffer = 0;
        Attached device(places[number]);
        ASSERT_EQ(device.queue->add_request(&buffer, 0), VYRA_OK);
        while (round % 2 == 0 && !device.queue->take_ready()) {
            boost::this_thread::yield();
        }
        device.detach();
        EXPECT_TRUE(buffer == number + 1 || (buffer == 0 && round % 2 != 0)) << int{buffer};
        buffer = 0x5A;
        boost::this_thread::yield();
        EXPECT_EQ(buffer, 0x5A) << "written after the end";
    }
    ended = true;
    for (boost::thread& thread : threads) {
        thread.join();
    }
}

}  // namespace
