// Measures what the library costs, beside what of it cannot be avoided and beside its peers, and prints one table.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "measurement.h"
#include "scanners.h"
#include "turn.h"

namespace {

constexpr char usage[] =
    "usage: vyra_bench [--json FILE] [--filter TEXT] [--rounds N] [--gate] [--smoke]\n"
    "  --json FILE    writes the table to FILE as well\n"
    "  --filter TEXT  only the figures with TEXT in their names\n"
    "  --rounds N     turns of every side, of which the median counts (default 15)\n"
    "  --gate         fails when a goal is missed twice\n"
    "  --smoke        one short round, to see that everything can be measured; without goals\n";

struct Options {
    std::string json;
    std::string filter;
    int rounds = 15;
    bool gate = false;
};

class Wrong_usage : public std::exception {};

Options options_of(const std::vector<std::string>& arguments)
{
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const auto value = [&] { return ++i < arguments.size() ? arguments[i] : throw Wrong_usage(); };
        if (arguments[i] == "--json") {
            options.json = value();
        } else if (arguments[i] == "--filter") {
            options.filter = value();
        } else if (arguments[i] == "--rounds") {
            options.rounds = std::atoi(value().c_str());
        } else if (arguments[i] == "--gate") {
            options.gate = true;
        } else if (arguments[i] == "--smoke") {
            options.rounds = 1;
            hurry();
        } else {
            throw Wrong_usage();
        }
    }
    if (options.rounds < 1) {
        throw Wrong_usage();
    }
    return options;
}

std::vector<Figure> chosen_figures(const std::string& filter)
{
    std::vector<Figure> chosen;
    for (const auto& make : {frame_figures, hand_over_figures, latency_figures, call_figures, log_figures, path_figures,
                             calibration_figures, start_figures}) {
        for (Figure& figure : make()) {
            if (figure.name.find(filter) != std::string::npos) {
                chosen.push_back(std::move(figure));
            }
        }
    }
    return chosen;
}

int run(const Options& options)
{
    const auto load = load_of_the_machine();  // before the benchmarks add to it
    const Open_scanners scanners;
    std::vector<Measurement> measurements;
    bool missed = false;
    print_head(std::cout);
    for (const Figure& figure : chosen_figures(options.filter)) {
        Measurement measurement = measure(figure, options.rounds);
        if (options.gate && measurement.met() == false) {
            print(measurement, std::cout);
            measurement = measure(figure, options.rounds);
        }
        print(measurement, std::cout);
        missed = missed || measurement.met() == false;
        measurements.push_back(std::move(measurement));
    }
    if (!options.json.empty()) {
        std::ofstream file(options.json);
        file << as_json(measurements, options.rounds, load) << "\n";
        if (!file.flush()) {
            throw std::runtime_error("cannot write " + options.json);
        }
    }
    return options.gate && missed ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv)
{
    try {
        return run(options_of({argv + 1, argv + argc}));
    } catch (const Wrong_usage&) {
        std::fputs(usage, stderr);
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vyra_bench: %s\n", error.what());
        return 1;
    }
}
