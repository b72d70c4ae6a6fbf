#pragma once

#include "platform/Paths.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QXmlStreamWriter>

#include <functional>
#include <stdexcept>

namespace cinedisc::test {

/// A series folder to be built: its files are named 1.dcm, 2.dcm ... and hold the number of their frames as
/// text.
struct SeriesPlan {
    QString folder;
    QList<int> frames;
};
struct StudyPlan {
    QString folder;
    QList<SeriesPlan> series;
};
struct PatientPlan {
    QString name;
    QList<StudyPlan> studies;
};

/// A disc in a temporary folder: catalogue and folders agree unless a test spoils them afterwards.
class DiscBuilder {
  public:
    /// Makes the content of a file of so many frames.
    using FileMaker = std::function<QByteArray(int frames)>;
    explicit DiscBuilder(const QList<PatientPlan>& patients, const FileMaker& makeFile = framesAsText) {
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

    /// The program folder.
    QString path() const { return folderPath(folder_.path()); }
    /// A path below the program folder, its parts joined with the platform's separator.
    QString path(const QStringList& parts) const {
        QString all = path();
        for (const QString& part : parts) all = joinPath(all, part);
        return all;
    }
    static void write(const QString& path, const QByteArray& content) {
        QFile file(path);
        if (!file.open(QFile::WriteOnly) || file.write(content) != content.size()) {
            throw std::runtime_error("cannot write " + path.toStdString());
        }
    }

  private:
    static QByteArray framesAsText(int frames) { return QByteArray::number(frames); }
    QTemporaryDir folder_;
};

/// A patient with one study "Study1" of series "Series1", "Series2" ... with files of the given frames.
inline PatientPlan patientOf(const QString& name, const QList<QList<int>>& series) {
    StudyPlan study{"Study1", {}};
    for (int i = 0; i < series.size(); ++i) study.series.append({QString("Series%1").arg(i + 1), series[i]});
    return {name, {study}};
}

}  // namespace cinedisc::test
