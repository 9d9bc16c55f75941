#pragma once

#include <QString>
#include <QVariantList>

namespace simulator {

/// A value as it arrived on the bus, in GVariant text form: strings in double quotes, types other than
/// string, boolean, int32 and double annotated ("byte 0x40", "objectpath \"/\"", "@as []").
QString toGVariantText(const QVariant &value);

/// The same for the arguments of a call, separated by ", ".
QString toGVariantText(const QVariantList &arguments);

} // namespace simulator
