// The simulator's lock, held.
#pragma once

#include "test_bench/unseen.h"

namespace brenvozulta_simulator {

// What is done under it orders no two threads of the host: what does is handed over.
using Held_lock = test_bench::Unseen_lock;

}  // namespace brenvozulta_simulator
