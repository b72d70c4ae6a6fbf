#include "tests/support/form/DiscWalk.h"

#include "app/CommandTable.h"
#include "platform/Paths.h"
#include "tests/support/form/CommandNames.h"
#include "viewer/MouseWheel.h"
#include "viewerwindow/ViewerCommands.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace cinedisc::test {

namespace {

const QString designSeries = "Series Scroll Bar";

QString tagOf(int number) { return "Patient" + QString::number(number).rightJustified(3, u'0'); }

}  // namespace

OddDisc::OddDisc(unsigned seed, const DiscBuilder::FileMaker& makeFile) : random_(seed) {
    for (int p = 0; p < 2 + below(4); ++p) {
        PatientPlan patient{QString::fromUtf8("Ünal %1").arg(p), {}};
        const int kind = below(3);  // cine, stills, or both
        for (int s = 0; s < 1 + below(3); ++s) {
            StudyPlan study{QString("Study %1").arg(s + 1), {}};
            for (int r = below(5) ? 1 + below(6) : 0; r > 0; --r) {
                QList<int> frames;
                constexpr int fileCounts[] = {0, 1, 2, 4, 5, 6, 12};
                for (int f = fileCounts[below(7)]; f > 0; --f) {
                    const bool still = kind == 1 || (kind == 2 && below(2));
                    frames << (still ? 1 : 1 + below(9));
                }
                study.series.append({QString("Series%1").arg(study.series.size() + 1), frames});
            }
            patient.studies.append(study);
        }
        patients_.append(patient);
    }
    patients_[0].studies[0].series.prepend({"Series0", {2 * below(2) + 1}});
    disc_ = std::make_unique<DiscBuilder>(patients_, makeFile);
    for (int p = 0; p < patients_.size(); ++p) {
        if (below(2)) spoil(disc_->path({"Dicom", tagOf(p)}), p);
    }
    if (below(3) == 0) {
        QFile catalogue(disc_->path({"CD.xml"}));
        if (!catalogue.open(QFile::ReadOnly)) throw std::runtime_error("no catalogue");
        QByteArray text = catalogue.readAll();
        const qsizetype gap = text.indexOf("<Patient>", text.size() * below(100) / 100);
        DiscBuilder::write(catalogue.fileName(),
                           text.insert(std::max<qsizetype>(gap, text.indexOf("<Patient>")),
                                       below(2) ? "<!-- nobody -->" : "<Patient/>"));
    }
}

void OddDisc::spoil(const QString& folder, int number) {
    const auto rename = [&](const QString& name) {
        QDir().rename(folder, QFileInfo(folder).path() + "/" + name);
    };
    const auto remove = [&](const QString& below) { QDir(folder + below).removeRecursively(); };
    const auto empty = [&](const QString& below) { remove(below), QDir().mkpath(folder + below); };
    const std::function<void()> faults[] = {
        [&] { remove(""); },
        [&] { empty(""); },
        [&] { rename(tagOf(number).toLower()); },
        [&] { rename(tagOf(number) + " copy"); },
        [&] { rename(QString("Patient%1").arg(number)); },
        [&] { rename(tagOf(number + 20)); },
        [&] { empty("/Study 1"); },
        [&] { DiscBuilder::write(folder + "/loose.dcm", "2"); },
        [&] { empty("/Study 1/Series1"); },
    };
    faults[below(int(std::size(faults)))]();
}

QString OddDisc::nameOf(const QString& patientFolder) const {
    for (int p = 0; p < patients_.size(); ++p) {
        if (QFileInfo(patientFolder).fileName().compare(tagOf(p), Qt::CaseInsensitive) == 0)
            return patients_[p].name;
    }
    return {};
}

QString OddDisc::seriesNameOf(const QString& seriesFolder) const {
    const QString patient = nameOf(seriesFolder.section('/', 0, -3));
    return patient.isEmpty() ? designSeries : patient + ' ' + seriesFolder.section('/', -2).replace('/', ' ');
}

