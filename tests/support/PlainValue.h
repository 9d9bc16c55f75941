#pragma once

#include <QVariant>

namespace test_support {

/// A value as QtDBus delivers it, turned into plain maps and lists all the way down; an object path is its
/// text. The printer's library has a way of its own to do so, which the daemon uses: what is tested with it
/// is not looked at with it.
QVariant plain(const QVariant &value);

} // namespace test_support
