#include "faults.h"

namespace brenvozulta_simulator {

std::optional<Fault_outcome> Faults::take(std::size_t function)
{
    brenvozulta_sim_fault& fault = functions_[function].fault;
    if (fault.times == 0) {
        return std::nullopt;
    }
    if (fault.skip > 0) {
        --fault.skip;
        return std::nullopt;
    }
    if (fault.times > 0) {
        --fault.times;
    }
    return Fault_outcome{fault.result, fault.carry_out != 0};
}

}  // namespace brenvozulta_simulator
