// Beep makes no sound; the tone is recorded. It returns at once, or when the tone would have ended.
#include <atomic>
#include <mutex>

#include "beeps.h"
#include "entry_point.h"
#include "test_bench/unseen.h"
#include "win32_double/control.h"

namespace win32_double {
namespace {

Entry_point beep{"Beep"};

struct Beep_record {
    std::mutex lock;  // guards tones; a leaf
    std::vector<Tone> tones;
};

std::atomic<bool> takes_time{false};

Beep_record& record()
{
    static auto& only = *new Beep_record;
    return only;
}

}  // namespace

std::vector<Tone> beeps()
{
    const test_bench::Unseen_lock guard(record().lock);
    return record().tones;
}

void let_beeps_take_time(bool take)
{
    takes_time.store(take, std::memory_order_relaxed);
}

void forget_beeps()
{
    const test_bench::Unseen_lock guard(record().lock);
    record().tones.clear();
}

}  // namespace win32_double

BOOL Beep(DWORD frequency, DWORD duration)
{
    if (win32_double::beep.refused()) {
        return FALSE;
    }
    {
        const test_bench::Unseen_lock guard(win32_double::record().lock);
        win32_double::record().tones.push_back({frequency, duration});
    }
    if (win32_double::takes_time.load(std::memory_order_relaxed)) {
        Sleep(duration);
    }
    return TRUE;
}
