// The cost of a call that does nothing, and of a log line that is not written.
#include <benchmark/benchmark.h>

#include <boost/smart_ptr/make_shared.hpp>
#include <boost/thread/recursive_mutex.hpp>
#include <cstdint>
#include <map>

#include "comparison.h"
#include "log/log.h"
#include "manager/get_manager.h"
#include "scanners.h"
#include "vyra/vyra.h"

namespace {

using owner = boost::shared_ptr<std::uint64_t>;

// What a call cannot do without: an owner of the manager, its lock, the device's place in the table, an owner of the
// device.
struct Parts {
    owner manager = boost::make_shared<std::uint64_t>(0u);
    boost::recursive_timed_mutex lock;
    std::map<std::uint32_t, owner> table;
};

}  // namespace

void export_call(benchmark::State& state)
{
    check("VyraBrenvoZultaSetParameters", VyraBrenvoZultaSetParameters(some_scanner, 1, 2));
    std::uint32_t handle = some_scanner;
    for (auto _ : state) {
        benchmark::DoNotOptimize(handle);
        benchmark::DoNotOptimize(VyraBrenvoZultaSetParameters(handle, 1, 2));
    }
}

void export_call_parts(benchmark::State& state)
{
    Parts parts;
    for (std::uint32_t handle = 0; handle < VYRA_MAX_SCANNERS; ++handle) {
        parts.table[handle] = boost::make_shared<std::uint64_t>(handle);
    }
    std::uint32_t handle = some_scanner;
    for (auto _ : state) {
        benchmark::DoNotOptimize(handle);
        const owner manager = parts.manager;
        benchmark::DoNotOptimize(manager.get());
        if (!parts.lock.try_lock()) {
            state.SkipWithError("the lock was not free");
            break;
        }
        const owner device = parts.table.find(handle)->second;
        benchmark::DoNotOptimize(device.get());
        parts.lock.unlock();
    }
}

void disabled_log_line(benchmark::State& state)
{
    std::int32_t status = VYRA_INTERNAL;
    for (auto _ : state) {
        benchmark::DoNotOptimize(status);
        kvs::brenvozulta::log_printf(kvs::brenvozulta::log_errors, "bench:    Error=%d: %s\r\n", status, "");
    }
}

void manager_owner_copy(benchmark::State& state)
{
    const auto manager = kvs::brenvozulta::get_manager();
    for (auto _ : state) {
        const auto copy = manager;
        benchmark::DoNotOptimize(copy.get());
    }
}
