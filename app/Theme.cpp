#include "app/Theme.h"

#include <QApplication>
#include <QPalette>
#include <QStyleFactory>

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
QPushButton[picture="true"] { padding: 4px; min-width: 24px; }
QPushButton:hover { background: #30353b; border-color: #454c54; }
QPushButton:pressed { background: #1c1f23; }
QPushButton:focus { border-color: #5fa8c8; }
QPushButton[active="true"] { border-color: #5fa8c8; background: #20333c; }
QPushButton:disabled { color: #5c646c; }
QFrame[groupLine="true"] { background: #2c3137; border: none; }
QFrame[popUp="true"] { background: #1f2327; border: 1px solid #454c54; border-radius: 4px; }
QFrame[popUp="true"] QPushButton { background: transparent; border-color: transparent; }
QFrame[popUp="true"] QPushButton:hover { background: #30353b; }
QFrame[popUp="true"] QPushButton:focus { border-color: #5fa8c8; }
QGroupBox { border: 1px solid #2c3137; border-radius: 4px; margin-top: 20px; padding: 2px; }
QGroupBox::title { subcontrol-origin: margin; subcontrol-position: top left; color: #929ba4; padding: 0 2px; }
QToolTip { background: #262a2f; color: #d5d9dd; border: 1px solid #454c54; padding: 3px; }
QMenu { border: 1px solid #34393f; }
)";

}  // namespace

void applyTheme(QApplication& application) {
    application.setStyle(QStyleFactory::create("Fusion"));
    application.setPalette(darkPalette());
    application.setStyleSheet(sheet);
}

}  // namespace cinedisc
