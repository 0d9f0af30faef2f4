// An add-on for the host's tests, written against the bare contract. Built with a FAULT it breaks that
// contract in one place.

#include "platform/Bundle.h"
#include "platform/CFReadStream.h"
#include "platform/DialogManager.h"
#include "platform/FileDialog.h"
#include "platform/HostTable.h"
#include "platform/Launching.h"

#include <cstdlib>
#include <stdexcept>
#include <string_view>

namespace {

constexpr bool hasFault(std::string_view name) {
    return name == FAULT;
}

constexpr short kMenu = 1001;
constexpr short kColourDialog = 2000;
constexpr short kStatusDialog = 2001;
constexpr short kColourIcon = 3001;
constexpr API_ModulID kModule{0x1234, 0x5678};
constexpr GSType kCommand = 0x54455354;  // 'TEST'

APIImportedFunctions sTable{};
bool sTableIsSet = false;
APIClient sClient = nullptr;
short sStatus = 0;

template <typename Function>
Function hostFunction(HostSlot slot) {
    return reinterpret_cast<Function>(sTable.slots[static_cast<std::size_t>(slot)]);
}

RSResModule resources() {
    static const RSResModule module = [] {
        const GSCFXBundleRef bundle = GSCFXBundleCreateFromMachHeader(&sTable);
        const RSResModule opened = RSOpenResourceFile(GSCFXBundlePath(bundle).c_str());
        GSCFXBundleRelease(bundle);
        return opened;
    }();
    return module;
}

GS::UniString text(const char* utf8) {
    return GS::UniStringFromUtf8(utf8);
}

void throwFor(const char* fault) {
    if (hasFault(fault)) throw std::runtime_error("an add-on's own fault");
}

short colourCallback(short message, short dialog, short item, DGUserData, DGMessageData) {
    if (message == DG_MSG_CLICK && item == 1) throwFor("CALLBACKS_THROW");
    if (message == DG_MSG_INIT) {
        for (const char* const colour : {"red", "green", "blue"}) {
            const short row = DGListInsertItem(dialog, 3, DG_LIST_BOTTOM);
            DGListSetTabItemText(dialog, 3, row, 1, text(colour));
        }
        DGListSetTabItemIcon(dialog, 3, 1, 1, DG::Icon(resources(), kColourIcon));
        DGListSelectItem(dialog, 3, 2);
    }
    if (message == DG_MSG_CHANGE) DGSetItemText(dialog, 1, text("Take it"));
    return message == DG_MSG_CLICK || message == DG_MSG_CLOSE ? item : short{0};
}

void fetch();

short statusCallback(short message, short dialog, short item, DGUserData, DGMessageData) {
    if (message == DG_MSG_INIT) {
        hostFunction<HostFunction::RegisterModelessWindow>(HostSlot::RegisterModelessWindow)(
            sClient, dialog, nullptr, 7, &GS::NULLGuid);
    }
    if (message == DG_MSG_CLOSE) {
        hostFunction<HostFunction::UnregisterModelessWindow>(HostSlot::UnregisterModelessWindow)(sClient,
                                                                                                 dialog);
        if (hasFault("Second")) fetch();
    }
    if (message == DG_MSG_CLICK && item == 1) DGDisableItem(dialog, 1);
    if (message == DG_MSG_CLICK && item == 2) DGModelessClose(dialog);
    return message == DG_MSG_CLICK && item == 2 ? item : short{0};
}

GSErrCode interfaceRequest(API_InterfaceID code, void* par1, void* par2, void* par3) {
    return hostFunction<HostFunction::Interface>(HostSlot::Interface)(sClient, code, par1, par2, par3);
}

void toggleMark() {
    API_MenuItemRef reference{kMenu, 4};
    std::uint32_t flags = 0;
    if (interfaceRequest(APIIo_GetMenuItemFlagsID, &reference, &flags, nullptr) != kNoError) return;
    flags ^= kAPIMenuItemChecked;
    interfaceRequest(APIIo_SetMenuItemFlagsID, &reference, &flags, nullptr);
}

void askToRename() {
    API_MenuItemRef reference{kMenu, 2};
    GS::UniString newText = text("Asked");
    if (DGAlert(DG_ALERT_PLAIN, text("Rename?"), text("Item 2\nwill differ."), GS::UniString(), text("Yes"),
                text("No")) == 1)
        interfaceRequest(APIIo_SetMenuItemTextID, &reference, nullptr, &newText);
}

void say(const char* message) {
    DGAlert(DG_ALERT_PLAIN, text(message), GS::UniString(), GS::UniString(), text("OK"));
}

void save() {
    DG::FileDialog dialog(DG::FileDialog::Save);
    dialog.SetTitle(text("Save as"));
    dialog.SelectFile(IO::Location(text("report.txt")), true);
    say(dialog.Invoke() ? "saved" : "not saved");
}

void streamEvent(CFReadStreamRef stream, CFStreamEventType event, void*) {
    if (event != kCFStreamEventErrorOccurred) return;
    CFRelease(stream);
    if (hasFault("EXITS")) std::exit(0);
    throwFor("CALLBACKS_THROW");
    say("The transfer has failed.");
}

/// A transfer that nobody ends but itself or the host.
void fetch() {
    const CFStringEncoding encoding = CFStringGetSystemEncoding();
    const CFStringRef address = CFStringCreateWithCString(nullptr, "http://sample.example/", encoding);
    const CFStringRef get = CFStringCreateWithCString(nullptr, "GET", encoding);
    const CFURLRef url = CFURLCreateWithString(nullptr, address, nullptr);
    const CFHTTPMessageRef request = CFHTTPMessageCreateRequest(nullptr, get, url, kCFHTTPVersion1_1);
    const CFReadStreamRef stream = CFReadStreamCreateForHTTPRequest(nullptr, request);
    const CFStreamClientContext context{0, nullptr, nullptr, nullptr, nullptr};
    CFReadStreamSetClient(stream, kCFStreamEventErrorOccurred, streamEvent, &context);
    CFReadStreamScheduleWithRunLoop(stream, CFRunLoopGetMain(), kCFRunLoopCommonModes);
    CFReadStreamOpen(stream);
    CFRelease(request);
    CFRelease(url);
    CFRelease(get);
    CFRelease(address);
}

GSErrCode handleMenu(const API_MenuParams* params) {
    switch (params->menuItemRef.itemIndex) {
        case 1:
            DGModalDialog(resources(), kColourDialog, resources(), colourCallback, 0);
            break;
        case 2:
            askToRename();
            break;
        case 3:
            sStatus = DGModelessInit(resources(), kStatusDialog, resources(), statusCallback, 0);
            DGShowModelessDialog(sStatus, 0);
            break;
        case 4:
            toggleMark();
            break;
        case 5:
            save();
            break;
        case 6:
            if (hasFault("EXITS")) std::exit(0);
            throw std::runtime_error("an add-on's own fault");
        case 7:
            OpenDocument("/documents/a \"b\".pdf");
            break;
        case 8:
            fetch();
            break;
        default:
            return 77;
    }
    return kNoError;
}

int checkEnvironment(API_EnvirParams* params) {
    if (hasFault("DOES_NOT_REGISTER") || params->serverInfo.serverApplication != 1)
        return kAPIAddonDontRegister;
    params->addOnInfo = {text("Sample 1.0"), text("For tests")};
    return kAPIAddonNormal;
}

GSErrCode registerInterface() {
    throwFor("REGISTRATION_THROWS");
    if (hasFault("REGISTRATION_FAILS")) return 4711;
    if (!sTableIsSet) return kAPIErrNotInitialised;
    const APIMenuRegistration menu{kMenu, 0, 13, 0};
    const auto registerMenu = hostFunction<HostFunction::RegisterMenu>(HostSlot::RegisterMenu);
    return registerMenu != nullptr ? registerMenu(nullptr, &menu) : kAPIErrNoHostFunction;
}

GSErrCode initialize(APIClient client) {
    if (hasFault("INITIALISATION_FAILS")) return hostError(0x81060999);
    if (!sTableIsSet) return kAPIErrNotInitialised;
    sClient = client;
    const auto install = hostFunction<HostFunction::InstallMenuHandler>(HostSlot::InstallMenuHandler);
    if (install == nullptr) return kAPIErrNoHostFunction;
    hostFunction<HostFunction::CommandPublish>(HostSlot::CommandPublish)(client, &kModule, kCommand, 0);
    return install(client, kMenu, handleMenu);
}

GSErrCode freeData() {
    sClient = nullptr;
    if (hasFault("CALLBACKS_THROW")) DBPrintf("a line without its end");
    throwFor("CALLBACKS_THROW");
    return kNoError;
}

}  // namespace

extern "C" {

#ifndef FAULT_NO_GET_EXPORTED
__attribute__((visibility("default"))) void GetExportedFuncAddrs(APIExportedFunctions* record) {
    *record = {};
    record->interfaceVersion = kAPIInterfaceVersion;
    record->checkEnvironment = checkEnvironment;
    record->registerInterface = registerInterface;
    record->initialize = initialize;
    record->freeData = freeData;
    record->hostVersion = kAPIHostVersion;
    if (hasFault("WRONG_INTERFACE_VERSION")) record->interfaceVersion = 0x00150003;
    if (hasFault("WRONG_HOST_VERSION")) record->hostVersion = 21000;
    if (hasFault("NO_ENTRY_POINT")) record->initialize = nullptr;
}
#endif

#ifndef FAULT_NO_SET_IMPORTED
__attribute__((visibility("default"))) GSErrCode SetImportedFuncAddrs(const APIImportedFunctions* table) {
    sTable = *table;
    sTableIsSet = true;
    return kNoError;
}
#endif

#ifdef FAULT_UNRESOLVED
extern void nobodyDefinesThis();
__attribute__((visibility("default"))) void useIt() {
    nobodyDefinesThis();
}
#endif
}
