#include "discmaker/DiscError.h"
#include "discmaker/DiscPlanner.h"

#include <QStringList>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cinedisc::discmaker {
namespace {

/// Records parted by ";", each its values parted by "," in the order below; those at the end may be missing.
std::vector<ImageRecord> recordsOf(const char* table) {
    std::vector<ImageRecord> records;
    for (const auto& row : QString(table).split(';')) {
        const auto values = row.split(',') + QStringList(12);
        const auto text = [&](int i) { return values[i].trimmed().toStdString(); };
        const auto number = [&](int i) {
            return text(i).empty() ? std::optional<std::int64_t>() : values[i].toLongLong();
        };
        ImageRecord record;
        record.patientName = text(0), record.patientId = text(1), record.birthDate = text(2);
        record.studyUid = text(3), record.studyDate = text(4), record.studyTime = text(5);
        record.seriesUid = text(6), record.seriesNumber = number(7), record.instanceNumber = number(8);
        record.acquired = text(9), record.place = number(10);
        record.frames = static_cast<int>(number(11).value_or(1));
        records.push_back(record);
    }
    return records;
}

/// The records' numbers: " " ends a file, "," a series, "/" a study, "|" a patient.
std::string shape(const DiscPlan& plan) {
    std::string result;
    for (const auto& patient : plan.patients) {
        for (const auto& study : patient.studies) {
            for (const auto& series : study.series) {
                for (const auto& file : series.files) result += std::to_string(file.content) + " ";
                result += ",";
            }
            result += "/";
        }
        result += "|";
    }
    return result;
}

TEST(DiscPlanner, SortsEveryLevel) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"name, date, series number, instance number; what is missing last",
         "zeta,1,,s1,2024,,a,2,10; zeta,1,,s1,2024,,a,2,9; zeta,1,,s1,2024,,b,1; zeta,1,,s1,2024,,b,1,3;"
         "zeta,1,,s0,2023,,c,,1; Alpha,2,,s2,,,d,1,1; Alpha,2,,s3,2020,,e,1,1; ,0,,s4; zeta,1,,s1,2024,,f",
         "6 ,/5 ,/|4 ,/3 2 ,1 0 ,8 ,/|7 ,/|"},
        {"studies of a day by time, then UID; series of a number by time, then UID",
         "A,1,,s4,2024,10; A,1,,s3,2024,09; A,1,,s2,2024,10; A,1,,s1,2024; A,1,,s5,1,1,c,1,1,8;"
         "A,1,,s5,1,1,b,1,1,8; A,1,,s5,1,1,d,1,1,7",
         "6 ,5 ,4 ,/1 ,/2 ,/0 ,/3 ,/|"},
        {"runs and what lies among them by time, then number; images by number, then time",
         "A,1,,s,,,r,1,1,2,,1; A,1,,s,,,r,1,3,1,,5; A,1,,s,,,r,1,2,1,,5; A,1,,s,,,i,2,2,3; A,1,,s,,,i,2,3,1;"
         "A,1,,s,,,i,2,2,2",
         "2 1 0 ,5 3 4 ,/|"},
        {"places before anything else, but only where all have one",
         "A,1,,s1,1,,a,1,1,,9; A,1,,s1,1,,a,1,2,,8; A,1,,s1,1,,b,2,1,,7; B,2,,s2,1,,c,1,1,,2;"
         "B,2,,s3,0,,d,1,1,,3; B,2,,s3,0,,d,1,2",
         "2 ,1 0 ,/|4 5 ,/3 ,/|"},
        {"files without identifiers by what they tell", ",,,,2,,,1; ,,,,1,,,2; ,,,,1,,,1", "2 ,1 ,/0 ,/|"},
        {"a patient is ID, name and birth date, however written",
         "A^B,1,1950,s; a^b^^,1,1950,s; A^B,1,,s; Ä,2,1950,s; A\u0308,2,,s; C,,,s; C,,,s",
         "0 1 2 ,/|5 6 ,/|3 4 ,/|"},
    };
    for (const auto& [what, table, order] : cases)
        EXPECT_EQ(shape(planDisc(recordsOf(table), "")), order) << what;
    auto records = recordsOf("A;A");
    records[0].modality = "XA", records[1].modality = "US";
    EXPECT_EQ(shape(planDisc(records, "")), "0 ,1 ,/|");
    const auto plan =
        planDisc(recordsOf("A,1,1950,s;A,1,1960,s;A,1,,s;A,2,1950,s;B,1,1950,s;A,,1950,s;A,,1950,t"), "");
    std::vector<std::string> texts;
    for (const auto& patient : plan.patients) texts.push_back(patient.text);
    EXPECT_THAT(texts, testing::ElementsAre("A  (no ID)", "A  (no ID) [2]", "A  (1)", "A  (1) [2]",
                                            "A  (1) [3]", "A  (2)", "B  (1)"));
}

TEST(DiscPlanner, PadsNumbersAndSplitsBetweenStudies) {
    std::vector<ImageRecord> many(1102);
    for (std::size_t i = 0; i < many.size(); ++i) {
        many[i].patientId = std::to_string(i < 1002 ? 10000 + i : 99999);
        many[i].seriesUid = std::to_string(i);
    }
    const auto large = planDisc(many, "");
    EXPECT_EQ(large.patients[1001].folder + large.patients[5].folder, "Patient1001Patient005");
    EXPECT_EQ(large.patients[1002].studies[0].series[0].folder, "Series001");

    const auto plan = planDisc(recordsOf("A,1,,s1,1;A,1,,s1,1;A,1,,s2,2;B,1,,s3,1;C,1,,s4,1"), "T");
    const auto bytes = [](std::size_t number) { return std::uint64_t{number == 2 ? 21u : 10u}; };
    const auto parts = splitPlan(plan, 31, bytes);
    const char* shapes[] = {"0 1 ,/|", "2 ,/|3 ,/|", "4 ,/|"};
    ASSERT_EQ(parts.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(shape(parts[i]), shapes[i]);
        EXPECT_EQ(parts[i].title, "T (" + std::to_string(i + 1) + " of 3)");
        const auto& first = parts[i].patients[0];
        EXPECT_EQ(first.folder + first.studies[0].folder, "Patient000Study01");
    }
    const auto whole = splitPlan(plan, 61, bytes).at(0);
    EXPECT_EQ(whole.title + shape(whole), "T" + shape(plan));
    EXPECT_THROW(splitPlan(plan, 20, bytes), DiscError);
}

}  // namespace
}  // namespace cinedisc::discmaker
