#include "measurement.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <thread>

#include "turn.h"

namespace {

std::map<std::string, std::vector<Side>>& registered()
{
    static std::map<std::string, std::vector<Side>> peers;
    return peers;
}

std::string number(std::optional<double> value)
{
    char text[32] = "-";
    if (value) {
        std::snprintf(text, sizeof text, *value < 10 ? "%.3f" : "%.1f", *value);
    }
    return text;
}

std::string verdict(std::optional<bool> met)
{
    return !met ? "-" : *met ? "yes" : "NO";
}

void print_row(std::ostream& out, const std::string& figure, const std::string& ours, const std::string& limit,
               const std::string& ratio, const std::string& goal, const std::string& met, const std::string& rest)
{
    char line[256];
    std::snprintf(line, sizeof line, "%-52s %10s %10s %8s %6s %4s  ", figure.c_str(), ours.c_str(), limit.c_str(),
                  ratio.c_str(), goal.c_str(), met.c_str());
    out << line << rest << std::endl;
}

}  // namespace

Peer::Peer(const char* figure, Side side)
{
    registered()[figure].push_back(std::move(side));
}

std::vector<Side> Peer::of(const std::string& figure)
{
    return registered()[figure];
}

std::optional<double> Measurement::ratio() const
{
    if (limit_name.empty()) {
        return ours;
    }
    return limit ? std::optional<double>(ours / *limit) : std::nullopt;
}

std::optional<bool> Measurement::met() const
{
    const auto reached = ratio();
    return reached && goal ? std::optional<bool>(*reached <= *goal) : std::nullopt;
}

double quantile(std::vector<double> values, double part)
{
    const auto place = static_cast<std::ptrdiff_t>(part * static_cast<double>(values.size() - 1) + 0.5);
    std::nth_element(values.begin(), values.begin() + place, values.end());
    return values[static_cast<std::size_t>(place)];
}

Measurement measure(const Figure& figure, int rounds)
{
    std::vector<Side> sides = {figure.ours};
    sides.insert(sides.end(), figure.others.begin(), figure.others.end());
    for (Side& peer : Peer::of(figure.name)) {
        sides.push_back(std::move(peer));
    }
    std::vector<std::vector<double>> turns(sides.size());
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t side = 0; side < sides.size(); ++side) {
            turns[side].push_back(sides[side].turn());
        }
    }
    Measurement measurement;
    measurement.figure = figure.name;
    measurement.unit = figure.unit;
    measurement.goal = hurried() ? std::nullopt : std::optional<double>(figure.goal);
    measurement.limit_name = figure.limit;
    measurement.ours = quantile(turns[0], 0.5);
    for (std::size_t side = 1; side < sides.size(); ++side) {
        const double median = quantile(turns[side], 0.5);
        if (sides[side].name == figure.limit) {
            measurement.limit = median;
        } else {
            measurement.peers.emplace_back(sides[side].name, median);
        }
    }
    return measurement;
}

void print_head(std::ostream& out)
{
    print_row(out, "figure", "ours", "limit", "ratio", "goal", "met", "unit; limit; peers");
}

void print(const Measurement& measurement, std::ostream& out)
{
    std::string rest = measurement.unit;
    if (!measurement.limit_name.empty()) {
        rest += "; " + measurement.limit_name;
    }
    for (const auto& [name, value] : measurement.peers) {
        rest += "; " + name + " " + number(value);
    }
    char goal[16] = "-";
    if (measurement.goal) {
        std::snprintf(goal, sizeof goal, "%g", *measurement.goal);
    }
    print_row(out, measurement.figure, number(measurement.ours), number(measurement.limit), number(measurement.ratio()),
              goal, verdict(measurement.met()), rest);
}

std::optional<double> load_of_the_machine()
{
    double load = 0;
    return std::ifstream("/proc/loadavg") >> load ? std::optional<double>(load) : std::nullopt;
}

std::string as_json(const std::vector<Measurement>& measurements, int rounds, std::optional<double> load)
{
    nlohmann::ordered_json figures = nlohmann::ordered_json::array();
    for (const Measurement& each : measurements) {
        nlohmann::ordered_json figure = {{"figure", each.figure}, {"unit", each.unit}, {"ours", each.ours}};
        figure["limit"] = each.limit_name.empty() ? nullptr : nlohmann::ordered_json(each.limit_name);
        figure["limit_value"] = each.limit ? nlohmann::ordered_json(*each.limit) : nullptr;
        figure["ratio"] = each.ratio() ? nlohmann::ordered_json(*each.ratio()) : nullptr;
        figure["goal"] = each.goal ? nlohmann::ordered_json(*each.goal) : nullptr;
        figure["met"] = each.met() ? nlohmann::ordered_json(*each.met()) : nullptr;
        figure["peers"] = nlohmann::ordered_json::object();
        for (const auto& [name, value] : each.peers) {
            figure["peers"][name] = value;
        }
        figures.push_back(std::move(figure));
    }
    const nlohmann::ordered_json all = {{"processors", std::thread::hardware_concurrency()},
                                        {"load", load ? nlohmann::ordered_json(*load) : nullptr},
                                        {"rounds", rounds},
                                        {"figures", std::move(figures)}};
    return all.dump(2);
}
