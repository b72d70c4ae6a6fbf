#include "tests/support/form/RecordingForm1.h"
#include "viewer/MouseWheel.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

#include <random>

namespace cinedisc::test {
namespace {

/// Walks over a random disc by random commands and checks after each what must hold whatever was done.
class RandomWalk {
  public:
    explicit RandomWalk(unsigned seed) : random_(seed), disc_(randomDisc()), form_(disc_.path()) {
        form_.behaviour.Form_Load();
        form_.behaviour.opener.Open_Click();
    }

    void step() {
        const QString command = runRandomCommand();
        if (!holds(command)) ADD_FAILURE() << "after " << qPrintable(trail_.join(", "));
        trail_ << command;
        if (trail_.size() > 12) trail_.removeFirst();
    }

    int picturesShown() const { return int(shown_.size()); }

  private:
    int below(int n) { return int(random_() % unsigned(n)); }

    QList<PatientPlan> randomDisc() {
        QList<PatientPlan> patients;
        for (int p = 0; p < 1 + below(4); ++p) {
            const bool stills = below(3) == 0;
            PatientPlan patient{QString::fromUtf8(p % 2 ? "Иванова Анна" : "Same Name"), {}};
            for (int s = 0; s < 1 + below(3); ++s) {
                StudyPlan study{QString("Study %1").arg(s + 1), {}};
                for (int r = 0; r < 1 + below(7); ++r) {
                    QList<int> frames;
                    constexpr int fileCounts[] = {0, 1, 2, 4, 5, 6, 20};
                    for (int f = fileCounts[below(7)]; f > 0; --f) frames << (stills ? 1 : 1 + below(9));
                    study.series.append({QString("Series%1").arg(r + 1), frames});
                }
                patient.studies.append(study);
            }
            patients.append(patient);
            names_ << patient.name;
        }
        if (patients[0].studies[0].series[0].frames.isEmpty()) patients[0].studies[0].series[0].frames << 3;
        return patients;
    }

    QString runRandomCommand() {
        auto& b = form_.behaviour;
        const QList<std::pair<QString, std::function<void()>>> commands{
            {"tree", [&] { form_.clickPatient(below(4)); }},
            {"open", [&] { b.opener.Open_Click(); }},
            {"folder", [&] { openRandomFolder(); }},
            {"series next", [&] { b.seriesStepper.cmdSerNext_Click(); }},
            {"series back", [&] { b.seriesStepper.cmdSerBack_Click(); }},
            {"patient next", [&] { b.patientStepper.Command2_Click(); }},
            {"patient back", [&] { b.patientStepper.cmdPatBack_Click(); }},
            {"still next", [&] { b.stillStepper.cmdNextSeries_Click(); }},
            {"still back", [&] { b.stillStepper.cmdPreviousSeries_Click(); }},
            {"frame next", [&] { b.frames.cmdNext_Click(); }},
            {"frame back", [&] { b.frames.cmdPrev_Click(); }},
            {"image next", [&] { b.frames.cmdNextImage_Click(); }},
            {"image back", [&] { b.frames.cmdPrevImage_Click(); }},
            {"preview", [&] { b.loader.LoadImage(below(5)); }},
            {"wheel",
             [&] { wheel::roll(form_.sb1, below(2) ? WheelRoll::TowardsUser : WheelRoll::AwayFromUser); }},
            {"scroll", [&] { form_.sb1.putValue(1 + below(form_.sb1.Max())); }},
            {"seek", [&] { form_.Slider2.putValue(1 + below(form_.Slider2.Max())); }},
            {"loop", [&] { form_.Option4.putValue(true); }},
            {"continuous", [&] { form_.Option11.putValue(true); }},
            {"forward", [&] { b.cine.cmdPlay_Click(); }},
            {"reverse", [&] { b.cine.cmdReverse_Click(); }},
            {"stop", [&] { b.cine.cmdStop_Click(); }},
            {"ticks", [&] { tick(); }},
        };
        const auto& [name, run] = commands[below(int(commands.size()))];
        // What stands on the hidden panel cannot be pressed.
        const bool onCinePanel = name == "forward" || name == "reverse";
        const bool onStillsPanel = name.startsWith("still");
        if (form_.disc.position.StillsMode ? onCinePanel : onStillsPanel) return name + " (hidden)";
        EXPECT_NO_THROW(run()) << name.toStdString() << " after " << qPrintable(trail_.join(", "));
        return name;
    }

