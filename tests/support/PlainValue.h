#pragma once

#include <QVariant>

namespace test_support {

/// A value as QtDBus delivers it, turned into plain maps and lists all the way down; an object path is its
/// text.
QVariant plain(const QVariant &value);

} // namespace test_support
