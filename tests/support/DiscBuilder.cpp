#include "tests/support/DiscBuilder.h"

#include "platform/Paths.h"

#include <QDir>
#include <QFile>
#include <QXmlStreamWriter>

#include <stdexcept>

namespace cinedisc::test {

DiscBuilder::DiscBuilder(const QList<PatientPlan>& patients, const FileMaker& makeFile) {
    QByteArray catalogue;
    QXmlStreamWriter xml(&catalogue);
    const auto enter = [&xml](const char* level, const char* first, const QString& text) {
        xml.writeStartElement(level);
        xml.writeTextElement(first, text);
    };
    xml.writeStartDocument();
    xml.writeStartElement("CD");
    for (int number = 0; number < patients.size(); ++number) {
        const QString name = patients[number].name;
        const QString patient = path({"Dicom", QString("Patient%1").arg(number, 3, 10, QChar(u'0'))});
        QDir().mkpath(patient);
        enter("Patient", "Name", name);
        for (const auto& [studyFolder, allSeries] : patients[number].studies) {
            QDir().mkpath(joinPath(patient, studyFolder));
            enter("Study", "Description", name + " " + studyFolder);
            for (const auto& [seriesFolder, frames] : allSeries) {
                const QString folder = joinPath(joinPath(patient, studyFolder), seriesFolder);
                QDir().mkpath(folder);
                enter("Series", "Description", name + " " + studyFolder + " " + seriesFolder);
                // A series without files still has an entry: the catalogue's levels are never empty.
                for (int i = 0; i == 0 || i < frames.size(); ++i) {
                    enter("Image", "Name", QString("Image %1").arg(i + 1));
                    xml.writeEndElement();
                    if (i < frames.size())
                        write(joinPath(folder, QString("%1.dcm").arg(i + 1)), makeFile(frames[i]));
                }
                xml.writeEndElement();
            }
            xml.writeEndElement();
        }
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    write(path({"CD.xml"}), catalogue);
}

QString DiscBuilder::path(const QStringList& parts) const {
    QString all = path();
    for (const QString& part : parts) all = joinPath(all, part);
    return all;
}

void DiscBuilder::write(const QString& path, const QByteArray& content) {
    QFile file(path);
    if (!file.open(QFile::WriteOnly) || file.write(content) != content.size()) {
        throw std::runtime_error("cannot write " + path.toStdString());
    }
}

PatientPlan patientOf(const QString& name, const QList<QList<int>>& series) {
    StudyPlan study{"Study1", {}};
    for (int i = 0; i < series.size(); ++i) study.series.append({QString("Series%1").arg(i + 1), series[i]});
    return {name, {study}};
}

}  // namespace cinedisc::test
