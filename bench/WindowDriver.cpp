#include "bench/WindowDriver.h"

#include "control/ezDICOMX.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QTreeView>

namespace cinedisc::bench {

void WindowDriver::click(const char* button) const { find<QAbstractButton>(button)->click(); }

void WindowDriver::openPatient(int number) const {
    click("Open");
    auto* tree = find<QTreeView>("TreeView1");
    const QModelIndex patient = tree->model()->index(number, 0);
    if (!patient.isValid()) qFatal("no patient on this disc");
    emit tree->clicked(patient);
}

void WindowDriver::resizeView(QSize size) const {
    // The panels beside it follow the window's size, so that it takes a few steps to get there.
    for (int i = 0; i < 20 && view_.size() != size; ++i) {
        window_.resize(window_.size() + size - view_.size());
        QCoreApplication::processEvents();
    }
    if (view_.size() != size) qFatal("the view does not take this size");
}

bool showsCoarse(const QWidget& view) { return dynamic_cast<const ezDICOMX&>(view).isCoarse(); }

}  // namespace cinedisc::bench
