#include "tests/support/form/RecordingForm1.h"

#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

struct CatalogueLoaderTest : testing::Test {
    /// Loads a catalogue of this content; returns the number of the run-time error, 0 for none.
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
    /// The tree as text: a dot a level, then "[tag/picture]" where there is one.
    QString tree() const {
        QStringList lines;
        for (const auto& node : form.TreeView1.nodes) {
            QString line = node.text;
            if (!node.tag.isEmpty()) line += QString("[%1/%2]").arg(node.tag).arg(node.picture);
            for (int up = node.parent; up; up = form.TreeView1.nodes[std::size_t(up - 1)].parent)
                line.prepend('.');
            lines << line;
        }
        return lines.join(' ');
    }

    DiscBuilder disc{{}};
    RecordingForm1 form{disc.path()};
};

const QByteArray onePatient =
    "<p><n>A</n><x><n>s</n><y><n>t</n><z><n>1</n><more/></z><z><n>2</n></z></y></x></p>";

TEST_F(CatalogueLoaderTest, FillsFourLevelsByPositionAndKeepsWhatCameBeforeAGap) {
    for (const auto& [content, added] :
         {std::pair{"<q><who>B</who><x><n>s</n><y><n>t</n><z><n>1</n></z></y><y><n>u</n><z><n>2</n></z></y></"
                    "x></q>",
                    " B[Patient001/1] .s ..t ...1 ..u ...2"},
          {"<p/>", ""},
          {"<p><n>B</n></p>", " B[Patient001/1]"},
          {"<p><n>B</n><x/></p>", " B[Patient001/1]"},
          {"<p><n>B</n><x><n>s</n></x></p>", " B[Patient001/1] .s"},
          {"<p><n>B</n><x><n>s</n><y/></x></p>", " B[Patient001/1] .s"},
          {"<p><n>B</n><x><n>s</n><y><n>t</n><z/></y></x></p>", " B[Patient001/1] .s ..t"},
          {"<!-- a comment is a node -->", ""}}) {
        const bool isWhole = QString(content).startsWith("<q>");
        form.TreeView1.nodes.clear();
        EXPECT_EQ(load("<cd>" + onePatient + content + "</cd>"), isWhole ? 0 : 91) << content;
        EXPECT_EQ(tree(), QString("A[Patient000/1] .s ..t ...1 ...2") + added);
        EXPECT_EQ(form.FraTree.Visible(), isWhole);
        // A tree with nodes is not filled again.
        form.TreeView1.nodes.resize(1);
        EXPECT_EQ(load("<cd><p/></cd>"), 0);
        EXPECT_TRUE(form.FraTree.Visible());
    }
    QFile::remove(disc.path({"CD.xml"}));
    form.FraTree.putVisible(false);
    form.behaviour.catalogueLoader.LoadCatalogue();
    EXPECT_FALSE(form.FraTree.Visible());
}

TEST_F(CatalogueLoaderTest, CounterOverflowsAfterTheNodeOfTheLastPatient) {
    constexpr int patients = 32769;
    EXPECT_EQ(load("<cd>" + onePatient.repeated(patients) + "</cd>"), 6);
    EXPECT_EQ(form.TreeView1.nodeCount(), 32767 * 5 + 1);
    EXPECT_EQ(form.TreeView1.nodes.back().tag, "Patient32767");
    EXPECT_EQ(form.TreeView1.nodes[42 * 5].tag, "Patient042");
    EXPECT_FALSE(form.FraTree.Visible());
}

TEST_F(CatalogueLoaderTest, DetailsByPosition) {
    const QByteArray second =
        "<q><n>B</n><x><n>s1</n><!-- - --><y><n>t1</n></y><y/><y><n>t2</n></y></x><x/>"
        "<x><n>s2</n><y><n>t3</n></y></x><x/></q>";
    DiscBuilder::write(disc.path({"CD.xml"}),
                       "<cd><p/>" + onePatient + "<!-- takes no place -->" + second + onePatient + "</cd>");
    DetailPanels& details = form.behaviour.details;
    for (const int patient : {1, 3}) {
        details.PatDisplay(patient, QString::number(patient));
        EXPECT_EQ(form.namedPatientFolder, "1") << "there is no fourth";
        EXPECT_EQ(form.Label5.Caption(), "B");
    }
    for (const auto& [study, series, shown] :
         {std::tuple{0, 0, "t1"}, {0, 1, "t2"}, {1, 0, "t3"}, {1, 1, "t3"}, {2, 0, "t3"}}) {
        details.SerDisplay(study, series);
        EXPECT_EQ(form.Label6.Caption(), shown);
        EXPECT_EQ(form.Label15.Caption(), shown);
    }
    form.Label5.putCaption("b");
    EXPECT_THROW(details.SerDisplay(0, 0), RunTimeError);
    // One that is not well-formed counts as missing.
    DiscBuilder::write(disc.path({"CD.xml"}), "<cd>");
    details.SerDisplay(0, 0);
    details.PatDisplay(0, "other");
    EXPECT_EQ(form.Label5.Caption(), "b");
}

}  // namespace
}  // namespace cinedisc::test
