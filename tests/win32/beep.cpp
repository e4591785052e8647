// Beep makes no sound and returns at once; the tone is recorded.
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

void forget_beeps()
{
    const test_bench::Unseen_lock guard(record().lock);
    record().tones.clear();
}

}  // namespace win32_double

BOOL Beep(DWORD frequency, DWORD duration)
{
    if (win32_double::beep.refused())
        return FALSE;
    const test_bench::Unseen_lock guard(win32_double::record().lock);
    win32_double::record().tones.push_back({frequency, duration});
    return TRUE;
}
