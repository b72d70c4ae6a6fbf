#pragma once

#include "tests/support/form/RecordingForm1.h"
#include "viewer/MouseWheel.h"

#include <QDirIterator>
#include <QSet>
#include <gtest/gtest.h>

#include <random>

namespace cinedisc::test {

/// A disc as discs really are: patients whose folders are missing, empty or oddly named, studies and series
/// without content, unreadable files, stills among cine, a catalogue with gaps.
class OddDisc {
  public:
    OddDisc(unsigned seed, const DiscBuilder::FileMaker& makeFile) : random_(seed) {
        constexpr int fileCounts[] = {0, 1, 2, 4, 5, 6, 12};
        for (int p = 0; p < 2 + below(4); ++p) {
            PatientPlan patient{QString::fromUtf8("Ünal %1").arg(p), {}};
            const int kind = below(3);  // cine, stills, or both
            for (int s = 0; s < 1 + below(3); ++s) {
                StudyPlan study{QString("Study %1").arg(s + 1), {}};
                for (int r = below(5) ? 1 + below(6) : 0; r > 0; --r) {
                    QList<int> frames;
                    for (int f = fileCounts[below(7)]; f > 0; --f)
                        frames << (kind == 1 || (kind == 2 && below(2)) ? 1 : 1 + below(9));
                    study.series.append({QString("Series%1").arg(study.series.size() + 1), frames});
                }
                patient.studies.append(study);
            }
            patients_.append(patient);
        }
        patients_[0].studies[0].series.prepend({"Series0", {2 * below(2) + 1}});
        disc_ = std::make_unique<DiscBuilder>(patients_, makeFile);
        for (int p = 0; p < patients_.size(); ++p)
            if (below(2)) spoil(disc_->path({"Dicom", tagOf(p)}), p);
        if (below(3) > 0) return;
        QFile catalogue(disc_->path({"CD.xml"}));
        if (!catalogue.open(QFile::ReadOnly)) throw std::runtime_error("no catalogue");
        QByteArray text = catalogue.readAll();
        const qsizetype gap = text.indexOf("<Patient>", text.size() * below(100) / 100);
        DiscBuilder::write(catalogue.fileName(), text.insert(std::max(gap, text.indexOf("<Patient>")),
                                                             below(2) ? "<!-- nobody -->" : "<Patient/>"));
    }

