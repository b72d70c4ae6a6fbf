#include "fuzzing/window/SizedDiscs.h"

#include "tests/support/DicomBuilder.h"

#include <QDir>
#include <QFile>

namespace cinedisc::fuzzing::window {

namespace {

const test::Bytes& smallFile() {
    static const test::Bytes bytes = test::DicomBuilder::image(32, 32, 3).gradientPixels().build();
    return bytes;
}

void makeSeries(const QString& folder, const QString& series, int files) {
    const QString place = folder + "/Dicom/" + series;
    QDir().mkpath(place);
    const QString first = place + "/1.dcm";
    QFile file(first);
    if (file.open(QFile::WriteOnly))
        file.write(reinterpret_cast<const char*>(smallFile().data()), qint64(smallFile().size()));
    // One file under many names.
    for (int i = 2; i <= files; ++i)
        if (link(QFile::encodeName(first), QFile::encodeName(place + QString("/%1.dcm").arg(i)))) break;
}

std::function<void(const QString&)> catalogue(std::function<QByteArray()> text) {
    return [text = std::move(text)](const QString& folder) {
        makeSeries(folder, "Patient000/Study1/Series1", 3);
        QFile file(folder + "/CD.xml");
        if (file.open(QFile::WriteOnly)) file.write(text());
    };
}

QByteArray disc(const QByteArray& patients, const QByteArray& before = {}) {
    return before + "<disc>" + patients + "</disc>";
}

QByteArray patient(const QByteArray& name, int studies, int series, int entries) {
    const auto level = [](const char* tag, const QByteArray& inner, int count) {
        return ("<" + QByteArray(tag) + "><text>words</text>" + inner + "</" + tag + ">").repeated(count);
    };
    return "<patient><text>" + name + "</text>" +
           level("study", level("series", level("entry", {}, entries), series), studies) + "</patient>";
}

}  // namespace

const std::vector<SizedDisc>& sizedDiscs() {
    static const std::vector<SizedDisc> all = [] {
        std::vector<SizedDisc> discs;
        const auto add = [&](const char* what, std::function<QByteArray()> text) {
            discs.push_back({what, catalogue(std::move(text))});
        };
        add("10,000 entries", [] { return disc(patient("A", 10, 10, 100)); });
        add("names of 1 MB", [] {
            return disc(patient(QByteArray(1 << 20, 'n'), 2, 2, 2) +
                        patient(QByteArray("n ").repeated(1 << 19), 1, 1, 1));
        });
        add("names of 1 MB of marks",
            [] { return disc(patient(QByteArray("\xD8\xA7\xCC\x81").repeated(1 << 18), 1, 1, 1)); });
        add("32,766 patients", [] { return disc(patient("A", 1, 1, 1).repeated(32766)); });
        add("40,000 patients", [] { return disc(patient("A", 1, 1, 1).repeated(40000)); });
        add("a million entries", [] { return disc(patient("A", 1, 1, 1000000)); });
        add("a million series", [] { return disc(patient("A", 1, 1000000, 0)); });
        add("60 million empty elements", [] { return disc(QByteArray("<a/>").repeated(60 << 20)); });
        add("40 million pieces of text", [] { return disc(QByteArray("x<a/>").repeated(40 << 20)); });
        add("30 million comments", [] { return disc(QByteArray("<!---->").repeated(30 << 20)); });
        add("250 MB of one word", [] { return disc("<p><t>" + QByteArray(250 << 20, 'w') + "</t></p>"); });
        add("a million attributes", [] {
            QByteArray attributes;
            for (int i = 0; i < 1000000; ++i) attributes += " a" + QByteArray::number(i) + "=''";
            return disc("<p" + attributes + "/>");
        });
        add("a million attributes that are declared", [] {
            QByteArray attributes;
            for (int i = 0; i < 1000000; ++i) attributes += " a" + QByteArray::number(i) + " CDATA 'v'";
            return disc(patient("A", 1, 1, 1), "<!DOCTYPE disc [<!ATTLIST p" + attributes + ">]>");
        });
        add("a thousand declared attributes of a million elements", [] {
            QByteArray attributes;
            for (int i = 0; i < 1000; ++i) attributes += " a" + QByteArray::number(i) + " CDATA 'v'";
            return disc(QByteArray("<p/>").repeated(1000000),
                        "<!DOCTYPE disc [<!ATTLIST p" + attributes + ">]>");
        });
        add("a million entities", [] {
            QByteArray entities;
            for (int i = 0; i < 1000000; ++i) entities += "<!ENTITY e" + QByteArray::number(i) + " 'v'>";
            return disc(patient("A&e77;", 1, 1, 1), "<!DOCTYPE disc [" + entities + "]>");
        });
        add("beginnings of tags without end",
            [] { return disc("<![CDATA[" + (QByteArray(4000, '<') + ">").repeated(60000) + "]]>"); });
        add("deep content models", [] {
            return disc(patient("A", 1, 1, 1), "<!DOCTYPE disc [<!ELEMENT p " + QByteArray(100000, '(') +
                                                   "x" + QByteArray(100000, ')') + ">]>");
        });
        discs.push_back({"40,000 files in a folder", [](const QString& folder) {
                             makeSeries(folder, "Patient000/Study1/Series1", 40000);
                         }});
        discs.push_back({"30,000 files in a folder", [](const QString& folder) {
                             catalogue([] { return disc(patient("A", 1, 1, 30000)); })(folder);
                             makeSeries(folder, "Patient000/Study1/Series1", 30000);
                         }});
        discs.push_back({"20,000 series", [](const QString& folder) {
                             catalogue([] { return disc(patient("A", 1, 20000, 1)); })(folder);
                             for (int i = 2; i <= 20000; ++i)
                                 makeSeries(folder, QString("Patient000/Study1/Series%1").arg(i), 1);
                         }});
        return discs;
    }();
    return all;
}

}  // namespace cinedisc::fuzzing::window
