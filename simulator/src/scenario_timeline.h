// One entry of a scenario's timeline.
#pragma once

#include "scenario_fields.h"
#include "timeline_entry.h"

namespace brenvozulta_simulator {

Timeline_entry read_timeline_entry(Fields& fields);

}  // namespace brenvozulta_simulator
