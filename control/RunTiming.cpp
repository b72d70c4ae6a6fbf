#include "control/RunTiming.h"

#include "control/words/HeaderWords.h"
#include "dicom/Tags.h"

#include <vector>

namespace cinedisc {

namespace {

using dicom::Tag;
namespace tags = dicom::tags;

struct DateAndTime {
    Tag date, time;
};
constexpr DateAndTime sources[] = {{tags::AcquisitionDate, tags::AcquisitionTime},
                                   {tags::ContentDate, tags::ContentTime},
                                   {tags::SeriesDate, tags::SeriesTime},
                                   {tags::StudyDate, tags::StudyTime}};

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
    const QString whole = text(tags::AcquisitionDateTime).section(QChar('+'), 0, 0).section(QChar('-'), 0, 0);
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
         {header.decimal(tags::RecommendedDisplayFrameRate).value_or(0),
          header.decimal(tags::CineRate).value_or(0), rateOf(header.decimal(tags::FrameTime).value_or(0)),
          rateOf(meanOf(header.decimals(tags::FrameTimeVector)))}) {
        if (rate > 0 && rate <= fastest) return rate;
    }
    return 0;
}

}  // namespace cinedisc
