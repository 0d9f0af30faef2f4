#include "tests/update/VersionText.h"
#include "update/KW_AddonUpdate_Internal.h"

#include <gtest/gtest.h>

namespace {

constexpr char kOwn[] = "TessaroLibrary 22.0.4.2200 (AC220) 03/08/2018";

struct ComparisonCase {
    const char* name;
    const char* own;
    const char* text;
    KW_AddonUpdate_Comparison expected;
};

void PrintTo(const ComparisonCase& each, std::ostream* out) {
    *out << each.name;
}

class VersionComparison : public testing::TestWithParam<ComparisonCase> {};

TEST_P(VersionComparison, FindsTheUpdatesThatThereAre) {
    EXPECT_EQ(KW_AddonUpdate_CompareVersions(text(GetParam().own), text(GetParam().text)),
              GetParam().expected);
}

constexpr auto kUpToDate = KW_AddonUpdate_UpToDate;
constexpr auto kAvailable = KW_AddonUpdate_UpdateAvailable;
constexpr auto kInvalid = KW_AddonUpdate_OwnLineInvalid;

const ComparisonCase kComparisonCases[] = {
    {"no lines", kOwn, "", kUpToDate},
    {"one day later", kOwn, "TessaroLibrary 22.0.5.2210 (AC220) 04/08/2018", kAvailable},
    {"later by month", kOwn, "TessaroLibrary 22.0.5.2210 (AC220) 01/09/2018", kAvailable},
    {"later by year", kOwn, "TessaroLibrary 22.0.5.2210 (AC220) 01-01-2019", kAvailable},
    {"same date", kOwn, "TessaroLibrary 22.9.9.9999 (AC220) 03/08/2018", kUpToDate},
    {"same date, written otherwise", kOwn, "TessaroLibrary 22.9.9.9999 (AC220) 03-08-2018", kUpToDate},
    {"earlier with higher numbers", kOwn, "TessaroLibrary 22.9.9.9999 (AC220) 31/07/2018", kUpToDate},
    {"later with lower numbers", kOwn, "TessaroLibrary 22.0.0.1 (AC220) 15/10/2018", kAvailable},
    {"older line before the newer", kOwn,
     "TessaroLibrary 22.0.3.1 (AC220) 01/01/2018\nTessaroLibrary 22.0.5.1 (AC220) 15/10/2018\n", kAvailable},
    {"newer line before the older", kOwn,
     "TessaroLibrary 22.0.5.1 (AC220) 15/10/2018\r\nTessaroLibrary 22.0.3.1 (AC220) 01/01/2018\r\n",
     kAvailable},
    {"other host", kOwn, "TessaroLibrary 22.0.5.2210 (AC210) 15/10/2018", kUpToDate},
    {"other minor host", kOwn, "TessaroLibrary 22.0.5.2210 (AC221) 15/10/2018", kUpToDate},
    {"other major version", kOwn, "TessaroLibrary 21.0.5.2210 (AC220) 15/10/2018", kUpToDate},
    {"major version with a zero before it", kOwn, "TessaroLibrary 022.0.5.2210 (AC220) 15/10/2018",
     kUpToDate},
    {"other product", kOwn, "TessaroWalls 22.0.5.2210 (AC220) 15/10/2018", kUpToDate},
    {"product in other case", kOwn, "tessarolibrary 22.0.5.2210 (AC220) 15/10/2018", kUpToDate},
    {"longer product name", kOwn, "TessaroLibrary2 22.0.5.2210 (AC220) 15/10/2018", kUpToDate},
    {"shorter product name", kOwn, "Tessaro 22.0.5.2210 (AC220) 15/10/2018", kUpToDate},
    {"blank before the line", kOwn, " TessaroLibrary 22.0.5.2210 (AC220) 15/10/2018", kUpToDate},
    {"text line", kOwn, "# TessaroLibrary 22.0.5.2210 (AC220) 15/10/2018", kUpToDate},
    {"comment", kOwn,
     "* TessaroLibrary 22.0.5.2210 (AC220) 15/10/2018\n*TessaroLibrary 22.0.5.2210 (AC220) 15/10/2018",
     kUpToDate},
    {"library line", kOwn, "TessaroLibrary 15/10/2018", kUpToDate},
    {"three numbers", kOwn, "TessaroLibrary 22.0.5 (AC220) 15/10/2018", kUpToDate},
    {"bad line before the newer", kOwn,
     "TessaroLibrary 22.0.5 (AC220) 15/10/2018\n\n\nTessaroLibrary 22.0.5.1 (AC220) 15/10/2018 ita",
     kAvailable},
    // as text, a two-digit year is compared by its digits
    {"two-digit year that reads lower", kOwn, "TessaroLibrary 22.0.5.2210 (AC220) 15/10/18", kUpToDate},
    {"two-digit year that reads higher", kOwn, "TessaroLibrary 22.0.5.2210 (AC220) 15/10/21", kAvailable},
    {"date without a year", kOwn, "TessaroLibrary 22.0.5.2210 (AC220) 31/12/", kUpToDate},
    {"error page", kOwn, "<html><body>404 Not Found</body></html>", kUpToDate},
    {"own line without numbers", "T ... (AC) 03/08/2018", "T .9.9.9 (AC) 04/08/2018", kAvailable},
    {"own library line", "Tessaro 03/08/2018", "Tessaro 22.0.5.2210 (AC220) 15/10/2018\nTessaro 15/10/2018",
     kUpToDate},
    {"own line of three numbers", "TessaroLibrary 22.0.4 (AC220) 03/08/2018", "", kInvalid},
    {"own line without date", "TessaroLibrary 22.0.4.2200 (AC220)",
     "TessaroLibrary 22.0.5.2210 (AC220) 15/10/2018", kInvalid},
    {"no own line", "", "", kInvalid},
};

INSTANTIATE_TEST_SUITE_P(Texts, VersionComparison, testing::ValuesIn(kComparisonCases));

}  // namespace
