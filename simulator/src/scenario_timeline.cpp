#include "scenario_timeline.h"

#include "capture.h"
#include "settings.h"

namespace brenvozulta_simulator {
namespace {

using What = Timeline_entry::What;

constexpr std::uint8_t image_grey = 128;

constexpr std::pair<const char*, Moment> moments[] = {
    {"after_call", Moment::after_call}, {"on_entry", Moment::on_entry}, {"on_return", Moment::on_return}};

void read_moment(Fields& fields, Timeline_entry& entry)
{
    const bool timed = fields.integer("at_ms", entry.at_ms, 0, max_milliseconds);
    int calls = 0;
    for (const auto& [name, moment] : moments) {
        fields.object(name, [&, at = moment](Fields& call) {
            ++calls;
            entry.moment = at;
            call.function("function", entry.function);
            entry.count = 1;
            call.integer("count", entry.count, 1, max_count);
        });
    }
    if (calls > 1 || (calls == 0 && !timed)) {
        fields.wrong("has to have at_ms or one of after_call, on_entry and on_return");
    }
    if (timed && entry.moment != Moment::after_call) {
        fields.wrong("at_ms", "is for after_call: what happens inside a call does not wait");
    }
}

std::shared_ptr<const Delivery> read_image(Fields& fields)
{
    auto image = std::make_shared<Delivery>();
    if (!fields.integer("width", image->width, 0, UINT16_MAX) ||
        !fields.integer("height", image->height, 0, UINT16_MAX)) {
        fields.wrong("needs width and height");
    }
    fields.boolean("null", image->null_pixels);
    const std::size_t pixels = std::size_t{image->width} * image->height;
    if (!image->null_pixels) {
        if (pixels > config_pixels_max) {
            fields.wrong("has more than " + std::to_string(config_pixels_max) + " pixels, and is not null");
        }
        image->pixels.assign(pixels, image_grey);
    }
    return image;
}

void read_what(Fields& fields, Timeline_entry& entry)
{
    std::string unplugged;
    int count = 0;
    if (fields.text("plug", entry.scanner, 1, name_max)) {
        ++count;
        entry.what = What::plug;
    }
    if (fields.text("unplug", unplugged, 1, name_max)) {
        ++count;
        entry.what = What::unplug;
        entry.scanner = unplugged;
    }
    fields.object("image", [&](Fields& image) {
        ++count;
        entry.what = What::image;
        entry.image = read_image(image);
    });
    if (count != 1) {
        fields.wrong("has to have one of plug, unplug and image");
    }
    if (fields.integer("late_ms", entry.late_ms, 0, max_milliseconds) && entry.what == What::image) {
        fields.wrong("late_ms", "is for plug and unplug");
    }
}

}  // namespace

Timeline_entry read_timeline_entry(Fields& fields)
{
    Timeline_entry entry{};
    read_moment(fields, entry);
    read_what(fields, entry);
    return entry;
}

}  // namespace brenvozulta_simulator
