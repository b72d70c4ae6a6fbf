#include "catalogue/DetailPanels.h"

#include "platform/RunTimeError.h"

#include <span>

namespace cinedisc {

namespace {

/// The node with children at `position`, counted from 0; null past the end.
const CatalogueNode* nodeAt(std::span<const CatalogueNode> nodes, Int16 position) {
    for (const CatalogueNode& node : nodes) {
        if (node.children().empty()) continue;
        if (position == 0) return &node;
        position = position - 1;
    }
    return nullptr;
}

/// A node's first child is its own text, the others are the next level.
std::span<const CatalogueNode> nextLevel(const CatalogueNode& node) {
    return std::span(node.children()).subspan(1);
}

}  // namespace

void DetailPanels::PatDisplay(Int16 patientNumber, const QString& folder) {
    const auto root = catalogue_.readable();
    const CatalogueNode* patient = root ? nodeAt(root->children(), patientNumber) : nullptr;
    if (patient) place_.showPatient(patient->first().text(), folder);
}

void DetailPanels::SerDisplay(Int16 studyNumber, Int16 seriesNumber) {
    const auto root = catalogue_.readable();
    if (!root) return;
    const QString shown = disc_.Label5.Caption();
    for (const CatalogueNode& patient : root->children()) {
        if (patient.children().empty() || patient.first().text() != shown) continue;
        const CatalogueNode* study = nodeAt(nextLevel(patient), studyNumber);
        const CatalogueNode* series = study ? nodeAt(nextLevel(*study), seriesNumber) : nullptr;
        if (series) disc_.showSeries(series->first().text());
        return;
    }
    throw RunTimeError::objectNotSet();
}

}  // namespace cinedisc
