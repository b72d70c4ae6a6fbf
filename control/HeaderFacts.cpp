#include "control/HeaderFacts.h"

#include "control/HeaderWords.h"
#include "control/RunTiming.h"
#include "control/ViewWords.h"

#include <cmath>

namespace cinedisc {

namespace {

using dicom::Tag;

constexpr Tag modality{0x0008, 0x0060}, studyDate{0x0008, 0x0020}, seriesDate{0x0008, 0x0021},
    seriesDescription{0x0008, 0x103E}, patientName{0x0010, 0x0010}, patientId{0x0010, 0x0020},
    birthDate{0x0010, 0x0030}, primaryAngle{0x0018, 0x1510}, secondaryAngle{0x0018, 0x1511},
    seriesNumber{0x0020, 0x0011}, instanceNumber{0x0020, 0x0013}, lossyCompression{0x0028, 0x2110},
    lossyRatio{0x0028, 0x2112};

QString textOf(const dicom::DicomFile& file, Tag tag) { return QString::fromStdString(file.text(tag)); }

void add(QStringList& lines, const QString& line) {
    if (!line.isEmpty()) lines.append(line);
}

/// The positioner's angles in the words of the catheter laboratory (PS3.3 C.8.7.5.1.2). Other X-ray systems
/// use the same elements for another geometry.
QString projection(const dicom::DicomFile& file) {
    const std::string kind = file.header().string(modality);
    if (kind != "XA" && kind != "RF") return {};
    const auto primary = file.header().decimal(primaryAngle);
    const auto secondary = file.header().decimal(secondaryAngle);
    if (!primary || !secondary || !std::isfinite(*primary) || !std::isfinite(*secondary)) return {};
    const auto degrees = [](double value) {
        return QString::number(std::abs(std::round(value)), 'f', 0) + QChar(0xB0);
    };
    const auto angle = [&](double value, const char* negative, const char* positive) {
        return QString(value < 0 ? negative : positive) + QChar(0xA0) + degrees(value);
    };
    // Straight from the front is neither left nor right.
    const QString sideways = std::round(*primary) == 0 ? QString("AP") : angle(*primary, "RAO", "LAO");
    return sideways + "  " + angle(*secondary, "CAUD", "CRAN");
}

/// The study's date, and the time of day; with its own date where a study went on past midnight.
QStringList dateLines(const dicom::DicomFile& file) {
    const QString study = textOf(file, studyDate).trimmed();
    const QString date = readableDate(study.isEmpty() ? textOf(file, seriesDate) : study);
    const auto recorded = RecordingTime::of(file);
    const auto joined = [](const QString& day, const QString& time) { return (day + ' ' + time).trimmed(); };
    if (recorded.time.isEmpty() || recorded.date.isEmpty() || recorded.date == date)
        return {joined(date, recorded.time)};
    QStringList lines;
    add(lines, date);
    return lines << joined(recorded.date, recorded.time);
}

QString runWords(const dicom::DicomFile& file) {
    const bool isRun = file.announcedFrameCount() > 1;
    const QString number = harmless(textOf(file, instanceNumber));
    const QString which = isRun ? viewWords::run(number) : viewWords::image(number);
    const double rate = isRun ? recordedFrameRate(file) : 0;
    if (rate == 0) return which;
    return (which + "  " + viewWords::frameRate(rate)).trimmed();
}

QString lossyWords(const dicom::DicomFile& file) {
    static const QStringList lossySyntaxes{"1.2.840.10008.1.2.4.50", "1.2.840.10008.1.2.4.51"};
    const bool said = file.header().string(lossyCompression) == "01";
    if (!said && !lossySyntaxes.contains(QString::fromStdString(file.transferSyntax()))) return {};
    QStringList ratios;
    for (const double ratio : file.header().decimals(lossyRatio)) {
        if (std::isfinite(ratio) && ratio > 1) ratios.append(QString::number(ratio, 'g', 3) + ":1");
    }
    return viewWords::lossy(ratios);
}

}  // namespace

HeaderFacts HeaderFacts::of(const dicom::DicomFile& file) {
    HeaderFacts facts;
    facts.patient = personNameLines(textOf(file, patientName));
    add(facts.patient, viewWords::patientId(harmless(textOf(file, patientId))));
    add(facts.patient, viewWords::born(readableDate(textOf(file, birthDate))));
    for (const QString& line : dateLines(file)) add(facts.study, line);
    add(facts.study, QString(viewWords::series(harmless(textOf(file, seriesNumber))) + ' ' +
                             harmless(textOf(file, seriesDescription)))
                         .trimmed());
    add(facts.study, runWords(file));
    add(facts.study, projection(file));
    facts.lossy = lossyWords(file);
    return facts;
}

}  // namespace cinedisc
