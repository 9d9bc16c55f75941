#pragma once

#include "Scenarios.h"

/// All scenarios, and those that show themselves on the air and in the kernel alone.
class OnTheAirScenarios : public Scenarios
{
    Q_OBJECT
private slots:
    void wlanUsesTheAddressOfTheSerialNumberOnTheAir();
    void secondAccessPointOfTheSameNameTakesOver();
};
