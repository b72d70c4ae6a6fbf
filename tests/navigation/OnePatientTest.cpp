#include "tests/support/form/RecordingForm1.h"
#include "viewer/MouseWheel.h"

#include <QDir>
#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

/// A disc of three patients, to be spoilt.
struct Disc {
    QString folder(const QString& below) const { return disc.path({"Dicom"}) + "/" + below; }
    void remove(const QString& below) { EXPECT_TRUE(QDir(folder(below)).removeRecursively()); }
    void empty(const QString& below) { remove(below), QDir().mkpath(folder(below)); }
    void rename(const QString& from, const QString& to) {
        EXPECT_TRUE(QDir().rename(folder(from), folder(to)));
    }
    void insertBefore(const QByteArray& text, const QByteArray& inserted) {
        QFile file(disc.path({"CD.xml"}));
        EXPECT_TRUE(file.open(QFile::ReadOnly));
        QByteArray catalogue = file.readAll();
        DiscBuilder::write(file.fileName(), catalogue.replace(text, inserted + text));
    }
    void openFolder(const QString& path) {
        form.dialogs.folder = path;
        form.behaviour.opener.mnuOpen_Click();
    }
    void stepPatient() { form.behaviour.patientStepper.Command2_Click(); }
    void stepSeries() { form.behaviour.seriesStepper.cmdSerNext_Click(); }
    void play(int ticks) {
        form.behaviour.cine.cmdPlay_Click();
        for (; ticks > 0; --ticks) form.behaviour.cine.Timer4_Timer();
    }

    QString names() const { return form.Label5.Caption() + " | " + form.Label6.Caption(); }
    QString shown() const { return form.ezDicom.FileName().mid(folder("").size()); }
    QString images() const {
        return form.lblImg.Caption() + " | " + form.lblFra.Caption() + " | " + form.lblSeries.Caption();
    }

    /// What any command could reach belongs to the patient whose name is shown.
    void expectOnePatient(const char* after) const {
        QStringList reachable{form.File1.Path()};
        for (const auto& preview : form.thumb) reachable << preview->FileName() << preview->Tag();
        if (!form.warns()) reachable << form.ezDicom.FileName();
        reachable.removeAll("");
        for (const QString& path : reachable) {
            EXPECT_TRUE((path + "/").startsWith(form.namedPatientFolder + "/"))
                << after << ": " << qPrintable(path) << " under " << qPrintable(names());
        }
    }
    void tryEveryCommand() {
        auto& b = form.behaviour;
        const std::pair<const char*, std::function<void()>> acts[] = {
            {"nothing", [] {}},
            {"frame", [&] { b.frames.cmdNext_Click(); }},
            {"image", [&] { b.frames.cmdNextImage_Click(); }},
            {"still", [&] { b.stillStepper.cmdNextSeries_Click(); }},
            {"wheel", [&] { wheel::roll(form.sb1, WheelRoll::TowardsUser); }},
            {"scroll", [&] { form.sb1.putValue(std::min(6, form.sb1.Max())); }},
            {"preview", [&] { b.loader.LoadImage(0); }},
            {"play", [&] { play(1); }},
            {"series", [&] { stepSeries(); }},
        };
        for (const auto& [name, act] : acts) {
            EXPECT_NO_THROW(act()) << name;
            expectOnePatient(name);
        }
    }

    DiscBuilder disc{{patientOf("Alpha", {{1, 1, 1}, {1}, {1, 1}, {1}, {1}, {1}, {1}}),
                      patientOf("Beta", {{4, 5}, {1}}), patientOf("Gamma", {{7}})}};
    RecordingForm1 form{disc.path()};
};

constexpr const char* nobody = "Study Scroll Bar | Series Scroll Bar";
constexpr const char* noImage = "Image | Frame | ";

