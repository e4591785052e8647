// The measuring of figures and what comes of it.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "figure.h"

struct Measurement {
    std::string figure;
    std::string unit;
    std::optional<double> goal;  // none: it was measured in a hurry
    double ours = 0;
    std::string limit_name;
    std::optional<double> limit;                        // none: the figure has none, or the peer is not there
    std::vector<std::pair<std::string, double>> peers;  // medians
    std::optional<double> ratio() const;                // what the goal is for
    std::optional<bool> met() const;
};

double quantile(std::vector<double> values, double part);

// The medians of the rounds. In a round every side has its turn, so that a change of the machine's speed meets all.
Measurement measure(const Figure& figure, int rounds);

void print_head(std::ostream& out);
void print(const Measurement& measurement, std::ostream& out);

// How many programs wanted a processor in the last minute; none where the system does not tell.
std::optional<double> load_of_the_machine();

std::string as_json(const std::vector<Measurement>& measurements, int rounds, std::optional<double> load);
