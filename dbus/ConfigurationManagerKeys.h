#pragma once

#include <QLatin1String>

/// The part of the configuration manager's vocabulary that this daemon uses.
namespace ConfigurationManager {

const QLatin1String ServiceName("com.tactora.ConfigurationManager");
const QLatin1String ObjectPath("/");

const QLatin1String SenderId("senderId");
const QLatin1String CommandId("commandId");
const QLatin1String SubCommandId("subCommandId");
const QLatin1String SystemInfo("systemInfo");
const QLatin1String SerialNo("serialNo");

constexpr int SystemInfoCommand = 3;

} // namespace ConfigurationManager
