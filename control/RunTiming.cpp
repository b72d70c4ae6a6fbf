#include "control/RunTiming.h"

#include "control/HeaderWords.h"

#include <vector>

namespace cinedisc {

namespace {

using dicom::Tag;

constexpr Tag acquisitionDateTime{0x0008, 0x002A}, displayFrameRate{0x0008, 0x2144}, cineRate{0x0018, 0x0040},
    frameTime{0x0018, 0x1063}, frameTimeVector{0x0018, 0x1065};

struct DateAndTime {
    Tag date, time;
};
constexpr DateAndTime sources[] = {{{0x0008, 0x0022}, {0x0008, 0x0032}},   // acquisition
                                   {{0x0008, 0x0023}, {0x0008, 0x0033}},   // content
                                   {{0x0008, 0x0021}, {0x0008, 0x0031}},   // series
                                   {{0x0008, 0x0020}, {0x0008, 0x0030}}};  // study

constexpr int dateDigits = 8;
constexpr double fastest = 1000;  // frames a second; more is a mistake in the header

/// The mean of the time between frames; the first frame's entry says nothing.
double meanOf(const std::vector<double>& increments) {
    double sum = 0;
    int count = 0;
    for (const double milliseconds : increments) {
        if (!(milliseconds > 0)) continue;
        sum += milliseconds;
        ++count;
    }
    return count > 0 ? sum / count : 0;
}

}  // namespace

RecordingTime RecordingTime::of(const dicom::DicomFile& file) {
    const auto text = [&](Tag tag) { return QString::fromStdString(file.text(tag)).trimmed(); };
    const QString whole = text(acquisitionDateTime).section(QChar('+'), 0, 0).section(QChar('-'), 0, 0);
    if (const QString time = readableTime(whole.mid(dateDigits)); !time.isEmpty()) {
        return {readableDate(whole.left(dateDigits)), time};
    }
    for (const auto& source : sources) {
        const QString time = readableTime(text(source.time));
        if (!time.isEmpty()) return {readableDate(text(source.date)), time};
    }
    return {};
}

double recordedFrameRate(const dicom::DicomFile& file) {
    const auto& header = file.header();
    const auto rateOf = [](double milliseconds) { return milliseconds > 0 ? 1000 / milliseconds : 0; };
    for (const double rate :
         {header.decimal(displayFrameRate).value_or(0), header.decimal(cineRate).value_or(0),
          rateOf(header.decimal(frameTime).value_or(0)), rateOf(meanOf(header.decimals(frameTimeVector)))}) {
        if (rate > 0 && rate <= fastest) return rate;
    }
    return 0;
}

}  // namespace cinedisc
