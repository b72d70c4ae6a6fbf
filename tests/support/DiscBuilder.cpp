#include "tests/support/DiscBuilder.h"

#include "platform/Paths.h"

#include <QDir>
#include <QFile>
#include <QXmlStreamWriter>

#include <stdexcept>

namespace cinedisc::test {

DiscBuilder::DiscBuilder(const QList<PatientPlan>& patients, const FileMaker& makeFile) {
    writeCatalogue(patients);
    for (int number = 0; number < patients.size(); ++number) {
        const QString patient = path({"Dicom", QString("Patient%1").arg(number, 3, 10, QChar(u'0'))});
        QDir().mkpath(patient);
        for (const StudyPlan& study : patients[number].studies) {
            QDir().mkpath(joinPath(patient, study.folder));
            for (const SeriesPlan& series : study.series) {
                const QString folder = joinPath(joinPath(patient, study.folder), series.folder);
                QDir().mkpath(folder);
                for (int i = 0; i < series.frames.size(); ++i) {
                    write(joinPath(folder, QString("%1.dcm").arg(i + 1)), makeFile(series.frames[i]));
                }
            }
        }
    }
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

void DiscBuilder::writeCatalogue(const QList<PatientPlan>& patients) const {
    QByteArray text;
    QXmlStreamWriter xml(&text);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement("CD");
    for (const PatientPlan& patient : patients) {
        xml.writeStartElement("Patient");
        xml.writeTextElement("Name", patient.name);
        for (const StudyPlan& study : patient.studies) {
            xml.writeStartElement("Study");
            xml.writeTextElement("Description", patient.name + " " + study.folder);
            for (const SeriesPlan& series : study.series) {
                xml.writeStartElement("Series");
                xml.writeTextElement("Description", patient.name + " " + study.folder + " " + series.folder);
                // A series without files still needs an entry: the catalogue's levels are never empty.
                for (int i = 0; i < std::max<int>(1, int(series.frames.size())); ++i) {
                    xml.writeStartElement("Image");
                    xml.writeTextElement("Name", QString("Image %1").arg(i + 1));
                    xml.writeEndElement();
                }
                xml.writeEndElement();
            }
            xml.writeEndElement();
        }
        xml.writeEndElement();
    }
    xml.writeEndElement();
    write(path({"CD.xml"}), text);
}

PatientPlan patientOf(const QString& name, const QList<QList<int>>& series) {
    StudyPlan study{"Study1", {}};
    for (int i = 0; i < series.size(); ++i) study.series.append({QString("Series%1").arg(i + 1), series[i]});
    return {name, {study}};
}

}  // namespace cinedisc::test
