#pragma once

#include <QList>
#include <QString>
#include <QTemporaryDir>

#include <functional>

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
    explicit DiscBuilder(const QList<PatientPlan>& patients, const FileMaker& makeFile = framesAsText);

    /// The program folder.
    QString path() const { return folder_.path(); }
    /// A path below the program folder, its parts joined with the platform's separator.
    QString path(const QStringList& parts) const;
    static void write(const QString& path, const QByteArray& content);

  private:
    static QByteArray framesAsText(int frames) { return QByteArray::number(frames); }
    QTemporaryDir folder_;
};

/// A patient with one study "Study1" of series "Series1", "Series2" ... with files of the given frames.
PatientPlan patientOf(const QString& name, const QList<QList<int>>& series);

}  // namespace cinedisc::test
