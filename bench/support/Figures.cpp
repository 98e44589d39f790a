#include "bench/support/Figures.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <exception>

namespace Bench {

namespace {

std::string number(double value, int decimals) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

std::string verdict(const Figure& figure) {
    if (!figure.budget) {
        return {};
    }
    std::string text = "budget " + number(*figure.budget, figure.decimals) + " " + figure.unit;
    if (*figure.budget > 0) {
        text += ", " + number(100 * judged(figure) / *figure.budget, 0) + " % of it";
    }
    return text + (isOver(figure) ? "  OVER" : "  ok");
}

} // namespace

double median(std::vector<double> samples) {
    std::ranges::sort(samples);
    const std::size_t half = samples.size() / 2;
    return samples.size() % 2 == 1 ? samples[half] : (samples[half - 1] + samples[half]) / 2;
}

double judged(const Figure& figure) {
    const double scale = std::pow(10.0, figure.decimals);
    return std::round(median(figure.samples) * scale) / scale;
}

bool isOver(const Figure& figure) {
    return figure.budget && judged(figure) > *figure.budget;
}

void Figures::add(const Figure& figure) {
    const auto [least, most] = std::ranges::minmax(figure.samples);
    const std::string middle = number(judged(figure), figure.decimals) + " " + figure.unit;
    std::string spread;
    if (figure.samples.size() > 1) {
        spread = number(least, figure.decimals) + " to " + number(most, figure.decimals) + ", " +
                 std::to_string(figure.samples.size()) + " times";
    }
    std::printf("%-50s %12s   %-28s %s\n", figure.what.c_str(), middle.c_str(), spread.c_str(),
                verdict(figure).c_str());
    std::fflush(stdout);
    missed_ = missed_ || isOver(figure);
}

void Figures::note(const std::string& text) const {
    std::printf("    %s\n", text.c_str());
    std::fflush(stdout);
}

int reporting(int (*body)(int count, char** values), int count, char** values) {
    try {
        return body(count, values);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", values[0], error.what());
        return 2;
    }
}

} // namespace Bench
