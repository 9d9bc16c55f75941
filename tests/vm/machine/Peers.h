#pragma once

#include "SpeechRecord.h"
#include "Text.h"

#include <memory>

/// The device's other programs that the daemon calls: the speech service, and a configuration manager that
/// knows the serial number.
namespace Peers {

constexpr int serialNumber = 4711;
/// What the daemon makes of it: 4711 + 200000 is 31fa7 in hexadecimal.
inline QString addressOfSerialNumber()
{
    return "02:a7:c4:03:1f:a7"_s;
}

/// Puts both on the system bus, where they stay as long as what is returned.
std::unique_ptr<QObject> appear(test_support::SpeechRecord &record);

} // namespace Peers