    void openRandomFolder() {
        QDir dicom(disc_.path({"Dicom"}));
        QStringList folders{disc_.path()};
        const auto patients = dicom.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot);
        for (const QFileInfo& patient : patients) {
            folders << patient.filePath() << patient.filePath() + "/Study 1"
                    << patient.filePath() + "/Study 1/Series1";
        }
        form_.dialogs.folder = below(4) ? folders[below(int(folders.size()))] : QString();
        form_.behaviour.opener.mnuOpen_Click();
    }

    void tick() {
        for (int n = 1 + below(12); n > 0 && form_.Timer4.Enabled(); --n) form_.behaviour.cine.Timer4_Timer();
    }

    bool holds(const QString& command) {
        const bool before = testing::Test::HasFailure();
        const QString shown = form_.ezDicom.FileName();
        shown_.insert(shown);
        // File1 stands on a folder that is there, and answers what it holds.
        EXPECT_TRUE(QFileInfo(form_.File1.Path()).isDir());
        EXPECT_LT(form_.File1.ListIndex(), form_.File1.ListCount());
        EXPECT_GE(form_.sb1.Value(), 1);
        EXPECT_LE(form_.sb1.Value(), form_.sb1.Max());
        // One panel, the mode's, is shown; a cine never runs behind the stills panel.
        EXPECT_NE(form_.Frame8.Visible(), form_.Frame9.Visible());
        EXPECT_EQ(form_.Frame8.Visible(), form_.disc.position.StillsMode);
        EXPECT_FALSE(form_.disc.position.StillsMode && form_.Timer4.Enabled());
        // The picture is a file of the disc, at one of its frames.
        if (!shown.isEmpty() && QFileInfo(shown).isFile()) {
            EXPECT_GE(form_.ezDicom.CurrentFrame(), 1);
            EXPECT_LE(form_.ezDicom.CurrentFrame(), std::max(1, form_.ezDicom.FrameCount()));
        }
        // Twin labels agree, and a patient's name stands only over that patient's files. (Choosing a folder
        // without images moves the current folder and leaves the names, until a patient is opened again.)
        EXPECT_EQ(form_.Label5.Caption(), form_.Label13.Caption());
        EXPECT_EQ(form_.Label6.Caption(), form_.Label15.Caption());
        static const QRegularExpression patientFolder("Patient([0-9]{3})");
        const auto owner = patientFolder.match(shown);
        if (owner.hasMatch() && form_.Label5.Caption() != "Study Scroll Bar" &&
            form_.disc.position.HasStudyFolders) {
            EXPECT_EQ(form_.Label5.Caption().toStdString(),
                      names_.value(owner.captured(1).toInt()).toStdString());
        }
        // A step leaves list, strip, label and picture at one place.
        if (command.startsWith("image") && !shown.isEmpty() && !form_.disc.position.StillsMode) {
            EXPECT_EQ(shown.toStdString(), form_.File1.fullPath(form_.sb1.Value() - 1).toStdString());
            EXPECT_EQ(
                form_.lblImg.Caption().toStdString(),
                QString("Image : %1/%2").arg(form_.sb1.Value()).arg(form_.File1.ListCount()).toStdString());
        }
        return before || !testing::Test::HasFailure();
    }

    std::mt19937 random_;
    QStringList names_;
    DiscBuilder disc_;
    RecordingForm1 form_;
    QStringList trail_;
    QSet<QString> shown_;
};

TEST(RandomWalk, TenThousandCommandsKeepTheInvariants) {
    int shown = 0;
    for (unsigned seed = 1; seed <= 20 && !testing::Test::HasFailure(); ++seed) {
        RandomWalk walk(seed);
        for (int i = 0; i < 500 && !testing::Test::HasFailure(); ++i) walk.step();
        shown += walk.picturesShown();
    }
    EXPECT_GT(shown, 200);
}

}  // namespace
}  // namespace cinedisc::test
