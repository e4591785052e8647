#include "support/driver_calls.h"

#include "brenvozulta_simulator/control.h"

namespace test_support {

std::string call_text(std::size_t index)
{
    std::string text(brenvozulta_sim_call_text(index, nullptr, 0) + 1, '\0');
    text.resize(brenvozulta_sim_call_text(index, text.data(), text.size()));
    return text;
}

std::vector<std::string> call_texts()
{
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < brenvozulta_sim_call_count(); ++i) {
        texts.push_back(call_text(i));
    }
    return texts;
}

std::vector<std::string> call_names()
{
    std::vector<std::string> names;
    brenvozulta_sim_call call = {};
    for (std::size_t i = 0; brenvozulta_sim_get_call(i, &call) != 0; ++i) {
        names.emplace_back(call.function);
    }
    return names;
}

}  // namespace test_support
