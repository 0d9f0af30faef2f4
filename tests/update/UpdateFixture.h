#pragma once

#include "language/KW_Resource.h"
#include "platform/host/DialogControl.h"
#include "tests/support/DataFolder.h"
#include "tests/support/RecordingHost.h"
#include "tests/support/ScriptedPresenter.h"
#include "tests/support/Text.h"
#include "tests/update/VersionText.h"
#include "update/KW_AddonUpdate_Internal.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

using support::text;
using support::utf8;

/// A module as just loaded, in a host that records its calls, with an empty data folder.
class UpdateFixture : public testing::Test {
protected:
    UpdateFixture();
    ~UpdateFixture() override;

    static constexpr char kOwnLine[] = "TessaroLibrary 22.0.4.2200 (AC220) 03/08/2018";
    static constexpr char kNewerLine[] = "TessaroLibrary 22.0.5.2210 (AC220) 15/10/2018\n";

    /// The state that the module has when it is loaded.
    static void reset();
    static bool check(bool byUser, const KW_String& library = text("Tessaro")) {
        return KW_AddonUpdate_CheckForUpdate(byUser, text(kOwnLine), library);
    }
    /// The value under a key of the add-on's settings as the file has it; empty without one.
    static std::string stored(const std::string& key);
    static void store(const std::string& key, const std::string& value);
    static long storedCheckTime() { return std::stol("0" + stored("LastUpdateCheck_220")); }

    /// The result dialog of the last check, or null when it is not open.
    static const platform::DialogState* dialog() {
        return platform::DialogControl::instance().find(sIDUpdateDialog);
    }
    /// String `index` of the suite's texts in the current language.
    static std::string suiteText(long index) { return utf8(KW_Resource_GetFrameworkString(index)); }
    std::string alertText() const;

    DataFolder folder_;
    support::RecordingHost host_;
    ScriptedPresenter presenter_;
};
