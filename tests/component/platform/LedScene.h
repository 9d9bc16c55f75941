#pragma once

#include <libled/Led.h>

#include <functional>
#include <QLatin1String>
#include <QMetaType>

// What the tests of LEDs have in common.

/// Something that is asked of a LED.
using Call = std::function<void(Led &)>;
Q_DECLARE_METATYPE(Call)

inline const QLatin1String brightness("brightness");
inline const QLatin1String trigger("trigger");
inline const QLatin1String ledName("led8");

inline constexpr int untilToldOtherwise = -1;
