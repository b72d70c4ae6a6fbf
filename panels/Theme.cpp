#include "panels/Theme.h"

#include "panels/DarkStyle.h"

#include <QApplication>
#include <QPalette>

namespace cinedisc {

namespace {

constexpr QRgb ground = 0xff17191c;
constexpr QRgb field = 0xff101214;
constexpr QRgb raised = 0xff262a2f;
constexpr QRgb text = 0xffd5d9dd;
constexpr QRgb quiet = 0xff929ba4;
constexpr QRgb faint = 0xff5c646c;
constexpr QRgb accent = 0xff5fa8c8;

QPalette darkPalette() {
    QPalette palette;
    palette.setColor(QPalette::Window, ground);
    palette.setColor(QPalette::Base, field);
    palette.setColor(QPalette::AlternateBase, ground);
    palette.setColor(QPalette::Button, raised);
    palette.setColor(QPalette::ToolTipBase, raised);
    palette.setColor(QPalette::Highlight, QColor(accent).darker(190));
    palette.setColor(QPalette::Link, accent);
    palette.setColor(QPalette::PlaceholderText, quiet);
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, faint);
    }
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::BrightText, Qt::white);
    return palette;
}

constexpr const char* sheet = R"(
QPushButton { background: #262a2f; border: 1px solid #34393f; border-radius: 4px; padding: 4px 8px; min-height: 20px; }
cinedisc--IconButton { padding: 4px; min-width: 24px; }
QPushButton:hover { background: #30353b; border-color: #454c54; }
QPushButton:pressed { background: #1c1f23; }
QPushButton:focus { border-color: #5fa8c8; }
QPushButton[active="true"] { border-color: #5fa8c8; background: #20333c; }
QPushButton:disabled { color: #5c646c; }
QRadioButton { spacing: 6px; }
QRadioButton::indicator { width: 12px; height: 12px; border: 1px solid #79828b; border-radius: 7px; background: #101214; }
QRadioButton::indicator:hover { border-color: #d5d9dd; }
QRadioButton::indicator:focus { border-color: #5fa8c8; }
QRadioButton::indicator:checked { border-color: #5fa8c8; background: qradialgradient(cx: 0.5, cy: 0.5, radius: 0.5,
    fx: 0.5, fy: 0.5, stop: 0 #7fc0dc, stop: 0.5 #7fc0dc, stop: 0.6 #101214, stop: 1 #101214); }
QSlider { min-height: 20px; }
QSlider::groove:horizontal { height: 4px; border-radius: 2px; background: #34393f; }
QSlider::sub-page:horizontal { border-radius: 2px; background: #3f7389; }
QSlider::handle:horizontal { width: 14px; margin: -5px 0; border-radius: 7px; background: #b4bbc2; }
QSlider::handle:horizontal:hover { background: #e4e7ea; }
QSlider::handle:horizontal:focus { background: #7fc0dc; }
cinedisc--GroupLine { background: #2c3137; border: none; }
cinedisc--PopUpPanel { background: #1f2327; border: 1px solid #454c54; border-radius: 4px; }
cinedisc--PopUpPanel QPushButton { background: transparent; border-color: transparent; }
cinedisc--PopUpPanel QPushButton:hover { background: #30353b; }
cinedisc--PopUpPanel QPushButton:focus { border-color: #5fa8c8; }
QGroupBox { border: 1px solid #2c3137; border-radius: 4px; margin-top: 20px; padding: 2px; }
QGroupBox::title { subcontrol-origin: margin; subcontrol-position: top left; color: #929ba4; padding: 0 2px; }
QToolTip { background: #262a2f; color: #d5d9dd; border: 1px solid #454c54; padding: 3px; }
QMenu { border: 1px solid #34393f; }
)";

}  // namespace

void applyColours(QApplication& application) {
    application.setStyle(new DarkStyle);
    application.setPalette(darkPalette());
}

void applyStyleSheet(QApplication& application) {
    if (application.styleSheet().isEmpty()) application.setStyleSheet(sheet);
}

void applyTheme(QApplication& application) {
    applyColours(application);
    applyStyleSheet(application);
}

}  // namespace cinedisc
