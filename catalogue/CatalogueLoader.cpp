#include "catalogue/CatalogueLoader.h"

namespace cinedisc {

void CatalogueLoader::LoadCatalogue() {
    if (!catalogue_.exists()) return;
    if (disc_.TreeView1.nodeCount() < 1) {
        const CatalogueNode root = catalogue_.documentElement();
        for (const CatalogueNode& patient : root.children()) Patient(patient);
    }
    disc_.FraTree.putVisible(true);
}

void CatalogueLoader::Patient(const CatalogueNode& patient) {
    TreeControl& tree = disc_.TreeView1;
    if (tree.nodeCount() == 0) PatientCounter_ = 0;
    const int patientNode = tree.addNode(0, patient.first().text());
    tree.putImage(patientNode, 1);
    tree.putTag(patientNode, tagOf(PatientCounter_));
    ++PatientCounter_;
    for (auto study = patient.nextLevelBegin(); study != patient.nextLevelEnd(); ++study) {
        const int studyNode = tree.addNode(patientNode, study->first().text());
        for (auto series = study->nextLevelBegin(); series != study->nextLevelEnd(); ++series) {
            const int seriesNode = tree.addNode(studyNode, series->first().text());
            for (auto entry = series->nextLevelBegin(); entry != series->nextLevelEnd(); ++entry) {
                tree.addNode(seriesNode, entry->first().text());
            }
        }
    }
}

QString CatalogueLoader::UDirect(Int16 number) {
    return QString::number(number.value()).rightJustified(3, u'0');
}

}  // namespace cinedisc
