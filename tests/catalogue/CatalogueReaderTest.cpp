#include "catalogue/CatalogueReader.h"
#include "platform/RunTimeError.h"
#include "tests/support/DiscBuilder.h"

#include <QStringConverter>
#include <QUrl>
#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

struct CatalogueReaderTest : testing::Test {
    std::optional<CatalogueNode> read(const QByteArray& content) {
        const QString path = folder.filePath("CD.xml");
        DiscBuilder::write(path, content);
        return readCatalogue(path);
    }

    QTemporaryDir folder;
};

QStringList texts(const CatalogueNode& node) {
    QStringList all;
    for (const CatalogueNode& child : node.children()) all << child.text();
    return all;
}

TEST_F(CatalogueReaderTest, Encodings) {
    const struct {
        const char* declared;
        QByteArray name;
        const char16_t* expected;
    } cases[] = {{"UTF-8", "M\xC3\xBCller", u"Müller"},
                 {"ISO-8859-1", "M\xFCller", u"Müller"},
                 {"ISO-8859-5", "\xB8\xD2\xD0\xDD", u"Иван"},
                 {"windows-1252", "\x8Aim\x9Cn", u"Šimœn"},
                 {"GB18030", "\xCD\xF5\xD0\xA1\xB6\xAB", u"王小东"},
                 // Characters that only the successors of the declared encodings have.
                 {"gb2312", "\xFD\x50\xE9\x46", u"齈镕"},
                 {"GBK", "\x81\x30\x84\x36\xE9\x46", u"\u00A5镕"},
                 {"Shift_JIS", "\xFB\xFC\x8B\xB4\x87\x40", u"髙橋①"},
                 {"euc-kr", "\x8C\x63\xB1\xE8", u"똠김"}};
    for (const auto& c : cases) {
        const auto root = read(QByteArray("<?xml version='1.0' encoding='") + c.declared + "'?><a><b>" +
                               c.name + "</b></a>");
        ASSERT_TRUE(root) << c.declared;
        EXPECT_EQ(texts(*root), QStringList(QString::fromUtf16(c.expected))) << c.declared;
    }
    for (const auto encoding :
         {QStringConverter::Utf16LE, QStringConverter::Utf16BE, QStringConverter::Utf8}) {
        QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
        const QString declared = encoding == QStringConverter::Utf8 ? "UTF-8" : "UTF-16";
        const auto root =
            read(QByteArray(encoder.encode("<?xml version='1.0' encoding='" + declared + "'?><a><b>" +
                                           QString::fromUtf16(u"Иван") + "</b></a>")));
        ASSERT_TRUE(root) << int(encoding);
        EXPECT_EQ(texts(*root), QStringList(QString::fromUtf16(u"Иван")));
    }
}

TEST_F(CatalogueReaderTest, ChildNodesAreThoseOfADom) {
    const auto root = read(
        "<?xml version='1.0'?><!DOCTYPE cd [<!ENTITY who 'Doe'>]><!-- before --><cd>\n"
        "  <p>  John <!-- inside --> <b>&who;</b><i> </i>&amp; <![CDATA[<x> ]]> </p>\n"
        "  <!-- between -->\n  <?note here?>\n  plain &who;\n  <![CDATA[ ]]>\n  <empty/>\n</cd>");
    ASSERT_TRUE(root);
    EXPECT_EQ(texts(*root), QStringList({"John  Doe & <x>", "between", "here", "plain Doe", "", ""}));
    EXPECT_THROW(root->children()[5].first(), RunTimeError);
    EXPECT_THROW(root->children()[1].first(), RunTimeError);
}

TEST_F(CatalogueReaderTest, HostileOrBrokenFilesAreNotWellFormed) {
    const QString secret = folder.filePath("secret.txt");
    DiscBuilder::write(secret, "secret");
    QByteArray laughs = "<?xml version='1.0'?><!DOCTYPE a [<!ENTITY l0 'hahahahahahahahahaha'>";
    for (int i = 1; i < 12; ++i) {
        laughs += "<!ENTITY l" + QByteArray::number(i) + " '" +
                  QByteArray("&l" + QByteArray::number(i - 1) + ";").repeated(10) + "'>";
    }
    laughs += "]><a><b>&l11;</b></a>";
    QByteArray attributes;
    for (int i = 0; i < 1000000; ++i) attributes += " a" + QByteArray::number(i) + "=''";
    QByteArray quadratic = "<?xml version='1.0'?><!DOCTYPE a [<!ENTITY e '" + QByteArray(100000, 'x') +
                           "'>]><a><b>" + QByteArray("&e;").repeated(20000) + "</b></a>";
    const QByteArray cases[] = {"",
                                "no markup",
                                "<a><b></a>",
                                "<a/><a/>",
                                "<?xml version='1.0' encoding='no-such'?><a/>",
                                "<?xml version='1.0' encoding='GB18030'?><a>\xFF</a>",
                                laughs,
                                quadratic,
                                "<a" + attributes + "/>",
                                "<!DOCTYPE a [<!ENTITY e '<b/>'>]><a>&e;</a>",
                                "<!DOCTYPE a [<!ATTLIST a b CDATA ''>]><a/>",
                                "<!DOCTYPE a [" + QByteArray("<!ENTITY e 'x'>").repeated(1001) + "]><a/>",
                                "<a>" + QByteArray("<b/>").repeated(1'000'000) + "</a>",
                                "<a>" + QByteArray("x<!----><![CDATA[y]]><?p?>").repeated(250'000) + "</a>",
                                "<a/>" + QByteArray(64 << 20, ' '),
                                QByteArray("<a>").repeated(20 << 20)};
    for (const QByteArray& content : cases) EXPECT_FALSE(read(content)) << content.left(60).constData();

    const QByteArray elsewhere = " SYSTEM '" + QUrl::fromLocalFile(secret).toEncoded() + "'";
    const auto external =
        read("<!DOCTYPE a" + elsewhere + " [<!ENTITY e" + elsewhere + ">]><a><b>x&e;</b></a>");
    ASSERT_TRUE(external);
    EXPECT_EQ(texts(*external), QStringList("x"));
    testing::internal::CaptureStderr();
    const auto large = read("<!DOCTYPE a [<!ELEMENT a ANY><!ELEMENT a (b)><!ATTLIST a x (1|2) #IMPLIED>" +
                            QByteArray("<!ENTITY e 'x'>").repeated(1000) + "]><!--" + QByteArray(5000, 'c') +
                            "--><a x='1' xmlns:y='u'><y:b><![CDATA[<<<]]></y:b><b z='2'/>" +
                            QByteArray("<b>").repeated(200) + QByteArray("</b>").repeated(200) +
                            QByteArray("<b/>").repeated(900'000) + "</a>");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    ASSERT_TRUE(large);
    EXPECT_EQ(large->children().size(), 900'003u);
    EXPECT_EQ(large->children()[0].text(), "<<<");
    EXPECT_FALSE(readCatalogue(folder.path()));
    EXPECT_FALSE(readCatalogue(folder.filePath("missing.xml")));
}

}  // namespace
}  // namespace cinedisc::test
