#pragma once

#include <QLatin1String>

/// The part of the configuration manager's vocabulary that this daemon uses.
namespace ConfigurationManager {

constexpr QLatin1String ServiceName("com.tactora.ConfigurationManager");
constexpr QLatin1String ObjectPath("/");

constexpr QLatin1String SenderId("senderId");
constexpr QLatin1String CommandId("commandId");
constexpr QLatin1String SubCommandId("subCommandId");
constexpr QLatin1String SystemInfo("systemInfo");
constexpr QLatin1String SerialNo("serialNo");

constexpr int SystemInfoCommand = 3;

} // namespace ConfigurationManager
