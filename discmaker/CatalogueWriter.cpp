#include "discmaker/CatalogueWriter.h"

#include "discmaker/Utf8.h"

#include <QXmlStreamWriter>

namespace cinedisc::discmaker {

namespace {

/// An element that holds its text and then the elements of the next level.
template <typename Inner>
void writeLevel(QXmlStreamWriter& xml, const char* name, const std::string& text, const Inner& writeInner) {
    xml.writeStartElement(name);
    xml.writeTextElement("text", QString::fromStdString(text));
    writeInner();
    xml.writeEndElement();
}

}  // namespace

std::string catalogueXml(const DiscPlan& plan) {
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(2);
    xml.writeStartDocument();
    xml.writeComment(catalogueMark);
    xml.writeStartElement("disc");
    xml.writeAttribute("title", QString::fromStdString(oneLine(plan.title)));
    for (const auto& patient : plan.patients) {
        writeLevel(xml, "patient", patient.text, [&] {
            for (const auto& study : patient.studies) {
                writeLevel(xml, "study", study.text, [&] {
                    for (const auto& series : study.series) {
                        writeLevel(xml, "series", series.text, [&] {
                            for (const auto& file : series.files) writeLevel(xml, "entry", file.text, [] {});
                        });
                    }
                });
            }
        });
    }
    xml.writeEndDocument();
    return bytes.toStdString();
}

}  // namespace cinedisc::discmaker
