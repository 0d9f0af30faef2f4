#pragma once

#include "host/Bundle.h"
#include "host/Menus.h"

#include <map>

namespace host {

struct ModelessWindow {
    APIModelessWindowProc callback = nullptr;
    std::uint32_t flags = 0;
    GS::Guid reference{};
};

/// A command by which other add-ons may call this one.
struct PublishedCommand {
    API_ModulID module;
    GSType command;
    std::int32_t version;
};

/// One loaded add-on and all that it has registered. Its address is the client that the host hands to it.
struct AddOn {
    explicit AddOn(std::unique_ptr<Bundle> theBundle) : bundle(std::move(theBundle)) {}

    const std::string& name() const { return bundle->name(); }

    std::unique_ptr<Bundle> bundle;
    API_AddOnInfo info;
    RSResModule resources = kNoResModule;  ///< the host's own handle of the add-on's resources
    Menus menus;
    std::map<short, APIMenuCommandProc> handlers;  ///< by menu resource ID, registered or not
    std::map<std::int32_t, ModelessWindow> modelessWindows;
    std::vector<PublishedCommand> commands;
    bool initializeCalled = false;
    bool keepInMemory = false;
    bool builtInLibrary = false;
};

}  // namespace host
