#pragma once

#include "platform/HostInterface.h"

/// The four entry points that every add-on of the suite defines. The host calls them in this order, through
/// the wrappers of the bridge: the first three when the add-on is loaded, the last before it is unloaded.
extern "C" {

/// Whether the add-on wants to be registered in this host: kAPIAddonDontRegister, `params` untouched, or
/// kAPIAddonNormal with the add-on's name and description filled in.
int CheckEnvironment(API_EnvirParams* params);

/// Registers menus and libraries. An error code keeps the add-on from being used.
GSErrCode RegisterInterface();

/// Installs handlers; the host's menus exist now. An error code keeps the add-on from being used.
GSErrCode Initialize();

/// Releases whatever must go before the add-on is unloaded.
GSErrCode FreeData();
}
