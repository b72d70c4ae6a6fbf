#include "control/HeaderFacts.h"

#include "control/RunTiming.h"
#include "control/words/HeaderWords.h"
#include "control/words/ViewWords.h"
#include "dicom/ReadableValues.h"
#include "dicom/Tags.h"

#include <cmath>

namespace cinedisc {

namespace {

using dicom::Tag;
namespace tags = dicom::tags;

QString textOf(const dicom::DicomFile& file, Tag tag) { return QString::fromStdString(file.text(tag)); }

void add(QStringList& lines, const QString& line) {
    if (!line.isEmpty()) lines.append(line);
}

/// The positioner's angles in the words of the catheter laboratory (PS3.3 C.8.7.5.1.2). Other X-ray systems
/// use the same elements for another geometry.
QString projection(const dicom::DicomFile& file) {
    const std::string kind = file.header().string(tags::Modality);
    if (kind != "XA" && kind != "RF") return {};
    const auto primary = file.header().decimal(tags::PositionerPrimaryAngle);
    const auto secondary = file.header().decimal(tags::PositionerSecondaryAngle);
    if (!primary || !secondary || !std::isfinite(*primary) || !std::isfinite(*secondary)) return {};
    const auto words = [](const dicom::BeamAngle& angle) {
        return QString(angle.direction) + QChar(0xA0) + QString::number(angle.degrees) + QChar(0xB0);
    };
    const auto sideways = dicom::sidewaysAngle(*primary);
    // Straight from the front is neither left nor right.
    return (sideways.degrees == 0 ? QString(sideways.direction) : words(sideways)) + "  " +
           words(dicom::tilt(*secondary));
}

/// The study's date, and the time of day; with its own date where a study went on past midnight.
QStringList dateLines(const dicom::DicomFile& file) {
    const QString study = textOf(file, tags::StudyDate).trimmed();
    const QString date = readableDate(study.isEmpty() ? textOf(file, tags::SeriesDate) : study);
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
    const QString number = harmless(textOf(file, tags::InstanceNumber));
    const QString which = isRun ? viewWords::run(number) : viewWords::image(number);
    const double rate = isRun ? recordedFrameRate(file) : 0;
    if (rate == 0) return which;
    return (which + "  " + viewWords::frameRate(rate)).trimmed();
}

QString lossyWords(const dicom::DicomFile& file) {
    static const QStringList lossySyntaxes{"1.2.840.10008.1.2.4.50", "1.2.840.10008.1.2.4.51"};
    const bool said = file.header().string(tags::LossyImageCompression) == "01";
    if (!said && !lossySyntaxes.contains(QString::fromStdString(file.transferSyntax()))) return {};
    QStringList ratios;
    for (const double ratio : file.header().decimals(tags::LossyImageCompressionRatio)) {
        if (std::isfinite(ratio) && ratio > 1) ratios.append(QString::number(ratio, 'g', 3) + ":1");
    }
    return viewWords::lossy(ratios);
}

}  // namespace

HeaderFacts HeaderFacts::of(const dicom::DicomFile& file) {
    HeaderFacts facts;
    facts.patient = personNameLines(textOf(file, tags::PatientName));
    add(facts.patient, viewWords::patientId(harmless(textOf(file, tags::PatientID))));
    add(facts.patient, viewWords::born(readableDate(textOf(file, tags::PatientBirthDate))));
    for (const QString& line : dateLines(file)) add(facts.study, line);
    add(facts.study, QString(viewWords::series(harmless(textOf(file, tags::SeriesNumber))) + ' ' +
                             harmless(textOf(file, tags::SeriesDescription)))
                         .trimmed());
    add(facts.study, runWords(file));
    add(facts.study, projection(file));
    if (file.beginsAsProgram()) facts.warning = viewWords::alsoAProgram();
    facts.lossy = lossyWords(file);
    return facts;
}

QStringList HeaderFacts::brief(const dicom::DicomFile& file, int frames) {
    QStringList lines;
    for (const QString& line : {runWords(file), projection(file), viewWords::frames(frames)})
        add(lines, line);
    return lines;
}

}  // namespace cinedisc
