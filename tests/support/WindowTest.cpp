#include "tests/support/WindowTest.h"

#include <QAbstractButton>

namespace cinedisc::test {

void WindowTest::expectEveryDisplayToolWorks() {
    const bool smooth = view("Smooth").toBool();
    struct Case {
        QString control;
        const char* member;
        QVariant value;
    };
    for (const Case& c : {Case{"cmdFit(1)", "ZoomPercent", 100}, {"cmdFit(1)", "BestFit", false},
                          {"cmdFit(2)", "ZoomPercent", 50},      {"cmdFit(3)", "ZoomPercent", 150},
                          {"cmdFit(4)", "ZoomPercent", 200},     {"cmdFit(0)", "BestFit", true},
                          {"cmdFit(0)", "ZoomPercent", 200},     {"mnu50", "ZoomPercent", 50},
                          {"mnu50", "BestFit", false},           {"mnu100", "ZoomPercent", 100},
                          {"mnu150", "ZoomPercent", 150},        {"mnu200", "ZoomPercent", 200},
                          {"mnuBestFit", "BestFit", true},       {"mnuBestFit", "ZoomPercent", 200},
                          {"cmdInvert", "Polarity", -1},         {"mnuInvert", "Polarity", 1},
                          {"cmdSmooth", "Smooth", !smooth},      {"mnuSmooth", "Smooth", smooth},
                          {"cmdHeader", "ShowHeader", true},     {"mnuHeader", "ShowHeader", false},
                          {"cmdMagnify", "MouseMode", 3},        {"cmdPanning", "MouseMode", 4},
                          {"cmdLabel", "MouseMode", 5},          {"cmdWindow", "MouseMode", 1},
                          {"mnuMagnify", "MouseMode", 3},        {"mnuPanning", "MouseMode", 4},
                          {"mnuLabel", "MouseMode", 5},          {"mnuWindow", "MouseMode", 1},
                          {"Option1", "BackgroundFill", false},  {"Option2", "BackgroundFill", true},
                          {"Option2", "BackgroundColor", 1},     {"Option3", "BackgroundColor", 0},
                          {"mnuNone", "BackgroundFill", false},  {"mnuBlack", "BackgroundColor", 1},
                          {"mnuBlack", "BackgroundFill", true},  {"mnuWhite", "BackgroundColor", 0},
                          {"Command3", "Option256", true}}) {
        QWidget* popUp = nullptr;
        if (c.control.startsWith("cmdFit")) popUp = openPopUp("cmdZoom", "Frame5");
        if (c.control.startsWith("Option")) popUp = openPopUp("cmdOverlay", "Frame6");
        c.control.startsWith("mnu") ? choose(c.control) : find<QAbstractButton>(c.control).click();
        EXPECT_EQ(view(c.member), c.value) << qPrintable(c.control);
        EXPECT_FALSE(popUp && popUp->isVisible()) << qPrintable(c.control);
    }
}

void WindowTest::expectEscapeHidesThePopUps(const QStringList& places) {
    for (const auto& [button, panel] : {std::pair{"cmdZoom", "Frame5"}, {"cmdOverlay", "Frame6"}}) {
        for (const QString& place : places) {
            const QWidget* popUp = openPopUp(button, panel);
            if (!place.isEmpty()) find(place).setFocus();
            QTest::keyClick(window().focusWidget(), Qt::Key_Escape);
            EXPECT_FALSE(popUp->isVisible()) << panel << " with the keyboard on " << qPrintable(place);
        }
    }
}

QWidget* WindowTest::openPopUp(const QString& button, const QString& panel) {
    click(button);
    EXPECT_TRUE(find(panel).isVisible());
    return &find(panel);
}

}  // namespace cinedisc::test
