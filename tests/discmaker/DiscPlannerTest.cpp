#include "discmaker/DiscPlanner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cinedisc::discmaker {
namespace {

using testing::ElementsAre;

ImageRecord record(const std::string& name, const std::string& id, const std::string& study,
                   const std::string& date, const std::string& series, std::optional<int> seriesNumber,
                   std::optional<int> instanceNumber) {
    ImageRecord result;
    result.patientName = name, result.patientId = id;
    result.studyUid = study, result.studyDate = date;
    result.seriesUid = series, result.seriesNumber = seriesNumber;
    result.instanceNumber = instanceNumber;
    result.frames = 1;
    return result;
}

/// "000/01/01/00001=7": every file's place by the numbers of its folders, and the record that it comes from.
std::string files(const std::vector<ImageRecord>& records) {
    std::string result;
    for (const auto& patient : planDisc(records, "", PatientOrder::ByName).patients)
        for (const auto& study : patient.studies)
            for (const auto& series : study.series)
                for (const auto& file : series.files)
                    result += patient.folder + "/" + study.folder + "/" + series.folder + "/" + file.name +
                              "=" + std::to_string(file.content) + " ";
    for (const std::string word : {"Patient", "Study", "Series", "IM", ".dcm"})
        for (auto at = result.find(word); at != std::string::npos; at = result.find(word))
            result.erase(at, word.size());
    return result;
}

TEST(DiscPlanner, SortsByNameDateSeriesAndInstance) {
    const std::vector<ImageRecord> records{
        record("zeta", "1", "s1", "20240101", "a", 2, 10), record("zeta", "1", "s1", "20240101", "a", 2, 9),
        record("zeta", "1", "s1", "20240101", "b", 1, {}), record("zeta", "1", "s1", "20240101", "b", 1, 3),
        record("zeta", "1", "s0", "20230101", "c", {}, 1), record("Alpha", "2", "s2", "", "d", 1, 1),
        record("Alpha", "2", "s3", "20200101", "e", 1, 1),
    };
    EXPECT_EQ(files(records),
              "000/01/01/00001=6 000/02/01/00001=5 001/01/01/00001=4 001/02/01/00001=3 "
              "001/02/01/00002=2 001/02/02/00001=1 001/02/02/00002=0 ");
    const auto first = planDisc(records, "", PatientOrder::AsGiven).patients[0];
    EXPECT_EQ(first.text, "zeta  (1)");
    EXPECT_EQ(first.folder + first.studies[0].folder + first.studies[0].series[0].folder,
              "Patient000Study01Series01");
    EXPECT_EQ(first.studies[0].series[0].files[0].name, "IM00001.dcm");
}

TEST(DiscPlanner, BreaksTiesByTimeAndIdentifier) {
    std::vector<ImageRecord> records{
        record("A", "1", "s5", "20240101", "a", 1, 1), record("A", "1", "s4", "20240101", "c", 1, 1),
        record("A", "1", "s4", "20240101", "b", 1, 1), record("A", "1", "s3", "20240101", "d", 1, 1),
        record("A", "1", "s2", "20240101", "e", 1, 1), record("", "0", "s1", "", "f", 1, 1)};
    records[1].studyTime = records[2].studyTime = records[3].studyTime = "0900";
    records[4].studyTime = "1000";
    EXPECT_EQ(files(records),
              "000/01/01/00001=3 000/02/01/00001=2 000/02/02/00001=1 000/03/01/00001=4 "
              "000/04/01/00001=0 001/01/01/00001=5 ");
}

TEST(DiscPlanner, KeepsPatientsApartWhoShareNameOrId) {
    const std::vector<ImageRecord> records{
        record("A", "1", "s1", "", "a", 1, 1),  record("A", "2", "s2", "", "b", 1, 1),
        record("B", "1", "s3", "", "c", 1, 1),  record("A", "1", "s1", "", "a", 1, 2),
        record("A^", "1", "s4", "", "d", 1, 1),  // reads like the first, but is not the same name
        record("A", "", "s5", "", "e", 1, 1),   record("A", "", "s6", "", "f", 1, 1),
        record("A", "", "s5", "", "g", 1, 1),
    };
    const auto plan = planDisc(records, "", PatientOrder::ByName);
    std::vector<std::string> texts;
    for (const auto& patient : plan.patients) texts.push_back(patient.text);
    EXPECT_THAT(texts,
                ElementsAre("A  (no ID)", "A  (no ID) [2]", "A  (1)", "A  (1) [2]", "A  (2)", "B  (1)"));
    EXPECT_EQ(plan.patients[0].studies[0].series.size(), 2u);
    EXPECT_EQ(plan.patients[2].studies[0].series[0].files.size(), 2u);
}

TEST(DiscPlanner, GroupsFilesWithoutIdentifiersByWhatTheyTell) {
    auto loose = [](const char* date, std::optional<int> seriesNumber, const char* modality) {
        auto result = record("", "", "", date, "", seriesNumber, {});
        result.modality = modality;
        return result;
    };
    EXPECT_EQ(files({loose("20240101", 1, "XA"), loose("20240102", 1, "XA"), loose("20240101", 2, "XA"),
                     loose("20240101", 1, "XA"), loose("20240101", 1, "US")}),
              "000/01/01/00001=0 000/01/01/00002=3 000/01/02/00001=4 000/01/03/00001=2 "
              "000/02/01/00001=1 ");
}

TEST(DiscPlanner, PadsNumbersSoThatEveryListingAgrees) {
    std::vector<ImageRecord> records;
    for (int i = 0; i < 1002; ++i)
        records.push_back(
            record("N" + std::to_string(10000 + i), "1", "s" + std::to_string(i), "", "a", 1, 1));
    for (int i = 0; i < 100; ++i)
        records.push_back(record("ZZ", "1", "t", "", "x" + std::to_string(i), 1 + i, 1));
    const auto plan = planDisc(records, "", PatientOrder::ByName);
    EXPECT_EQ(plan.patients[1001].folder, "Patient1001");
    EXPECT_EQ(plan.patients[1002].studies[0].series[0].folder, "Series001");
    EXPECT_EQ(plan.patients[1002].studies[0].series[99].folder, "Series100");
}

}  // namespace
}  // namespace cinedisc::discmaker
