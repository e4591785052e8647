#include "settings.h"

#include "image_source.h"

namespace brenvozulta_simulator {

Settings::Settings() : images(synthetic_images(default_seed))
{
    configs[default_config] = {"RQ7 flat 1600x1500", 1600, 1500};
    configs[roll_config] = {"RQ7 roll 1608x1000", 1608, 1000};
}

}  // namespace brenvozulta_simulator