TEST(OnePatient, WhateverIsWrongWithAPatientsFolder) {
    struct Case {
        const char* what;
        std::function<void(Disc&)> spoil;
        const char* names;
        const char* shown;
    };
    const char* first = "Beta | Beta Study1 Series1";
    for (const Case& c : {
             Case{"nothing", [](Disc&) {}, first, "Patient001/Study1/Series1/1.dcm"},
             {"empty", [](Disc& d) { d.empty("Patient001"); }, first, ""},
             {"no series", [](Disc& d) { d.empty("Patient001/Study1"); }, first, ""},
             {"a file as study",
              [](Disc& d) { d.empty("Patient001"), DiscBuilder::write(d.folder("Patient001/1.dcm"), "3"); },
              first, ""},
             {"first series empty", [](Disc& d) { d.empty("Patient001/Study1/Series1"); },
              "Beta | Beta Study1 Series2", "Patient001/Study1/Series2/1.dcm"},
             {"both series empty",
              [](Disc& d) { d.empty("Patient001/Study1/Series1"), d.empty("Patient001/Study1/Series2"); },
              first, ""},
         }) {
        for (const bool byClick : {true, false}) {
            SCOPED_TRACE(testing::Message() << c.what << (byClick ? ", by click" : ", by step"));
            Disc disc;
            c.spoil(disc);
            disc.form.behaviour.opener.Open_Click();
            disc.form.clickPatient(0);
            disc.form.sb1.putValue(7);
            disc.form.behaviour.loader.LoadImage(2);
            ASSERT_EQ(disc.names(), "Alpha | Alpha Study1 Series4");
            byClick ? disc.form.clickPatient(1) : disc.stepPatient();
            EXPECT_EQ(disc.names(), c.names);
            EXPECT_EQ(disc.shown(), c.shown);
            EXPECT_EQ(disc.images() == noImage, *c.shown == 0);
            EXPECT_FALSE(disc.form.warns());
            disc.tryEveryCommand();
        }
    }
}

TEST(OnePatient, MissingFolderLeavesThePictureUnderAWarning) {
    Disc disc;
    disc.remove("Patient001");
    disc.form.behaviour.opener.Open_Click();
    disc.form.clickPatient(2);
    disc.play(3);
    disc.form.clickPatient(1);
    EXPECT_EQ(disc.names(), "Beta | Beta Study1 Series1");
    EXPECT_EQ(disc.shown(), "Patient002/Study1/Series1/1.dcm");
    EXPECT_EQ(disc.images(), noImage);
    EXPECT_TRUE(disc.form.warns());
    EXPECT_FALSE(disc.form.Timer4.Enabled());
    disc.tryEveryCommand();
    EXPECT_TRUE(disc.form.warns());
    disc.form.clickPatient(2);
    EXPECT_FALSE(disc.form.warns());
}

TEST(OnePatient, MoreLooseFilesThanCanBeCountedDoNotEndTheProgram) {
    Disc disc;
    disc.form.behaviour.opener.Open_Click();
    disc.form.clickPatient(0);
    for (int i = 0; i < 32767; ++i) DiscBuilder::write(disc.folder(QString("Patient001/%1.dcm").arg(i)), "");
    EXPECT_NO_THROW(disc.form.clickPatient(1));
    EXPECT_EQ(disc.shown(), "Patient001/Study1/Series1/1.dcm");
    disc.tryEveryCommand();
}

