#include "discmaker/CatalogueWriter.h"

#include "discmaker/Utf8.h"

#include <string_view>

namespace cinedisc::discmaker {

namespace {

std::string escaped(std::string_view text) {
    std::string result;
    for (char letter : text) {
        switch (letter) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '"':
                result += "&quot;";
                break;
            default:
                result += letter;
        }
    }
    return result;
}

class XmlLines {
  public:
    void open(const char* element) { line(tag("<", element)), ++depth_; }
    void close(const char* element) { --depth_, line(tag("</", element)); }
    void text(const std::string& content) { line("<text>" + escaped(content) + "</text>"); }
    void line(const std::string& content) {
        result_.append(depth_ * 2, ' ');
        result_ += content + "\n";
    }
    std::string take() { return std::move(result_); }

  private:
    static std::string tag(std::string start, const char* element) {
        return start.append(element).append(">");
    }

    std::string result_;
    std::size_t depth_ = 0;
};

}  // namespace

std::string catalogueXml(const DiscPlan& plan) {
    XmlLines xml;
    xml.line("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
    xml.line(catalogueMark);
    xml.line("<disc title=\"" + escaped(oneLine(plan.title)) + "\">");
    for (const auto& patient : plan.patients) {
        xml.open("patient");
        xml.text(patient.text);
        for (const auto& study : patient.studies) {
            xml.open("study");
            xml.text(study.text);
            for (const auto& series : study.series) {
                xml.open("series");
                xml.text(series.text);
                for (const auto& file : series.files)
                    xml.line("<entry><text>" + escaped(file.text) + "</text></entry>");
                xml.close("series");
            }
            xml.close("study");
        }
        xml.close("patient");
    }
    xml.line("</disc>");
    return xml.take();
}

}  // namespace cinedisc::discmaker
