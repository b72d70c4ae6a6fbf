#include "tests/support/form/RecordingForm1.h"

#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

class CatalogueLoaderTest : public testing::Test {
  protected:
    /// Loads a catalogue of this content; answers the number of the run-time error, 0 for none.
    int load(const QByteArray& content) {
        DiscBuilder::write(disc.path({"CD.xml"}), content);
        form.FraTree.putVisible(false);
        try {
            form.behaviour.catalogueLoader.LoadCatalogue();
            return 0;
        } catch (const RunTimeError& error) {
            return error.number();
        }
    }
    /// The tree as text: indentation by level, then "[tag/picture]" where there is one.
    QString tree() const {
        QStringList lines;
        for (const auto& node : form.TreeView1.nodes) {
            int depth = 0;
            for (int up = node.parent; up; up = form.TreeView1.nodes[std::size_t(up - 1)].parent) ++depth;
            QString line = QString(depth, '.') + node.text;
            if (!node.tag.isEmpty()) line += QString("[%1/%2]").arg(node.tag).arg(node.picture);
            lines << line;
        }
        return lines.join(' ');
    }

    DiscBuilder disc{{}};
    RecordingForm1 form{disc.path()};
};

const QByteArray onePatient =
    "<p><n>A</n><x><n>s</n><y><n>t</n><z><n>1</n><more/></z><z><n>2</n></z></y></x></p>";

TEST_F(CatalogueLoaderTest, FillsFourLevelsByPosition) {
    EXPECT_EQ(
        load("<cd>" + onePatient +
             "<q><who>B</who><x><n>s1</n><y><n>t1</n><z><n>1</n></z></y><y><n>t2</n><z><n>1</n></z></y></x>"
             "<x><n>s2</n><y><n>t3</n><z><n>1</n></z></y></x></q></cd>"),
        0);
    EXPECT_EQ(tree(),
              "A[Patient000/1] .s ..t ...1 ...2 B[Patient001/1] .s1 ..t1 ...1 ..t2 ...1 .s2 ..t3 ...1");
    EXPECT_TRUE(form.FraTree.Visible());
    // The tree is filled once a run.
    EXPECT_EQ(load("<cd>" + onePatient + "</cd>"), 0);
    EXPECT_EQ(form.TreeView1.nodeCount(), 14);
    EXPECT_TRUE(form.FraTree.Visible());
}

TEST_F(CatalogueLoaderTest, GapsKeepWhatCameBefore) {
    struct Case {
        const char* spoiltPatient;
        const char* added;
    };
    for (const Case& c : {Case{"<p/>", ""},
                          {"<p><n>B</n></p>", " B[Patient001/1]"},
                          {"<p><n>B</n><x/></p>", " B[Patient001/1]"},
                          {"<p><n>B</n><x><n>s</n></x></p>", " B[Patient001/1] .s"},
                          {"<p><n>B</n><x><n>s</n><y/></x></p>", " B[Patient001/1] .s"},
                          {"<p><n>B</n><x><n>s</n><y><n>t</n></y></x></p>", " B[Patient001/1] .s ..t"},
                          {"<p><n>B</n><x><n>s</n><y><n>t</n><z/></y></x></p>", " B[Patient001/1] .s ..t"},
                          {"<!-- a comment is a node -->", ""}}) {
        form.TreeView1.nodes.clear();
        EXPECT_EQ(load("<cd>" + onePatient + c.spoiltPatient + onePatient + "</cd>"), 91) << c.spoiltPatient;
        EXPECT_EQ(tree(), QString("A[Patient000/1] .s ..t ...1 ...2") + c.added);
        EXPECT_FALSE(form.FraTree.Visible());
    }
}

TEST_F(CatalogueLoaderTest, MissingOrMalformedCatalogue) {
    EXPECT_EQ(load("<cd>"), 91);
    EXPECT_EQ(form.TreeView1.nodeCount(), 0);
    QFile::remove(disc.path({"CD.xml"}));
    form.behaviour.catalogueLoader.LoadCatalogue();
    EXPECT_FALSE(form.FraTree.Visible());
}

TEST_F(CatalogueLoaderTest, CounterOverflowsAfterTheNodeOfTheLastPatient) {
    constexpr int patients = 32769;
    EXPECT_EQ(load("<cd>" + onePatient.repeated(patients) + "</cd>"), 6);
    EXPECT_EQ(form.TreeView1.nodeCount(), 32767 * 5 + 1);
    EXPECT_EQ(form.TreeView1.nodes.back().tag, "Patient32767");
    EXPECT_EQ(form.TreeView1.nodes[1000 * 5].tag, "Patient1000");
    EXPECT_FALSE(form.FraTree.Visible());
}

TEST_F(CatalogueLoaderTest, NumbersHaveThreeCharactersAtLeast) {
    const std::pair<int, const char*> cases[] = {
        {0, "000"}, {7, "007"}, {42, "042"}, {1000, "1000"}, {-1, "0-1"}};
    for (const auto& [number, text] : cases) EXPECT_EQ(CatalogueLoader::UDirect(number), text);
}

TEST_F(CatalogueLoaderTest, DetailsByPosition) {
    const QByteArray second =
        "<q><n>B</n><x><n>s1</n><!-- - --><y><n>t1</n></y><y/><y><n>t2</n></y></x><x/>"
        "<x><n>s2</n><y><n>t3</n></y></x><x/></q>";
    DiscBuilder::write(disc.path({"CD.xml"}),
                       "<cd><p/>" + onePatient + "<!-- takes no place -->" + second + onePatient + "</cd>");
    DetailPanels& details = form.behaviour.details;
    details.PatDisplay(1, "folder");
    EXPECT_EQ(form.namedPatientFolder, "folder");
    EXPECT_EQ(form.Label5.Caption(), "B");
    EXPECT_EQ(form.Label13.Caption(), "B");
    details.PatDisplay(3, "other");
    EXPECT_EQ(form.namedPatientFolder, "folder");
    EXPECT_EQ(form.Label5.Caption(), "B");
    struct Case {
        int study, series;
        const char* shown;
    };
    for (const Case& c :
         {Case{0, 0, "t1"}, {0, 1, "t2"}, {1, 0, "t3"}, {1, 1, "t3"}, {5, 0, "t3"}, {2, 0, "t3"}}) {
        details.SerDisplay(c.study, c.series);
        EXPECT_EQ(form.Label6.Caption(), c.shown);
        EXPECT_EQ(form.Label15.Caption(), c.shown);
    }
    form.Label5.putCaption("b");
    EXPECT_THROW(details.SerDisplay(0, 0), RunTimeError);
    // One that is no longer well-formed counts as missing.
    DiscBuilder::write(disc.path({"CD.xml"}), "<cd>");
    details.SerDisplay(0, 0);
    details.PatDisplay(0, "other");
    QFile::remove(disc.path({"CD.xml"}));
    details.SerDisplay(0, 0);
    details.PatDisplay(0, "other");
    EXPECT_EQ(form.Label5.Caption(), "b");
}

}  // namespace
}  // namespace cinedisc::test