TEST(OnePatient, NamesOfThePatientsPassed) {
    struct Case {
        const char* what;
        std::function<void(Disc&)> spoil;
        const char* second;
        const char* third;
    };
    for (const Case& c : {
             Case{"childless patients", [](Disc& d) { d.insertBefore("<Patient>", "<!-- - --><Patient/>"); },
                  "Beta | Beta Study1 Series1", "Gamma | Gamma Study1 Series1"},
             {"a copy", [](Disc& d) { d.rename("Patient001", "Patient001 copy"); }, nobody,
              "Gamma | Gamma Study1 Series1"},
             {"short number", [](Disc& d) { d.rename("Patient001", "Patient1"); }, nobody,
              "Gamma | Gamma Study1 Series1"},
             {"long number", [](Disc& d) { d.rename("Patient001", "Patient0001"); }, nobody,
              "Gamma | Gamma Study1 Series1"},
             {"letter case", [](Disc& d) { d.rename("Patient001", "patIENT001"); },
              "Beta | Beta Study1 Series1", "Gamma | Gamma Study1 Series1"},
             {"gap", [](Disc& d) { d.remove("Patient001"); }, "Gamma | Gamma Study1 Series1",
              "Alpha | Alpha Study1 Series1"},
             {"not in the catalogue", [](Disc& d) { d.rename("Patient002", "Patient007"); },
              "Beta | Beta Study1 Series1", nobody},
             {"spoilt catalogue", [](Disc& d) { d.insertBefore("</CD>", "<open>"); }, nobody, nobody},
         }) {
        SCOPED_TRACE(c.what);
        Disc disc;
        disc.form.behaviour.opener.Open_Click();
        disc.form.clickPatient(0);
        c.spoil(disc);
        disc.stepPatient();
        EXPECT_EQ(disc.names(), c.second);
        EXPECT_NE(disc.shown(), "");
        // A patient whom the catalogue does not know is stepped through all the same.
        const QString before = disc.shown();
        disc.stepSeries();
        EXPECT_EQ(disc.shown() == before, before.startsWith("Patient002"));
        EXPECT_EQ(disc.names() == nobody, c.second == nobody);
        disc.stepPatient();
        EXPECT_EQ(disc.names(), c.third);
        disc.tryEveryCommand();
    }
}

TEST(OnePatient, SeriesStepsBeforeAnyPatientDoNothing) {
    Disc disc;
    disc.form.behaviour.opener.Open_Click();
    disc.form.journal.clear();
    disc.stepSeries();
    EXPECT_EQ(disc.form.journal.entries(), QStringList());
}

TEST(OnePatient, FolderWithoutFiles) {
    Disc disc;
    const QString outside = disc.disc.path({"empty"});
    QDir().mkdir(outside);
    disc.form.behaviour.opener.Open_Click();
    disc.form.clickPatient(0);
    for (const QString& chosen : {outside, disc.folder("Patient001")}) {
        disc.form.journal.clear();
        disc.openFolder(chosen);
        EXPECT_EQ(disc.form.journal.entries(), QStringList()) << qPrintable(chosen);
        EXPECT_EQ(disc.form.behaviour.place.position().CurrentFolder.pathOrEmpty(),
                  disc.folder("Patient000"));
    }
    disc.tryEveryCommand();
    // The study of the listed files: steps go on among its series, whose places the catalogue is not asked
    // for.
    disc.form.clickPatient(0);
    disc.openFolder(disc.folder("Patient000/Study1"));
    EXPECT_EQ(disc.names(), "Alpha | Series Scroll Bar");
    disc.stepSeries();
    EXPECT_EQ(disc.shown(), "Patient000/Study1/Series2/1.dcm");
    EXPECT_EQ(disc.names(), "Alpha | Series Scroll Bar");
    // Above the patient's own folder nobody has a name.
    disc.openFolder(disc.folder("").chopped(1));
    EXPECT_EQ(disc.names(), nobody);
    EXPECT_EQ(disc.form.namedPatientFolder, "");
}

TEST(OnePatient, EmptySeriesUnloadsThePicture) {
    for (const bool stills : {false, true}) {
        Disc disc;
        const QString patient = stills ? "Patient000" : "Patient001";
        disc.empty(patient + "/Study1/Series2");
        disc.form.behaviour.opener.Open_Click();
        disc.form.clickPatient(stills ? 0 : 1);
        disc.stepSeries();
        EXPECT_EQ(disc.form.Label6.Caption().right(7), "Series2");
        EXPECT_EQ(disc.shown(), "");
        EXPECT_EQ(disc.images(), noImage);
        EXPECT_FALSE(disc.form.Timer4.Enabled());
        // In stills mode the strip is a series chooser and stays.
        EXPECT_EQ(disc.form.thumb[0]->FileName().isEmpty(), !stills);
        disc.stepSeries();
        EXPECT_NE(disc.shown(), "");
    }
}

