// TessaroParts: checks whether the library parts of a list are there. A small add-on of the suite that uses
// what the framework offers; copy it to start one of your own.

#include "PartsList.h"

#include "addon/EntryPoints.h"
#include "comm/KW_Comm.h"
#include "dialogs/KW_Dialog.h"
#include "files/KW_File.h"
#include "language/KW_Dlg_Language.h"
#include "language/KW_Language.h"
#include "language/KW_Resource.h"
#include "library/KW_General.h"
#include "library/KW_LibPart.h"
#include "library/KW_Library.h"
#include "settings/AddonIdentity.h"
#include "update/KW_AddonUpdate.h"

// Who this add-on is. It follows the language of the suite, and offers Japanese beside the five languages
// that every add-on has.
char sett_ADDON_NAME[] = "TessaroParts";
char sett_ADDON_SETTINGS_FILE_NAME[] = "TessaroParts_220";
bool sett_ADDON_HAS_OWN_LANGUAGE = false;
char sett_ADDON_SHOWED_LANGUAGES[] = "ita int fra ger spa jap";
char sett_ADDON_SUPP_EXTRA_LANGUAGES[] = "jap";
bool sett_ADDON_ONLY_PLUS_VERSION = false;

namespace {

constexpr char kVersion[] = "TessaroParts 22.0.1.1000 (AC220) 03/08/2018";
constexpr char kLibraryName[] = "Tessaro";
constexpr char kPartsFileName[] = "Parts list.txt";  // beside the add-on

constexpr int kMenuPositionCode = 13;

enum MenuItem : int {
    kItemCheckList = 1,
    kItemFindPart = 2,
    kItemSuiteStatus = 3,
    kItemLanguage = 4,
    kItemCheckForUpdates = 5,
};

// The numbers of this add-on's texts in resources/texts.*.toml.
enum Text : long {
    kTextListUnreadable = 1,
    kTextEntryNotUnderstood = 2,
    kTextAllPartsFound = 3,
    kTextPartsMissing = 4,
    kTextPartIsHere = 5,
    kTextSuiteAnswers = 6,
    kTextSuiteFileExists = 7,
    kTextSuiteNotPresent = 8,
    kTextMarkedAsLoaded = 9,
    kTextNotMarked = 10,
};

short sMenuResID = 0;  // of the menu that was registered

KW_String text(Text index) {
    return KW_Resource_GetCurrentString(KW_Resource_Addon, index);
}

/// The text with the value in the place of a word in it.
KW_String text(Text index, const char* word, const KW_String& value) {
    return text(index).Replace(KW_SystemText(word), value);
}

/// Reads the list beside the add-on. If that fails, informs the user and returns false.
bool readList(KW_List<PartsEntry>& entries) {
    KW_Location location = KW_Location::AddOnLocation(true);
    location += "/";
    location += kPartsFileName;
    KW_String content;
    if (KW_File::ReadFullText(location, content, true, KW_String::Encoding_UTF8) != 0) {
        KW_Dialog::ShowMessage(text(kTextListUnreadable, "PARTSFILE", location));
        return false;
    }
    const long wrongEntry = readPartsList(content, entries);
    if (wrongEntry == 0) return true;
    const KW_String number = KW_String::LongToString(wrongEntry, 0);
    KW_Dialog::ShowMessage(text(kTextEntryNotUnderstood, "ENTRYNUMBER", number));
    return false;
}

void checkList() {
    KW_List<PartsEntry> entries;
    if (!readList(entries)) return;
    KW_Library::Load(true);
    KW_String missing;
    for (long i = 0; i < entries.count; ++i) {
        if (KW_LibPart::Index(entries[i].name, entries[i].type) < 0)
            missing = missing + "\n" + entries[i].name;
    }
    const KW_String count = KW_String::LongToString(entries.count, 0);
    KW_Dialog::ShowMessage(missing.length > 0 ? text(kTextPartsMissing) + missing
                                              : text(kTextAllPartsFound, "ENTRYCOUNT", count));
}

/// Finds the first part in the list, loading the suite's library or asking for a library folder if necessary.
void findPart() {
    KW_List<PartsEntry> entries;
    if (!readList(entries) || entries.count == 0) return;
    const PartsEntry& wanted = entries[0];
    long index = -1;
    if (!KW_General::GetLPIdxFullLib(wanted.name, index, true, KW_String(), wanted.type)) return;
    KW_Location location;
    if (!KW_LibPart::Location(index, location)) return;
    KW_Dialog::ShowMessage(text(kTextPartIsHere, "PARTNAME", wanted.name) + "\n" + location);
}

void tellSuiteStatus() {
    bool mainModuleAnswers = false;
    const bool present = KW_Comm::SuiteIsLoaded(mainModuleAnswers);
    const KW_String suite = text(!present            ? kTextSuiteNotPresent
                                 : mainModuleAnswers ? kTextSuiteAnswers
                                                     : kTextSuiteFileExists);
    KW_Dialog::ShowMessage(suite + "\n" +
                           text(KW_Comm::AddOnFileRead() ? kTextMarkedAsLoaded : kTextNotMarked));
}

GSErrCode menuCommandHandler(const API_MenuParams* params) {
    if (params->menuItemRef.menuResID != sMenuResID) return kNoError;
    ACAPI_KeepInMemory(true);
    // Another add-on of the suite may have changed the language meanwhile.
    KW_Language_Read(true);
    switch (params->menuItemRef.itemIndex) {
        case kItemCheckList:
            checkList();
            break;
        case kItemFindPart:
            findPart();
            break;
        case kItemSuiteStatus:
            tellSuiteStatus();
            break;
        case kItemLanguage:
            KW_Dlg_Language();
            break;
        case kItemCheckForUpdates:
            KW_AddonUpdate_CheckForUpdate(true, KW_SystemText(kVersion), KW_SystemText(kLibraryName));
            break;
        default:
            break;
    }
    MenuUpdate();
    return kNoError;
}

}  // namespace

extern "C" {

int CheckEnvironment(API_EnvirParams* params) {
    if (params->serverInfo.serverApplication != 1) return kAPIAddonDontRegister;
    params->addOnInfo.name = GS::UniStringFromUtf8("TessaroParts 22.0 (AC220)");
    params->addOnInfo.description = GS::UniStringFromUtf8("TessaroParts");
    return kAPIAddonNormal;
}

GSErrCode RegisterInterface() {
    KW_Language_Read(true);
    sMenuResID = static_cast<short>(KW_Resource_Menu + gKW_Language);
    GSErrCode error = ACAPI_Register_Menu(sMenuResID, 0, kMenuPositionCode, 0);
#ifdef TESSARO_PARTS_IS_SUITE
    // The suite's main module answers the command 'SUIT'; KW_Comm::SuiteIsLoaded of every add-on asks for it.
    const API_ModulID mainModule{0x4B7E2A19, 0x9E14EC41};
    if (error == kNoError) error = ACAPI_Command_Publish(&mainModule, 0x53554954, 0);
#endif
    return error;
}

GSErrCode Initialize() {
    const GSErrCode error = ACAPI_Install_MenuHandler(sMenuResID, menuCommandHandler);
    if (error != kNoError) return error;
    MenuUpdate();
    KW_Comm::AddOnFileWrite(true);
    return kNoError;
}

GSErrCode FreeData() {
    KW_Comm::AddOnFileWrite(false);
    return kNoError;
}

}  // extern "C"
