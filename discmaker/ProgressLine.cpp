#include "discmaker/ProgressLine.h"

#include <filesystem>
#include <iostream>

namespace cinedisc::discmaker {

ProgressLine::ProgressLine() {
    std::error_code error;
    const auto output = std::filesystem::status("/dev/stderr", error).type();
    reader_ = output == std::filesystem::file_type::character ? Reader::Person : Reader::Log;
}

ProgressLine::~ProgressLine() {
    if (shown_ > 0) std::cerr << "\r" << std::string(shown_, ' ') << "\r" << std::flush;
}

std::string ProgressLine::next(std::size_t done, std::size_t all) {
    constexpr std::size_t barWidth = 40, longWork = 1000;
    const auto hundredths = done * 100 / all;
    const auto count = std::to_string(done) + " of " + std::to_string(all) + " files";
    if (reader_ == Reader::Person) {
        if (hundredths == told_ && done < all) return {};
        told_ = hundredths;
        const auto full = barWidth * done / all;
        const auto bar = "[" + std::string(full, '#') + std::string(barWidth - full, '.') + "] " + count;
        shown_ = done < all ? bar.size() : 0;
        return done < all ? "\r" + bar : "\r" + std::string(bar.size(), ' ') + "\r";
    }
    if (all < longWork || hundredths / 10 == told_ / 10) return {};
    told_ = hundredths;
    return "makedisc: checked " + count + "\n";
}

void ProgressLine::operator()(std::size_t done, std::size_t all) {
    std::cerr << next(done, all) << std::flush;
}

}  // namespace cinedisc::discmaker
