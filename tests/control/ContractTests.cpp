#include "tests/control/ViewFixture.h"
#include "tests/support/ViewerContractTests.h"

#include <QMetaProperty>

namespace cinedisc::test {
namespace {

struct Component {
    Component() {
        const auto file = greyRun(16, 16, 12);
        file->grey.windows = {{100, 50, dicom::Window::Function::Linear}};
        fake.files["/run"] = file;
        fake.files["/still"] = greyRun(16, 16, 1);
    }
    ViewerControl& viewer() { return control; }
    QString run() { return "/run"; }
    QString still() { return "/still"; }
    QString unreadable() { return "/nowhere"; }

    FakeLibrary fake;
    ezDICOMX control{ViewRole::Main, nullptr, fake.library};
};

INSTANTIATE_TYPED_TEST_SUITE_P(Component, ViewerContract, Component);

TEST(ComponentProperties, AreThePutsOfTheContract) {
    Component component;
    auto& view = component.control;
    const struct {
        const char* name;
        QVariant value;
    } puts[] = {
        {"FileName", "/run"},    {"CurrentFrame", 4},      {"ZoomPercent", 200},   {"BestFit", true},
        {"Smooth", false},       {"Polarity", -1},         {"WindowCenter", 60.5}, {"WindowWidth", 70.0},
        {"MouseMode", 4},        {"BackgroundFill", true}, {"BackgroundColor", 0}, {"ShowHeader", true},
        {"ExportFormat", "BMP"}, {"RangeStart", 2},        {"RangeEnd", 9},        {"RangeModeA", 3},
        {"RangeModeB", 3},       {"Option247", true},      {"Option256", true},    {"StartupFlag", true},
        {"ThumbIndex", 2},       {"ThumbStyle", 2},        {"Tag", "folder"}};
    for (const auto& put : puts) {
        EXPECT_TRUE(view.setProperty(put.name, put.value)) << put.name;
        EXPECT_EQ(view.property(put.name), put.value) << put.name;
    }
    EXPECT_EQ(view.property("FrameCount"), 12);
    EXPECT_EQ(view.CurrentFrame(), 4);
    EXPECT_EQ(view.WindowWidth(), 70);
    bool copied = false;
    EXPECT_TRUE(QMetaObject::invokeMethod(&view, "CopyToClipboard", Q_RETURN_ARG(bool, copied)));
    EXPECT_TRUE(copied);
}

TEST(ComponentProperties, UnloadAndRaiseAsThePutsDo) {
    Component component;
    auto& view = component.control;
    view.setProperty("FileName", "/run");
    view.setProperty("ThumbIndex", -1);
    EXPECT_EQ(view.property("FileName"), "");
    EXPECT_ANY_THROW(view.setProperty("ExportFile", "/nowhere/at/all.bmp"));
}

}  // namespace
}  // namespace cinedisc::test