    const DiscBuilder& disc() const { return *disc_; }
    /// The catalogue's name for a patient's folder, "" for a folder that it does not list.
    QString nameOf(const QString& patientFolder) const {
        for (int p = 0; p < patients_.size(); ++p)
            if (QFileInfo(patientFolder).fileName().compare(tagOf(p), Qt::CaseInsensitive) == 0)
                return patients_[p].name;
        return {};
    }
    /// The name to be shown for a series' folder: the catalogue's, or the design text.
    QString seriesNameOf(const QString& folder) const {
        const QString patient = nameOf(QFileInfo(QFileInfo(folder).path()).path());
        return patient.isEmpty()
                   ? designSeries
                   : patient + ' ' + QDir(folder).absolutePath().section('/', -2).replace('/', ' ');
    }
    /// Folders that somebody may choose by hand.
    QStringList folders() const {
        QStringList all{disc_->path()};
        for (QDirIterator i(all[0], QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
             i.hasNext();)
            all << folderPath(i.next());
        all.sort();
        return all;
    }
    int below(int n) { return int(random_() % unsigned(n)); }

    static inline const QString designSeries = "Series Scroll Bar";

  private:
    static QString tagOf(int number) { return QString("Patient%1").arg(number, 3, 10, QChar(u'0')); }
    void spoil(const QString& folder, int number) {
        const auto empty = [&](const QString& below) {
            QDir(folder + below).removeRecursively();
            QDir().mkpath(folder + below);
        };
        const QString names[] = {tagOf(number).toLower(), tagOf(number) + " copy",
                                 QString("Patient%1").arg(number), tagOf(number + 20)};
        const int fault = below(9);
        if (fault < 4) QDir().rename(folder, QFileInfo(folder).path() + "/" + names[fault]);
        if (fault == 4) QDir(folder).removeRecursively();
        if (fault == 5) DiscBuilder::write(folder + "/loose.dcm", "2");
        if (fault > 5) empty(std::array{"", "/Study 1", "/Study 1/Series1"}[std::size_t(fault - 6)]);
    }

    std::mt19937 random_;
    QList<PatientPlan> patients_;
    std::unique_ptr<DiscBuilder> disc_;
};

/// Walks over a disc by commands of the menus and buttons, keys, wheel, tree and previews, and checks after
/// each what must hold whatever was done: every file, preview and label belongs to the patient whose name is
/// shown, or the view says otherwise; nothing ends the program.
class DiscWalk {
  public:
    struct Hands {
        std::function<void(int node)> clickNode;
        /// Whether the main view warns that its picture is not the named patient's.
        std::function<bool()> warns;
        /// Chooses a folder by File > Open; empty where a dialog cannot be answered.
        std::function<void(const QString& folder)> openFolder;
    };
    DiscWalk(OddDisc& disc, Form1Behaviour& window, Hands hands)
        : disc_(disc), window_(window), form_(window.form), controls_(window.disc), hands_(std::move(hands)) {
        // Dialogs, the clipboard and the end have nothing to do with where the window is.
        static const QRegularExpression leftOut("Export|Copy|xit|mnuOpen$|About");
        const auto add = [&](const QString& name) {
            if (!name.contains(leftOut)) steps_.emplace_back(name, handlersOf(window)(name));
        };
        const CommandFaces faces = form1Faces();
        for (const ButtonRow& button : faces.buttons) add(button.name);
        for (const MenuRow& item : faces.items)
            if (item.kind == MenuKind::Command) add(item.name);
        const std::pair<QString, std::function<void()>> others[] = {
            {"folder",
             [this] {
                 const QStringList folders = disc_.folders();
                 if (hands_.openFolder) hands_.openFolder(folders[disc_.below(int(folders.size()))]);
             }},
            {"tree", [this] { clickNode(true); }},
            {"patient", [this] { clickNode(false); }},
            {"preview", [this] { window_.thumb_Click(disc_.below(5)); }},
            {"wheel", [this] { wheel::roll(form_.sb1, WheelRoll(disc_.below(2))); }},
            {"scroll", [this] { form_.sb1.putValue(1 + disc_.below(std::min(form_.sb1.Max(), 40))); }},
            {"seek", [this] { form_.Slider2.putValue(1 + disc_.below(form_.Slider2.Max())); }},
            {"continuous", [this] { form_.Option11.putValue(true); }},
            {"loop", [this] { form_.Option4.putValue(true); }},
            {"ticks",
             [this] {
                 for (int n = disc_.below(12); n > 0 && form_.Timer4.Enabled(); --n)
                     window_.cine.Timer4_Timer();
             }},
        };
        for (const auto& other : others) steps_.insert(steps_.end(), 3, other);
        window_.opener.Open_Click();
    }

    void step() {
        const auto& [name, run] = steps_[std::size_t(disc_.below(int(steps_.size())))];
        trail_ << name;
        SCOPED_TRACE(qPrintable("after " + trail_.mid(trail_.size() - 14).join(", ")));
        EXPECT_NO_THROW(run());
        shown_.insert(form_.ezDicom.FileName());
        SCOPED_TRACE(qPrintable("shown " + form_.ezDicom.FileName()));
        checkOwner();
        checkLabels();
        checkControls();
    }
    int picturesShown() const { return int(shown_.size()); }

