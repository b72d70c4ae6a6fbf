#include "panels/Theme.h"

#include "panels/DarkStyle.h"

#include <QApplication>
#include <QPalette>

#include <utility>

namespace cinedisc {

namespace {

constexpr QRgb ground = 0xff17191c;
constexpr QRgb field = 0xff101214;
constexpr QRgb raised = 0xff262a2f;
constexpr QRgb text = 0xffd5d9dd;
constexpr QRgb quiet = 0xff929ba4;
constexpr QRgb faint = 0xff5c646c;
constexpr QRgb accent = 0xff5fa8c8;
/// What has the keyboard is ringed in it; nothing else is.
constexpr QRgb focus = 0xfff6f7f8;

/// All colours by the names that the style sheet has for them.
constexpr std::pair<const char*, QRgb> colours[] = {
    {"field", field},        {"raised", raised},      {"text", text},         {"quiet", quiet},
    {"faint", faint},        {"accent", accent},      {"lit", 0xff30353b},    {"pressed", 0xff1c1f23},
    {"popUp", 0xff1f2327},   {"divider", 0xff2c3137}, {"line", 0xff34393f},   {"edge", 0xff454c54},
    {"ring", 0xff79828b},    {"mark", 0xff7fc0dc},    {"filled", 0xff3f7389}, {"knob", 0xffb4bbc2},
    {"knobLit", 0xffe4e7ea}, {"focus", focus},
};

QPalette darkPalette() {
    QPalette palette;
    palette.setColor(QPalette::Window, ground);
    palette.setColor(QPalette::Base, field);
    palette.setColor(QPalette::AlternateBase, ground);
    palette.setColor(QPalette::Button, raised);
    palette.setColor(QPalette::ToolTipBase, raised);
    palette.setColor(QPalette::Highlight, QColor(accent).darker(150));
    palette.setColor(QPalette::Link, accent);
    palette.setColor(QPalette::PlaceholderText, quiet);
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, faint);
    }
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::BrightText, focus);
    return palette;
}

constexpr const char* sheet = R"(
QPushButton { background: %raised%; border: 1px solid %line%; border-radius: 4px; padding: 4px 7px; min-height: 20px; }
cinedisc--IconButton { padding: 4px; min-width: 24px; }
QPushButton:hover { background: %lit%; border-color: %edge%; }
QPushButton:pressed { background: %pressed%; }
QPushButton:checked { border-color: %accent%; background: %accent%; color: %field%; }
QPushButton:checked:hover { background: %mark%; }
QPushButton:focus { border: 2px solid %focus%; padding: 3px 6px; }
QPushButton:checked:focus { background-clip: content; }
cinedisc--IconButton:focus { padding: 3px; }
QPushButton:disabled { color: %faint%; }
QRadioButton { spacing: 6px; }
QRadioButton::indicator { width: 12px; height: 12px; border: 1px solid %ring%; border-radius: 7px; background: %field%; }
QRadioButton::indicator:hover { border-color: %text%; }
QRadioButton::indicator:checked { border-color: %accent%; background: qradialgradient(cx: 0.5, cy: 0.5, radius: 0.5,
    fx: 0.5, fy: 0.5, stop: 0 %mark%, stop: 0.5 %mark%, stop: 0.6 %field%, stop: 1 %field%); }
QCheckBox { spacing: 6px; }
QCheckBox::indicator { width: 11px; height: 11px; border: 1px solid %ring%; border-radius: 2px; background: %field%; }
QCheckBox::indicator:hover { border-color: %text%; }
QCheckBox::indicator:checked { border-color: %accent%; background: %mark%; }
QSlider { min-height: 20px; border: 1px solid transparent; border-radius: 3px; }
QSlider:focus { border-color: %focus%; }
QRadioButton::indicator:focus { border: 2px solid %focus%; width: 10px; height: 10px; }
QCheckBox::indicator:focus { border: 2px solid %focus%; width: 9px; height: 9px; }
QSlider::groove:horizontal { height: 4px; border-radius: 2px; background: %line%; }
QSlider::sub-page:horizontal { border-radius: 2px; background: %filled%; }
QSlider::handle:horizontal { width: 14px; margin: -5px 0; border-radius: 7px; background: %knob%; }
QSlider::handle:horizontal:hover { background: %knobLit%; }
cinedisc--GroupLine { background: %divider%; border: none; }
cinedisc--PopUpPanel { background: %popUp%; border: 1px solid %edge%; border-radius: 4px; }
cinedisc--PopUpPanel QPushButton { background: transparent; border-color: transparent; }
cinedisc--PopUpPanel QPushButton:hover { background: %lit%; }
cinedisc--PopUpPanel QPushButton:checked { background: %accent%; }
cinedisc--PopUpPanel QPushButton:focus { border-color: %focus%; }
QGroupBox { border: 1px solid %divider%; border-radius: 4px; margin-top: 20px; padding: 2px; }
QGroupBox::title { subcontrol-origin: margin; subcontrol-position: top left; color: %quiet%; padding: 0 2px; }
QToolTip { background: %raised%; color: %text%; border: 1px solid %edge%; padding: 3px; }
QDialog QLineEdit { background: %field%; border: 1px solid %edge%; border-radius: 3px; padding: 2px; }
QDialog QLineEdit:focus { border-color: %focus%; }
QDialog QAbstractItemView { border: 1px solid transparent; }
cinedisc--PatientTreeView { border: 1px solid transparent; }
QDialog QAbstractItemView:focus, cinedisc--PatientTreeView:focus { border-color: %focus%; }
QMessageBox QLabel#qt_msgbox_label { min-width: 260px; }
QProgressDialog { min-width: 360px; }
QMenu { border: 1px solid %line%; }
)";

}  // namespace

void applyColours(QApplication& application) {
    application.setStyle(new DarkStyle);
    application.setPalette(darkPalette());
}

void applyStyleSheet(QApplication& application) {
    if (!application.styleSheet().isEmpty()) return;
    QString coloured = sheet;
    for (const auto& [name, colour] : colours)
        coloured.replace('%' + QString(name) + '%', QColor(colour).name());
    application.setStyleSheet(coloured);
}

void applyTheme(QApplication& application) {
    applyColours(application);
    applyStyleSheet(application);
}

}  // namespace cinedisc
