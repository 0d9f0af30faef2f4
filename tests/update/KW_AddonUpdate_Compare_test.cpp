#include "tests/support/Text.h"
#include "update/KW_AddonUpdate_Internal.h"

#include <gtest/gtest.h>

namespace {

using support::text;

struct ComparisonCase {
    const char* name;
    const char* text;
    KW_AddonUpdate_Comparison expected;
    const char* own = "TessaroLibrary 22.0.4.2200 (AC220) 03/08/2018";
};

constexpr auto kUpToDate = KW_AddonUpdate_UpToDate;
constexpr auto kAvailable = KW_AddonUpdate_UpdateAvailable;
constexpr auto kInvalid = KW_AddonUpdate_OwnLineInvalid;

const ComparisonCase kComparisonCases[] = {
    {"no lines", "", kUpToDate},
    {"one day later", "TessaroLibrary 22.0.5.2210 (AC220) 04/08/2018", kAvailable},
    {"later by year", "TessaroLibrary 22.0.5.2210 (AC220) 01-01-2019", kAvailable},
    {"same date, written otherwise", "TessaroLibrary 22.9.9.9999 (AC220) 03-08-2018", kUpToDate},
    {"later with lower numbers", "TessaroLibrary 22.0.0.1 (AC220) 15/10/2018", kAvailable},
    {"other host", "TessaroLibrary 22.0.5.2210 (AC210) 15/10/2018", kUpToDate},
    {"other major version", "TessaroLibrary 21.0.5.2210 (AC220) 15/10/2018", kUpToDate},
    {"zero before the major version", "TessaroLibrary 022.0.5.2210 (AC220) 15/10/2018", kUpToDate},
    {"product in other case", "tessarolibrary 22.0.5.2210 (AC220) 15/10/2018", kUpToDate},
    {"longer product name", "TessaroLibrary2 22.0.5.2210 (AC220) 15/10/2018", kUpToDate},
    {"part of the product's name", "Tess", kUpToDate},
    {"blank before the line", " TessaroLibrary 22.0.5.2210 (AC220) 15/10/2018", kUpToDate},
    {"older and bad lines before the newer",
     "TessaroLibrary 22.0.3.1 (AC220) 01/01/2018\nTessaroLibrary 22.0.5 (AC220) 15/10/2018\n\n\n"
     "TessaroLibrary 22.0.5.1 (AC220) 15/10/2018 ita",
     kAvailable},
    // as text, a two-digit year is compared by its digits
    {"two-digit year that reads lower", "TessaroLibrary 22.0.5.2210 (AC220) 15/10/18", kUpToDate},
    {"two-digit year that reads higher", "TessaroLibrary 22.0.5.2210 (AC220) 15/10/21", kAvailable},
    {"date without a year", "TessaroLibrary 22.0.5.2210 (AC220) 31/12/", kUpToDate},
    {"own line without numbers", "T .9.9.9 (AC) 04/08/2018", kAvailable, "T ... (AC) 03/08/2018"},
    {"own library line", "Tessaro 22.0.5.2210 (AC220) 15/10/2018\nTessaro 15/10/2018", kUpToDate,
     "Tessaro 03/08/2018"},
    {"own line without date", "", kInvalid, "TessaroLibrary 22.0.4.2200 (AC220)"},
    {"no own line", "", kInvalid, ""},
};

TEST(VersionComparison, FindsTheUpdatesThatThereAre) {
    for (const ComparisonCase& each : kComparisonCases)
        EXPECT_EQ(KW_AddonUpdate_CompareVersions(text(each.own), text(each.text)), each.expected)
            << each.name;
}

}  // namespace