  private:
    void clickNode(bool mayBeAnyLevel) {
        QList<int> nodes;
        for (int n = 1; n <= controls_.TreeView1.nodeCount(); ++n)
            if (mayBeAnyLevel || !controls_.TreeView1.tag(n).isEmpty()) nodes << n;
        if (!nodes.isEmpty()) hands_.clickNode(nodes[disc_.below(int(nodes.size()))]);
    }
    void checkOwner() const {
        const QString owner = window_.place.position().namedFolder, shown = form_.ezDicom.FileName();
        EXPECT_EQ(controls_.Label5.Caption(), owner.isEmpty() ? "Study Scroll Bar" : disc_.nameOf(owner));
        const auto isTheOwners = [&](const QString& path) {
            return owner.isEmpty() || path.isEmpty() || joinPath(path, {}).startsWith(joinPath(owner, {}));
        };
        EXPECT_TRUE(isTheOwners(form_.File1.Path()));
        for (const ViewerControl* preview : form_.thumb)
            EXPECT_TRUE(isTheOwners(preview->FileName()) && isTheOwners(preview->Tag()));
        // Only a patient whose folder is missing leaves another's picture, and the view tells so.
        EXPECT_TRUE(isTheOwners(shown) || !QFileInfo::exists(owner));
        EXPECT_EQ(hands_.warns(), !isTheOwners(shown));
    }
    void checkLabels() const {
        EXPECT_EQ(controls_.Label5.Caption(), controls_.Label13.Caption());
        EXPECT_EQ(controls_.Label6.Caption(), controls_.Label15.Caption());
        const DiscPosition& position = window_.place.position();
        const QString shown = form_.ezDicom.FileName(), series = controls_.Label6.Caption();
        EXPECT_TRUE(series == OddDisc::designSeries || series.startsWith(controls_.Label5.Caption() + " "));
        EXPECT_FALSE(position.namedFolder.isEmpty() && series != OddDisc::designSeries) << qPrintable(series);
        const bool isListed = position.patient == DiscPosition::Patient::Listed;
        if (shown.isEmpty()) {
            EXPECT_EQ(form_.lblImg.Caption() + form_.lblFra.Caption() + controls_.lblSeries.Caption(),
                      "ImageFrame");
        } else if (isListed && position.HasStudyFolders && QFileInfo::exists(position.namedFolder)) {
            // Stills are named after the shown file, which the strip's walk may have left; runs after the
            // list.
            const QString named = position.StillsMode ? QFileInfo(shown).path() : form_.File1.Path();
            EXPECT_EQ(series, disc_.seriesNameOf(named));
        }
        const Int16 index = form_.File1.positionOf(shown);
        const QString place = QString(":%1/%2").arg(index.value() + 1).arg(form_.File1.ListCount());
        const bool countsStills = position.StillsMode && index >= 0 && index == form_.File1.ListIndex();
        EXPECT_TRUE(!countsStills || controls_.lblSeries.Caption() == "Image " + place);
        const bool countsImages = trail_.last().contains("Image") && index >= 0;
        EXPECT_TRUE(!countsImages || form_.lblImg.Caption() == "Image : " + place.mid(1));
    }
    void checkControls() const {
        const QString folder = form_.File1.Path();
        EXPECT_TRUE(folder.isEmpty() || QFileInfo(folder).isDir()) << qPrintable(folder);
        EXPECT_LT(form_.File1.ListIndex(), form_.File1.ListCount());
        EXPECT_NE(controls_.Frame8.Visible(), controls_.Frame9.Visible());
        EXPECT_EQ(controls_.Frame8.Visible(), window_.place.position().StillsMode);
        EXPECT_FALSE(form_.ezDicom.FileName().isEmpty() && form_.Timer4.Enabled());
        EXPECT_LE(form_.ezDicom.CurrentFrame(), std::max(1, form_.ezDicom.FrameCount()));
    }

    OddDisc& disc_;
    Form1Behaviour& window_;
    FormControls& form_;
    DiscControls& controls_;
    Hands hands_;
    std::vector<std::pair<QString, std::function<void()>>> steps_;
    QStringList trail_;
    QSet<QString> shown_;
};

}  // namespace cinedisc::test
