#include "catalogue/DetailPanels.h"

#include "platform/RunTimeError.h"

#include <algorithm>

namespace cinedisc {

namespace {

/// Child `position` of the next level, counted from 0; null past its end.
const CatalogueNode* nextLevelAt(const CatalogueNode& node, Int16 position) {
    const std::size_t index = static_cast<std::size_t>(position.value()) + 1;
    return position >= 0 && index < node.children().size() ? &node.children()[index] : nullptr;
}

}  // namespace

DetailPanels::Patient DetailPanels::PatDisplay(Int16 patientNumber) {
    if (!catalogue_.exists()) return Patient::NotInCatalogue;
    const CatalogueNode root = catalogue_.documentElement();
    const auto position = static_cast<std::size_t>(patientNumber.value());
    if (patientNumber < 0 || position >= root.children().size()) return Patient::NotInCatalogue;
    disc_.showPatient(root.children()[position].first().text());
    return Patient::Shown;
}

void DetailPanels::SerDisplay(Int16 studyNumber, Int16 seriesNumber) {
    if (!catalogue_.exists()) return;
    const CatalogueNode root = catalogue_.documentElement();
    const QString shown = disc_.Label5.Caption();
    const auto patient =
        std::find_if(root.children().begin(), root.children().end(),
                     [&](const CatalogueNode& candidate) { return candidate.first().text() == shown; });
    if (patient == root.children().end()) throw RunTimeError::objectNotSet();
    const CatalogueNode* study = nextLevelAt(*patient, studyNumber);
    const CatalogueNode* series = study ? nextLevelAt(*study, seriesNumber) : nullptr;
    if (series && !series->children().empty()) disc_.showSeries(series->first().text());
}

}  // namespace cinedisc
