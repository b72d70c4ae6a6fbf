#include "tests/support/form/DiscWalk.h"

namespace cinedisc::test {
namespace {

constexpr const char* nobody = "Study Scroll Bar | Series Scroll Bar";
constexpr const char* noImage = "Image | Frame | ";

/// A disc of three patients, to be spoilt.
struct SpoiltDisc : DiscForm {
    SpoiltDisc()
        : DiscForm({patientOf("Alpha", {{1, 1, 1}, {1}, {1, 1}, {1}, {1}, {1}, {1}}),
                    patientOf("Beta", {{4, 5}, {1}}), patientOf("Gamma", {{7}})}) {}
    QString shown() const { return form.below(form.ezDicom.FileName()); }
    void empty(const QString& below) { EXPECT_TRUE(remove(below) && QDir().mkpath(folder(below))); }
    bool remove(const QString& below) { return QDir(folder(below)).removeRecursively(); }
    void rename(const QString& from, const QString& to) {
        EXPECT_TRUE(QDir().rename(folder(from), folder(to)));
    }
    void insertBefore(const QByteArray& text, const QByteArray& inserted) {
        QFile file(disc.path({"CD.xml"}));
        EXPECT_TRUE(file.open(QFile::ReadOnly));
        QByteArray catalogue = file.readAll();
        DiscBuilder::write(file.fileName(), catalogue.replace(text, inserted + text));
    }
};
using Spoil = std::function<void(SpoiltDisc&)>;

/// 20 discs of 1000 steps each; CINEDISC_WALKS asks for more discs.
TEST(OnePatient, EverythingShownOnAnyWalkBelongsToTheNamedPatient) {
    const int walks = std::max(20, qEnvironmentVariableIntValue("CINEDISC_WALKS"));
    int shown = 0;
    for (int seed = 1; seed <= walks && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        OddDisc disc(unsigned(seed), [](int frames) { return QByteArray::number(frames); });
        RecordingForm1 form(disc.disc().path());
        form.behaviour.Form_Load();
        DiscWalk walk(disc, form.behaviour,
                      {[&](int node) { form.clickNode(node); }, [&] { return form.warns(); },
                       [&](const QString& folder) { form.openFolder(folder); }});
        for (int i = 0; i < 1000 && !testing::Test::HasFailure(); ++i) walk.step();
        EXPECT_EQ(form.dialogs.asked.count("Dicom"), form.dialogs.asked.size());
        shown += walk.picturesShown();
    }
    EXPECT_GT(shown, 20 * 20);
}

TEST(OnePatient, WhateverIsWrongWithAPatientsFolder) {
    const char* first = "Beta | Beta Study1 Series1";
    const std::tuple<const char*, Spoil, const char*, const char*> cases[] = {
        {"nothing", [](SpoiltDisc&) {}, first, "Patient001/Study1/Series1/1"},
        {"empty", [](SpoiltDisc& d) { d.empty("Patient001"); }, first, ""},
        {"a file as study",
         [](SpoiltDisc& d) { d.empty("Patient001"), DiscBuilder::write(d.folder("Patient001/1.dcm"), "3"); },
         first, ""},
        {"first series empty", [](SpoiltDisc& d) { d.empty("Patient001/Study1/Series1"); },
         "Beta | Beta Study1 Series2", "Patient001/Study1/Series2/1"},
        {"more loose files than can be counted",
         [](SpoiltDisc& d) {
             for (int i = 0; i < 32767; ++i)
                 DiscBuilder::write(d.folder(QString("Patient001/%1.dcm").arg(i)), "");
         },
         first, "Patient001/Study1/Series1/1"},
    };
    for (const auto& [what, spoil, names, shown] : cases) {
        SpoiltDisc disc;
        spoil(disc);
        for (const bool byClick : {true, false}) {
            SCOPED_TRACE(testing::Message() << what << (byClick ? ", by click" : ", by step"));
            disc.form.clickPatient(0);
            disc.form.sb1.putValue(7);
            disc.form.behaviour.loader.LoadImage(2);
            ASSERT_EQ(disc.form.names(), "Alpha | Alpha Study1 Series4");
            EXPECT_NO_THROW(byClick ? disc.form.clickPatient(1) : disc.form.press("Command2"));
            EXPECT_EQ(disc.form.names(), names);
            EXPECT_EQ(disc.shown(), shown);
            EXPECT_EQ(disc.form.images() == noImage, *shown == 0);
            EXPECT_EQ(disc.form.place().CurrentFolder.pathOrEmpty(), disc.folder("Patient001"));
            EXPECT_TRUE(*shown || disc.form.File1.Path() == disc.folder("Patient001"));
            EXPECT_FALSE(disc.form.warns());
        }
    }
}

TEST(OnePatient, MissingFolderLeavesThePictureUnderAWarning) {
    SpoiltDisc disc;
    disc.remove("Patient001");
    disc.form.clickPatient(2);
    disc.form.clickPatient(1);
    EXPECT_EQ(disc.form.names(), "Beta | Beta Study1 Series1");
    EXPECT_EQ(disc.shown(), "Patient002/Study1/Series1/1");
    EXPECT_EQ(disc.form.images(), noImage);
    EXPECT_TRUE(disc.form.warns());
    EXPECT_FALSE(disc.form.Timer4.Enabled());
    disc.form.clickPatient(2);
    EXPECT_FALSE(disc.form.warns());
}

TEST(OnePatient, NamesOfThePatientsPassed) {
    const char *beta = "Beta | Beta Study1 Series1", *gamma = "Gamma | Gamma Study1 Series1";
    const std::tuple<const char*, Spoil, const char*, const char*> cases[] = {
        {"childless patients", [](SpoiltDisc& d) { d.insertBefore("<Patient>", "<!-- - --><Patient/>"); },
         beta, gamma},
        {"a copy", [](SpoiltDisc& d) { d.rename("Patient001", "Patient001 copy"); }, nobody, gamma},
        {"long number", [](SpoiltDisc& d) { d.rename("Patient001", "Patient0001"); }, nobody, gamma},
        {"letter case", [](SpoiltDisc& d) { d.rename("Patient001", "patIENT001"); }, beta, gamma},
        {"gap", [](SpoiltDisc& d) { d.remove("Patient001"); }, gamma, "Alpha | Alpha Study1 Series1"},
        {"not in the catalogue", [](SpoiltDisc& d) { d.rename("Patient002", "Patient007"); }, beta, nobody},
        {"spoilt catalogue", [](SpoiltDisc& d) { d.insertBefore("</CD>", "<open>"); }, nobody, nobody},
    };
    for (const auto& [what, spoil, second, third] : cases) {
        SCOPED_TRACE(what);
        SpoiltDisc disc;
        disc.form.clickPatient(0);
        spoil(disc);
        disc.form.press("Command2");
        EXPECT_EQ(disc.form.names(), second);
        // A patient whom the catalogue does not know is stepped through all the same.
        const QString before = disc.shown();
        disc.form.press("cmdSerNext");
        EXPECT_EQ(disc.shown() == before, before.startsWith("Patient002")) << qPrintable(before);
        EXPECT_EQ(disc.form.names() == nobody, second == nobody);
        disc.form.press("Command2");
        EXPECT_EQ(disc.form.names(), third);
    }
}

TEST(OnePatient, FolderWithoutFiles) {
    SpoiltDisc disc;
    const QString outside = disc.disc.path({"empty"});
    QDir().mkdir(outside);
    disc.form.clickPatient(0);
    for (const QString& chosen : {outside, disc.folder("Patient001")}) {
        disc.form.journal.clear();
        disc.form.openFolder(chosen);
        EXPECT_EQ(disc.form.journal, QStringList()) << qPrintable(chosen);
        EXPECT_EQ(disc.form.place().CurrentFolder.pathOrEmpty(), disc.folder("Patient000"));
    }
    // The study of the listed files: steps go on among its series, whose places the catalogue is not asked
    // for.
    disc.form.openFolder(disc.folder("Patient000/Study1"));
    EXPECT_EQ(disc.form.names(), "Alpha | Series Scroll Bar");
    disc.form.press("cmdSerNext");
    EXPECT_EQ(disc.shown(), "Patient000/Study1/Series2/1");
    EXPECT_EQ(disc.form.names(), "Alpha | Series Scroll Bar");
    // Above the patient's own folder nobody has a name.
    disc.form.openFolder(disc.folder(""));
    EXPECT_EQ(disc.form.names(), nobody);
    EXPECT_EQ(disc.form.namedPatientFolder, "");
}

TEST(OnePatient, EmptySeriesUnloadsThePicture) {
    for (const int patient : {0, 1}) {
        SpoiltDisc disc;
        disc.empty(QString("Patient00%1/Study1/Series2").arg(patient));
        disc.form.clickPatient(patient);
        disc.form.press("cmdSerNext");
        EXPECT_TRUE(disc.form.names().endsWith("Series2"));
        EXPECT_EQ(disc.shown(), "");
        EXPECT_EQ(disc.form.images(), noImage);
        EXPECT_FALSE(disc.form.Timer4.Enabled());
        // In stills mode the strip is a series chooser and stays.
        EXPECT_EQ(disc.form.thumb[0]->FileName().isEmpty(), patient == 1);
        disc.form.press("cmdSerNext");
        EXPECT_NE(disc.shown(), "");
    }
}

TEST(OnePatient, OpeningAgainForgetsEverythingAndReadsOnlyWhatItProbes) {
    SpoiltDisc disc;
    RecordingForm1& form = disc.form;
    for (const int patient : {0, 1}) {
        form.clickPatient(patient);
        form.sb1.putValue(3);
        form.journal.clear();
        form.press("Open");
        QStringList loaded = form.puts().filter(".FileName=");
        loaded.removeAll("ezDicom.FileName=");
        EXPECT_EQ(loaded, QStringList("ezTest.FileName=1.dcm"));
        EXPECT_EQ(form.names(), nobody);
        EXPECT_EQ(form.images(), noImage);
        EXPECT_EQ(form.Label1.Caption(), "");
        EXPECT_EQ((QList{form.Slider2.Value(), form.sb1.Value(), form.sb1.Max()}), (QList{1, 1, 8}));
        form.journal.clear();
        form.press("cmdSerNext");
        EXPECT_EQ(form.journal, QStringList()) << "nobody is chosen yet";
    }
    // The disc is gone: a reverse continuous cine stays in its run.
    form.clickPatient(1);
    form.press("cmdNextImage");
    form.Slider2.putMax(4);
    disc.remove("");
    form.File1.Refresh();
    form.Option11.putValue(true);
    form.press("cmdReverse");
    EXPECT_NO_THROW(form.behaviour.cine.Timer4_Timer());
    EXPECT_EQ(form.ezDicom.CurrentFrame(), 5);
}

TEST(OnePatient, WhatIsWrongWithADiscIsSaidInTheTreesPlace) {
    const std::pair<Spoil, const char*> cases[] = {
        {[](SpoiltDisc&) {}, ""},
        {[](SpoiltDisc& d) { d.insertBefore("</CD>", "<open>"); }, "cannot be read"},
        {[](SpoiltDisc& d) { d.empty("Patient000/Study1/Series1"); }, "holds no images"},
        {[](SpoiltDisc& d) { d.empty("Patient000"); }, "holds no images"},
        {[](SpoiltDisc& d) { d.insertBefore("</CD>", "<Patient/>"); }, "is damaged"},
        {[](SpoiltDisc& d) { DiscBuilder::write(d.disc.path({"CD.xml"}), "<CD/>"); }, "names no patient"},
    };
    for (const auto& [spoil, words] : cases) {
        SpoiltDisc disc;
        spoil(disc);
        RecordingForm1 fresh(disc.disc.path());
        fresh.press("Open");
        EXPECT_TRUE(fresh.TreeView1.remark.contains(words)) << words;
        EXPECT_EQ(fresh.TreeView1.remark.isEmpty(), *words == 0) << words;
        EXPECT_EQ(fresh.dialogs.asked, QStringList());
    }
}

}  // namespace
}  // namespace cinedisc::test