TEST(OnePatient, StillsAreCountedByTheListAndNamedByTheirSeries) {
    Disc disc;
    disc.form.behaviour.opener.Open_Click();
    disc.form.clickPatient(0);
    disc.form.behaviour.loader.LoadImage(2);
    EXPECT_EQ(disc.names(), "Alpha | Alpha Study1 Series3");
    const int strip = disc.form.sb1.Value();
    // More images than series would be beyond the scroll bar's range.
    disc.form.Option11.putValue(true);
    for (const char* place : {"Image :2/2", "Image :1/2", "Image :2/2"}) {
        EXPECT_NO_THROW(disc.play(1));
        EXPECT_EQ(disc.form.lblSeries.Caption(), place);
    }
    disc.form.behaviour.frames.cmdNextImage_Click();
    EXPECT_EQ(disc.images(), "Image : 1/2 | Frame :1 | Image :1/2");
    EXPECT_EQ(disc.form.File1.ListIndex(), 0);
    EXPECT_EQ(disc.form.sb1.Value(), strip);
    // The strip's walk leaves File1 on another series of the patient: a step shows that one.
    disc.form.sb1.putValue(7);
    disc.form.behaviour.stillStepper.cmdNextSeries_Click();
    EXPECT_EQ(disc.form.Label6.Caption(), "Alpha Study1 " + disc.shown().section('/', 2, 2));
    EXPECT_NE(disc.form.Label6.Caption(), "Alpha Study1 Series3");
}

TEST(OnePatient, ReverseContinuousCineWithTheDiscGone) {
    Disc disc;
    disc.form.behaviour.opener.Open_Click();
    disc.form.clickPatient(1);
    disc.form.behaviour.frames.cmdNextImage_Click();
    disc.form.Slider2.putMax(4);
    disc.remove("");
    disc.form.File1.Refresh();
    disc.form.Option11.putValue(true);
    disc.form.behaviour.cine.cmdReverse_Click();
    EXPECT_NO_THROW(disc.form.behaviour.cine.Timer4_Timer());
    EXPECT_EQ(disc.form.ezDicom.CurrentFrame(), 5);
}

TEST(OnePatient, OpeningAgainForgetsEverythingAndReadsOnlyWhatItProbes) {
    Disc disc;
    disc.form.behaviour.opener.Open_Click();
    for (const int patient : {0, 1}) {
        disc.form.clickPatient(patient);
        disc.form.sb1.putValue(3);
        disc.form.journal.clear();
        disc.form.behaviour.opener.Open_Click();
        QStringList loaded = disc.form.putsWithoutFolders().filter(".FileName=");
        loaded.removeAll("ezDicom.FileName=");
        EXPECT_EQ(loaded, QStringList("ezTest.FileName=1.dcm"));
        EXPECT_EQ(disc.names(), nobody);
        EXPECT_EQ(disc.images(), noImage);
        EXPECT_EQ(disc.form.Label1.Caption(), "");
        EXPECT_EQ(disc.form.Slider2.Value(), 1);
        EXPECT_EQ(disc.form.sb1.Value(), 1);
        EXPECT_EQ(disc.form.sb1.Max(), 8);
    }
}

TEST(OnePatient, WhatIsWrongWithADiscIsSaidInTheTreesPlace) {
    struct Case {
        std::function<void(Disc&)> spoil;
        const char* words;
    };
    for (const Case& c : {
             Case{[](Disc&) {}, ""},
             {[](Disc& d) { d.insertBefore("</CD>", "<open>"); }, "cannot be read"},
             {[](Disc& d) { d.empty("Patient000/Study1/Series1"); }, "holds no images"},
             {[](Disc& d) { d.empty("Patient000"); }, "holds no images"},
             {[](Disc& d) { d.insertBefore("</CD>", "<Patient/>"); }, "is damaged"},
             {[](Disc& d) { DiscBuilder::write(d.disc.path({"CD.xml"}), "<CD/>"); }, "names no patient"},
         }) {
        Disc disc;
        c.spoil(disc);
        disc.form.behaviour.opener.Open_Click();
        EXPECT_TRUE(disc.form.TreeView1.remark.contains(c.words)) << c.words;
        EXPECT_EQ(disc.form.TreeView1.remark.isEmpty(), *c.words == 0) << c.words;
        EXPECT_EQ(disc.form.dialogs.asked, QStringList());
    }
}

}  // namespace
}  // namespace cinedisc::test