QStringList OddDisc::folders() const {
    QStringList all{disc_->path()};
    for (QDirIterator i(disc_->path(), QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
         i.hasNext();)
        all << i.next();
    all.sort();
    return all;
}

DiscWalk::DiscWalk(OddDisc& disc, Form1Behaviour& window, Hands hands)
    : disc_(disc), window_(window), form_(window.form), controls_(window.disc), hands_(std::move(hands)) {
    addCommands();
    window_.opener.Open_Click();
}

void DiscWalk::addCommands() {
    CommandHandlers handlers;
    handlers.add(discCommands(), window_);
    handlers.add<ViewerBehaviour>(viewerCommands(), window_);
    // Dialogs, the clipboard and the end have nothing to do with where the window is.
    static const QRegularExpression leftOut("Export|Copy|xit|mnuOpen$|About");
    for (const QString& name : commandNames(form1Faces()))
        if (!name.contains(leftOut)) steps_.append({name, handlers(name)});
    const auto clickNode = [this](bool mayBeAnyLevel) {
        QList<int> nodes;
        for (int n = 1; n <= controls_.TreeView1.nodeCount(); ++n)
            if (mayBeAnyLevel || !controls_.TreeView1.tag(n).isEmpty()) nodes << n;
        if (!nodes.isEmpty()) hands_.clickNode(nodes[disc_.below(int(nodes.size()))]);
    };
    const auto openFolder = [this] {
        const QStringList folders = disc_.folders();
        if (hands_.openFolder) hands_.openFolder(folders[disc_.below(int(folders.size()))]);
    };
    const auto tick = [this] {
        for (int n = disc_.below(12); n > 0 && form_.Timer4.Enabled(); --n) window_.cine.Timer4_Timer();
    };
    const Step others[] = {
        {"folder", openFolder},
        {"tree", [=] { clickNode(true); }},
        {"patient", [=] { clickNode(false); }},
        {"preview", [this] { window_.thumb_Click(disc_.below(5)); }},
        {"wheel", [this] { wheel::roll(form_.sb1, WheelRoll(disc_.below(2))); }},
        {"scroll", [this] { form_.sb1.putValue(1 + disc_.below(std::min(form_.sb1.Max(), 40))); }},
        {"seek", [this] { form_.Slider2.putValue(1 + disc_.below(form_.Slider2.Max())); }},
        {"continuous", [this] { form_.Option11.putValue(true); }},
        {"loop", [this] { form_.Option4.putValue(true); }},
        {"ticks", tick},
    };
    for (const Step& other : others) steps_ += QList<Step>(3, other);
}

void DiscWalk::step() {
    const auto& [name, run] = steps_[disc_.below(int(steps_.size()))];
    trail_ << name;
    const bool failedBefore = testing::Test::HasFailure();
    EXPECT_NO_THROW(run());
    shown_.insert(form_.ezDicom.FileName());
    checkOwner();
    checkLabels();
    checkControls();
    if (!failedBefore && testing::Test::HasFailure())
        ADD_FAILURE() << "after " << qPrintable(trail_.mid(trail_.size() - 14).join(", ")) << "\nshown "
                      << qPrintable(form_.ezDicom.FileName()) << "\nlist " << qPrintable(form_.File1.Path())
                      << "\nnamed " << qPrintable(window_.place.position().namedFolder);
}

void DiscWalk::checkOwner() const {
    const QString owner = window_.place.position().namedFolder, shown = form_.ezDicom.FileName();
    const QString name = owner.isEmpty() ? "Study Scroll Bar" : disc_.nameOf(owner);
    EXPECT_EQ(controls_.Label5.Caption().toStdString(), name.toStdString());
    const auto isTheOwners = [&](const QString& path) {
        return owner.isEmpty() || path.isEmpty() || (path + "/").startsWith(owner + "/");
    };
    EXPECT_TRUE(isTheOwners(form_.File1.Path()));
    for (const ViewerControl* preview : form_.thumb)
        EXPECT_TRUE(isTheOwners(preview->FileName()) && isTheOwners(preview->Tag()));
    // Only a patient whose folder is missing leaves another's picture, and the view tells so.
    EXPECT_TRUE(isTheOwners(shown) || !QFileInfo::exists(owner));
    EXPECT_EQ(hands_.warns(), !isTheOwners(shown));
}

void DiscWalk::checkLabels() const {
    EXPECT_EQ(controls_.Label5.Caption(), controls_.Label13.Caption());
    EXPECT_EQ(controls_.Label6.Caption(), controls_.Label15.Caption());
    const DiscPosition& position = window_.place.position();
    const QString shown = form_.ezDicom.FileName(), series = controls_.Label6.Caption();
    EXPECT_TRUE(series == designSeries || series.startsWith(controls_.Label5.Caption() + " "))
        << qPrintable(series);
    EXPECT_FALSE(position.namedFolder.isEmpty() && series != designSeries) << qPrintable(series);
    const bool isListed = position.patient == DiscPosition::Patient::Listed;
    if (shown.isEmpty()) {
        EXPECT_EQ(form_.lblImg.Caption() + form_.lblFra.Caption() + controls_.lblSeries.Caption(),
                  "ImageFrame");
    } else if (isListed && position.HasStudyFolders && QFileInfo::exists(position.namedFolder)) {
        // Stills are named after the shown file, which the strip's walk may have left; runs after the list.
        const QString named = position.StillsMode ? shown.section('/', 0, -2) : form_.File1.Path();
        EXPECT_EQ(series.toStdString(), disc_.seriesNameOf(named).toStdString());
    }
    const Int16 index = form_.File1.positionOf(shown);
    const QString place = QString(":%1/%2").arg(index.value() + 1).arg(form_.File1.ListCount());
    const bool countsStills = position.StillsMode && index >= 0 && index == form_.File1.ListIndex();
    EXPECT_TRUE(!countsStills || controls_.lblSeries.Caption() == "Image " + place);
    const bool countsImages = trail_.last().contains("Image") && index >= 0;
    EXPECT_TRUE(!countsImages || form_.lblImg.Caption() == "Image : " + place.mid(1));
}

void DiscWalk::checkControls() const {
    const QString folder = form_.File1.Path();
    EXPECT_TRUE(folder.isEmpty() || QFileInfo(folder).isDir()) << qPrintable(folder);
    EXPECT_LT(form_.File1.ListIndex(), form_.File1.ListCount());
    EXPECT_TRUE(1 <= form_.sb1.Value() && form_.sb1.Value() <= form_.sb1.Max());
    EXPECT_NE(controls_.Frame8.Visible(), controls_.Frame9.Visible());
    EXPECT_EQ(controls_.Frame8.Visible(), window_.place.position().StillsMode);
    EXPECT_FALSE(form_.ezDicom.FileName().isEmpty() && form_.Timer4.Enabled());
    EXPECT_LE(form_.ezDicom.CurrentFrame(), std::max(1, form_.ezDicom.FrameCount()));
    EXPECT_EQ(form_.Option4.Value(), !form_.Option11.Value());
}

}  // namespace cinedisc::test
