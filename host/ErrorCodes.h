#pragma once

#include "platform/HostInterface.h"

#include <string>

/// Error codes that this host's functions answer with, beside those of the add-on interface.
namespace host {

constexpr GSErrCode kErrBadClient = hostError(0x81060101);     ///< the client is no loaded add-on
constexpr GSErrCode kErrBadParameter = hostError(0x81060102);  ///< a pointer is null, a value makes no sense
constexpr GSErrCode kErrNoSuchMenu = hostError(0x81060103);    ///< the menu or item is not registered
constexpr GSErrCode kErrNoResource = hostError(0x81060104);    ///< the add-on's resources lack it
constexpr GSErrCode kErrAlreadyThere = hostError(0x81060105);  ///< registered a second time
constexpr GSErrCode kErrNotFound = hostError(0x81060106);      ///< no such window, module, command
constexpr GSErrCode kErrNotSupported = hostError(0x81060107);  ///< this host does not answer the request
constexpr GSErrCode kErrInternal = hostError(0x81060108);      ///< the host itself failed

/// "0x81060101" for a host error, decimal digits for a small number.
std::string errorText(GSErrCode code);
/// A code of four characters as text; "?" for one that cannot be printed.
std::string fourCharacters(GSType code);

}  // namespace host
