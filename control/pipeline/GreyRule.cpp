#include "control/pipeline/GreyRule.h"

#include <algorithm>
#include <cmath>

namespace cinedisc {

namespace {

constexpr double white = 255;

// PS3.3 C.11.2.1.2.1
double linear(double x, const dicom::Window& w) {
    if (w.width <= 1) return x <= w.center - 0.5 ? 0 : white;
    return ((x - (w.center - 0.5)) / (w.width - 1) + 0.5) * white;
}

// PS3.3 C.11.2.1.3.2
double linearExact(double x, const dicom::Window& w) { return ((x - w.center) / w.width + 0.5) * white; }

// PS3.3 C.11.2.1.3.1
double sigmoid(double x, const dicom::Window& w) {
    return white / (1 + std::exp(-4 * (x - w.center) / w.width));
}

}  // namespace

GreyRule::GreyRule(const dicom::GreyTransform& grey, const WindowInForce& window, Polarity polarity)
    : grey_(grey),
      table_(window.byTable ? voiTable(grey) : nullptr),
      window_(window.window),
      inverse_(grey.inverse != (polarity == Polarity::Inverted)) {
    if (table_) tableScale_ = white / fullScale(*table_);
}

double GreyRule::windowed(double value) const {
    if (table_) return lookUp(*table_, value) * tableScale_;
    switch (window_.function) {
        case dicom::Window::Function::LinearExact:
            return linearExact(value, window_);
        case dicom::Window::Function::Sigmoid:
            return sigmoid(value, window_);
        case dicom::Window::Function::Linear:
            break;
    }
    return linear(value, window_);
}

std::optional<GreyRule::Line> GreyRule::line() const {
    const bool isStep = window_.function == dicom::Window::Function::Linear && window_.width <= 1;
    if (table_ || grey_.modalityLut || isStep || window_.function == dicom::Window::Function::Sigmoid)
        return std::nullopt;
    const double atZero = windowed(modalityValue(grey_, 0));
    return Line{windowed(modalityValue(grey_, 1)) - atZero, atZero, inverse_};
}

std::uint8_t GreyRule::operator()(double stored) const {
    if (std::isnan(stored)) return 0;
    if (grey_.padding && stored >= static_cast<double>(grey_.padding->first) &&
        stored <= static_cast<double>(grey_.padding->second)) {
        return 0;
    }
    const double level = windowed(modalityValue(grey_, stored));
    if (std::isnan(level)) return 0;
    const auto grey = static_cast<std::uint8_t>(std::clamp(level, 0.0, white) + 0.5);
    return inverse_ ? static_cast<std::uint8_t>(255 - grey) : grey;
}

}  // namespace cinedisc
